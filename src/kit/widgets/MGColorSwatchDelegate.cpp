#include "MGColorSwatchDelegate.h"

#include <QApplication>
#include <QPainter>
#include <QStyle>

MGColorSwatchDelegate::MGColorSwatchDelegate(QObject *parent) : QStyledItemDelegate(parent) {}

void MGColorSwatchDelegate::drawSwatch(QPainter *painter, const QRectF &frame, Kolor kolor,
                                       const QPalette &palette)
{
    painter->save();
    // Antialiased, a 1-wide line centred half a pixel in covers exactly the fill's edge pixels.
    painter->setRenderHint(QPainter::Antialiasing);
    painter->fillRect(frame.adjusted(3, 3, -3, -3), ColorFromKolor(kolor));
    painter->setPen(QPen(palette.color(QPalette::Mid), 1));
    painter->setBrush(Qt::NoBrush);
    painter->drawRect(frame.adjusted(3.5, 3.5, -3.5, -3.5));
    painter->restore();
}

void MGColorSwatchDelegate::paint(QPainter *painter, const QStyleOptionViewItem &option,
                                  const QModelIndex &index) const
{
    QStyleOptionViewItem background = option;
    initStyleOption(&background, index);
    background.text.clear();
    background.icon = QIcon();
    const QWidget *widget = option.widget;
    QStyle *style = widget ? widget->style() : QApplication::style();
    style->drawControl(QStyle::CE_ItemViewItem, &background, painter, widget);

    drawSwatch(painter, QRectF(option.rect), index.data(KolorRole).value<Kolor>(), option.palette);
}
