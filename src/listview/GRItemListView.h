#pragma once

#include "GRItemGridLayout.h"
#include "GRTypeSelect.h"
#include "GRTypes.h"

#include <QAccessible>
#include <QMenu>
#include <QPointer>
#include <QWidget>

#include <functional>
#include <optional>

class GRItemNavigation;
class MGDragPasteboard;
class QDrag;

// The grid of the items on show (the list it is given, read by index every time): a check box
// and the item's name in its store's colour per cell, flowing down each column and then on to
// the next. It is the widget of a QScrollArea that scrolls horizontally only: its height follows
// the scroll area's viewport, and more items make more columns and a wider view. On joining a
// scroll area it turns the vertical scroll bar off and the horizontal one always on, so that the
// viewport's height changes only with the window.
//
// The mouse selects, ticks a check box with live tracking and drags an item out; the keyboard
// moves the selection, selects by typed name prefix and ticks with the space bar. Commands on the
// selected item that the view does not carry out itself it asks for by signal.
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

    // Gives the view the focus and selects the item under point (view coordinates); false, and
    // nothing selected, over empty space.
    bool handleMouseEvent(QPointF point);
    // Flips the selected item's needed mark, recording "Check Item" first.
    void toggleItem();

    // The keyboard's moves; each selects, redraws and scrolls to the new item.
    void moveUp();
    void moveDown();
    void moveLeft();
    void moveRight();
    void scrollToBeginningOfDocument();
    void scrollToEndOfDocument();
    // Typed text: a prefix to select by, or a space that ticks.
    void insertText(const QString &text);
    GRTypeSelect &typeSelect() { return m_typeSelect; }

    // Check-box tracking: while checking, the selected item's box shows checkIsOn.
    bool isChecking() const { return m_checking; }
    bool checkIsOn() const { return m_checkIsOn; }

    static constexpr float DragThreshold = 3.0f;
    // What a drag of the selected item carries: its index in the list on show, as text.
    MGDragPasteboard *makeDragPasteboard() const;
    // The selected item's name, half-transparent black in the application font.
    QPixmap dragImage() const;
    // Runs a drag that is ready to go; by default QDrag::exec with the move action.
    using DragRunner = std::function<void(QDrag *drag)>;
    void setDragRunner(DragRunner runner) { m_dragRunner = std::move(runner); }

    // Shows the context menu over the selected item, as the Menu key does.
    void showContextMenu();

signals:
    // Return, or a double-click on a name: open the selected item.
    void changeItemRequested();
    // Delete or Backspace: delete the selected item, asking first.
    void deleteRequested();
    // F1 to F16 without modifiers: give the selected item the store at index.
    void storeKeyPressed(int index);
    void selectionMoved(quint64 index);

protected:
    void paintEvent(QPaintEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;
    void changeEvent(QEvent *event) override;
    bool event(QEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    bool isActive() const;
    void watchEnclosingView();
    void mouseDown(QMouseEvent *event, int clickCount);
    void selectAndShow(quint64 index);
    void move(quint64 (GRItemNavigation::*step)(quint64) const);
    void startDrag(QPointF start);
    void popUpContextMenu(QPointF point);
    // Tells assistive technology about the cell at index.
    void announceCell(quint64 index, QAccessible::Event event);

    QList<GRItemPtr> *m_items = nullptr;
    QSizeF m_itemSize = GRItemGridLayout::defaultItemSize();
    GRItemGridLayout m_grid;
    QPointer<QMenu> m_contextMenu;
    QPointer<QWidget> m_watched;
    quint64 m_selectedItem = 0;

    GRTypeSelect m_typeSelect;
    DragRunner m_dragRunner;
    QRectF m_checkboxRect;
    std::optional<QPointF> m_dragStart; // window coordinates of the press that may start a drag
    bool m_checking = false;
    bool m_checkIsOn = false;
    bool m_checkWasOn = false;
};
