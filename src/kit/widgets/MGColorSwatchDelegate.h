#pragma once

#include "Kolor.h"

#include <QStyledItemDelegate>

class QPalette;

// Paints a table cell as a swatch of the packed colour that the model gives for KolorRole.
class MGColorSwatchDelegate : public QStyledItemDelegate
{
    Q_OBJECT

public:
    static constexpr int KolorRole = Qt::UserRole + 1;

    explicit MGColorSwatchDelegate(QObject *parent = nullptr);

    // Fills frame inset by 3 with the colour and strokes it inset by 3.5 with the palette's Mid.
    static void drawSwatch(QPainter *painter, const QRectF &frame, Kolor kolor, const QPalette &palette);

    void paint(QPainter *painter, const QStyleOptionViewItem &option,
               const QModelIndex &index) const override;
};
