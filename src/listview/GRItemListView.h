#pragma once

#include "GRItemGridLayout.h"
#include "GRTypes.h"

#include <QMenu>
#include <QPointer>
#include <QWidget>

// The grid of the items on show (the list it is given, read by index every time): a check box
// and the item's name in its store's colour per cell, flowing down each column and then on to
// the next. It is the widget of a QScrollArea that scrolls horizontally only: its height follows
// the scroll area's viewport, and more items make more columns and a wider view. On joining a
// scroll area it turns the vertical scroll bar off and the horizontal one always on, so that the
// viewport's height changes only with the window.
class GRItemListView : public QWidget
{
    Q_OBJECT

public:
    explicit GRItemListView(QWidget *parent = nullptr);
    ~GRItemListView() override;

    // The list on show; the view never owns it, and sorts it in redisplayItemsCore(). Null shows
    // nothing.
    void setItems(QList<GRItemPtr> *items);
    QList<GRItemPtr> *items() const { return m_items; }
    qsizetype itemCount() const { return m_items ? m_items->size() : 0; }

    // The size of one item; set by fontChange().
    QSizeF itemSize() const { return m_itemSize; }

    // Recomputes rows, columns and the frame from the viewport's size; the selection returns to 0.
    void layout(bool force);
    // The same when the window or the splitter changed the view's size: the selected item stays.
    void relayoutKeepingSelection();
    QRectF itemRect(quint64 index) const;
    QRectF checkboxRect(const QRectF &item) const;
    // The index of the item under point (view coordinates), or -1.
    qint64 itemAt(QPointF point) const;

    // Sorts the items on show by name, lays out, and selects item (by identity) when given.
    void redisplayItemsCore(const GRItemPtr &item);
    void invalidateItem(quint64 index);
    // Scrolls the least distance that shows the selected item's cell.
    void showSelectedItem();
    // Item size from the display font's "0"; relayout also lays the grid out again.
    void fontChange(bool relayout);

    quint64 selectedItem() const { return m_selectedItem; }
    void setSelectedItem(quint64 index);
    quint64 rowCount() const { return m_grid.rowCount(); }
    quint64 columnCount() const { return m_grid.columnCount(); }

    QMenu *contextMenu() const { return m_contextMenu; }
    void setContextMenu(QMenu *menu) { m_contextMenu = menu; }

    void drawItem(const GRItemPtr &item, bool checked, const QRectF &rect, QPainter &painter) const;

protected:
    void paintEvent(QPaintEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;
    void changeEvent(QEvent *event) override;
    bool event(QEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    bool isActive() const;
    void watchEnclosingView();

    QList<GRItemPtr> *m_items = nullptr;
    QSizeF m_itemSize = GRItemGridLayout::defaultItemSize();
    GRItemGridLayout m_grid;
    QPointer<QMenu> m_contextMenu;
    QPointer<QWidget> m_watched;
    quint64 m_selectedItem = 0;
};
