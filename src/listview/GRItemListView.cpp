#include "GRItemListView.h"

#include "DrawQuartzCheckbox.h"
#include "GRFunctionKeys.h"
#include "GRItem.h"
#include "GRItemListAccessible.h"
#include "GRItemNavigation.h"
#include "GRNameSorter.h"
#include "GRNames.h"
#include "GRPrefController.h"
#include "GRStore.h"
#include "GRUndoKinds.h"
#include "MGDragPasteboard.h"
#include "MGNotificationCenter.h"

#include <QApplication>
#include <QDrag>
#include <QFontMetricsF>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPaintEvent>
#include <QPainter>
#include <QScrollArea>
#include <QScrollBar>

#include <algorithm>
#include <cmath>

GRItemListView::GRItemListView(QWidget *parent) : QWidget(parent)
{
    setFocusPolicy(Qt::StrongFocus);
    setAttribute(Qt::WA_OpaquePaintEvent);

    MGNotificationCenter &center = MGNotificationCenter::defaultCenter();
    center.addObserver(GRRedoItemsNotification, this, [this](const QVariantMap &userInfo) {
        redisplayItemsCore(userInfo.value(GRItemKey).value<GRItemPtr>());
    });
    center.addObserver(GRUpdateStoresNotification, this, [this](const QVariantMap &) { update(); });
    center.addObserver(GRFontNotification, this, [this](const QVariantMap &) { fontChange(true); });

    fontChange(false);
    watchEnclosingView();
    GRItemListAccessible::install();
}

GRItemListView::~GRItemListView()
{
    MGNotificationCenter::defaultCenter().removeObserver(this);
}

void GRItemListView::setItems(QList<GRItemPtr> *items)
{
    m_items = items;
    layout(true);
}

void GRItemListView::layout(bool force)
{
    Q_UNUSED(force) // the grid is stored either way; an unchanged grid looks the same
    m_grid.setItemSize(itemSize());
    const QSize enclosing = parentWidget() ? parentWidget()->size() : size();
    m_grid.layout(quint64(itemCount()), enclosing.height());
    const QSizeF frame = m_grid.frameSize(enclosing.width(), enclosing.height());
    const auto clamp = [](qreal extent) {
        return int(std::clamp(std::ceil(extent), 0.0, qreal(QWIDGETSIZE_MAX)));
    };
    resize(clamp(frame.width()), clamp(frame.height()));
    m_selectedItem = 0;
    update();
}

void GRItemListView::relayoutKeepingSelection()
{
    const quint64 selected = m_selectedItem;
    layout(false);
    if (selected < quint64(itemCount()))
        m_selectedItem = selected;
}

QRectF GRItemListView::itemRect(quint64 index) const
{
    return m_grid.itemRect(index);
}

QRectF GRItemListView::checkboxRect(const QRectF &item) const
{
    return GRItemGridLayout::checkboxRect(item);
}

qint64 GRItemListView::itemAt(QPointF point) const
{
    return m_grid.itemAt(point, quint64(itemCount()));
}

void GRItemListView::redisplayItemsCore(const GRItemPtr &item)
{
    const GRItemPtr selected = item; // item may be an entry of the list that the sort moves
    if (m_items)
        SortByName(*m_items);
    layout(true);
    if (selected && m_items) {
        const qsizetype index = m_items->indexOf(selected);
        m_selectedItem = index < 0 ? 0 : quint64(index);
    }
}

void GRItemListView::invalidateItem(quint64 index)
{
    update(GRItemGridLayout::highlightRect(itemRect(index)).toAlignedRect());
}

void GRItemListView::showSelectedItem()
{
    QWidget *viewport = parentWidget();
    auto *scrollArea = viewport ? qobject_cast<QScrollArea *>(viewport->parentWidget()) : nullptr;
    if (!scrollArea)
        return;
    const QRectF cell = GRItemGridLayout::highlightRect(itemRect(m_selectedItem));
    const QPointF centre = cell.center();
    scrollArea->ensureVisible(qRound(centre.x()), qRound(centre.y()), qCeil(cell.width() / 2),
                              qCeil(cell.height() / 2));
}

void GRItemListView::fontChange(bool relayout)
{
    const QFontMetricsF metrics(GRPrefController::sharedInstance().displayFont());
    m_itemSize = GRItemGridLayout::itemSizeForZero(
        QSizeF(metrics.horizontalAdvance(QLatin1Char('0')), metrics.lineSpacing()));
    m_grid.setItemSize(m_itemSize);
    if (relayout)
        layout(true);
}

void GRItemListView::setSelectedItem(quint64 index)
{
    if (index == m_selectedItem)
        return;
    invalidateItem(m_selectedItem);
    m_selectedItem = index;
    invalidateItem(m_selectedItem);
    emit selectionMoved(index);
    if (hasFocus())
        announceCell(index, QAccessible::Focus);
}

void GRItemListView::announceCell(quint64 index, QAccessible::Event event)
{
    if (!QAccessible::isActive())
        return;
    QAccessibleInterface *list = QAccessible::queryAccessibleInterface(this);
    QAccessibleInterface *cell = list ? list->child(int(index)) : nullptr;
    if (!cell)
        return;
    if (event == QAccessible::StateChanged) {
        QAccessible::State changed;
        changed.checked = true;
        QAccessibleStateChangeEvent stateChange(cell, changed);
        QAccessible::updateAccessibility(&stateChange);
    } else {
        QAccessibleEvent plain(cell, event);
        QAccessible::updateAccessibility(&plain);
    }
}

void GRItemListView::drawItem(const GRItemPtr &item, bool checked, const QRectF &rect,
                              QPainter &painter) const
{
    const QRectF box = checkboxRect(rect);
    DrawQuartzCheckbox(painter, checked, box);

    // The default black follows the palette so that uncoloured stores suit dark themes too.
    const Kolor kolor = item->store() ? item->store()->kolor() : Kolor::defaultKolor();
    const QColor colour =
        kolor.word() == Kolor::DefaultWord ? palette().color(QPalette::Text) : ColorFromKolor(kolor);

    const QFont &font = GRPrefController::sharedInstance().displayFont();
    const QFontMetricsF metrics(font, this);
    const QRectF textRect = GRItemGridLayout::textRect(rect, box, metrics.lineSpacing());
    painter.setFont(font);
    painter.setPen(colour);
    painter.drawText(textRect, Qt::AlignLeft | Qt::AlignTop | Qt::TextSingleLine,
                     metrics.elidedText(item->displayName(), Qt::ElideRight, textRect.width()));
}

void GRItemListView::paintEvent(QPaintEvent *event)
{
    if (m_grid.rowCount() == 0)
        relayoutKeepingSelection();
    QPainter painter(this);
    painter.fillRect(event->rect(), palette().color(QPalette::Base));

    const bool active = isActive();
    const QColor highlight = palette().color(QPalette::Highlight);
    if (!m_items)
        return;
    const QList<GRItemPtr> &items = *m_items;
    for (qsizetype i = 0; i < items.size(); ++i) {
        const QRectF rect = itemRect(quint64(i));
        const QRectF cell = GRItemGridLayout::highlightRect(rect);
        if (!items[i] || !event->region().intersects(cell.toAlignedRect()))
            continue;
        if (quint64(i) == m_selectedItem) {
            if (active) {
                painter.fillRect(cell, highlight);
            } else {
                painter.setPen(QPen(highlight, 1.0));
                painter.setBrush(Qt::NoBrush);
                painter.drawRect(cell.adjusted(0.5, 0.5, -0.5, -0.5));
            }
        }
        const bool tracking = m_checking && quint64(i) == m_selectedItem;
        drawItem(items[i], tracking ? m_checkIsOn : items[i]->isNeeded(), rect, painter);
    }
}

// ---- Mouse

bool GRItemListView::handleMouseEvent(QPointF point)
{
    if (!hasFocus())
        setFocus(Qt::MouseFocusReason);
    const qint64 index = itemAt(point);
    if (index < 0)
        return false;
    setSelectedItem(quint64(index));
    return true;
}

void GRItemListView::mousePressEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton) {
        QWidget::mousePressEvent(event);
        return;
    }
    mouseDown(event, 1);
}

// The platform sends the second press of a double-click here instead.
void GRItemListView::mouseDoubleClickEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton) {
        QWidget::mouseDoubleClickEvent(event);
        return;
    }
    mouseDown(event, 2);
}

void GRItemListView::mouseDown(QMouseEvent *event, int clickCount)
{
    if (!handleMouseEvent(event->position()))
        return;
    const QRectF item = itemRect(m_selectedItem);
    m_checkboxRect = checkboxRect(item);
    if (m_checkboxRect.contains(event->position())) {
        m_checking = true;
        m_checkWasOn = m_items->at(qsizetype(m_selectedItem))->isNeeded();
        m_checkIsOn = !m_checkWasOn;
        invalidateItem(m_selectedItem);
    } else if (clickCount == 2) {
        emit changeItemRequested();
    } else if (clickCount == 1) {
        m_dragStart = event->scenePosition();
    }
}

void GRItemListView::mouseMoveEvent(QMouseEvent *event)
{
    if (m_checking) {
        const bool inside = m_checkboxRect.contains(event->position());
        const bool state = inside ? !m_checkWasOn : m_checkWasOn;
        if (state != m_checkIsOn) {
            m_checkIsOn = state;
            invalidateItem(m_selectedItem);
        }
        return;
    }
    if (!m_dragStart)
        return;
    const QPointF delta = event->scenePosition() - *m_dragStart;
    const float dx = float(delta.x());
    const float dy = float(delta.y());
    if (std::sqrt(dx * dx + dy * dy) < DragThreshold)
        return;
    const QPointF start = mapFrom(window(), *m_dragStart);
    m_dragStart.reset();
    startDrag(start);
}

void GRItemListView::mouseReleaseEvent(QMouseEvent *event)
{
    Q_UNUSED(event)
    const bool toggle = m_checking && m_checkIsOn != m_checkWasOn;
    m_checking = false;
    m_dragStart.reset();
    if (toggle)
        toggleItem();
    else
        invalidateItem(m_selectedItem);
}

void GRItemListView::toggleItem()
{
    if (m_selectedItem >= quint64(itemCount()))
        return;
    const GRItemPtr item = m_items->at(qsizetype(m_selectedItem));
    if (!RecordUndo(GRUndoAction::Category, GRUndoDescriptor::CheckItem, item->category()))
        return;
    item->setNeeded(!item->isNeeded());
    invalidateItem(m_selectedItem);
    announceCell(m_selectedItem, QAccessible::StateChanged);
}

// ---- Drag

MGDragPasteboard *GRItemListView::makeDragPasteboard() const
{
    MGDragPasteboard *pasteboard = MGDragPasteboard::dragPasteboard();
    pasteboard->setString(QString::number(m_selectedItem), GRDragPasteboardType);
    return pasteboard;
}

QPixmap GRItemListView::dragImage() const
{
    if (m_selectedItem >= quint64(itemCount()))
        return {};
    const QString name = m_items->at(qsizetype(m_selectedItem))->name();
    const QFont font = QApplication::font();
    const QFontMetricsF metrics(font);
    const QSize size(qCeil(metrics.horizontalAdvance(name)), qCeil(metrics.height()));
    const qreal ratio = devicePixelRatioF();
    QPixmap image(size * ratio);
    image.setDevicePixelRatio(ratio);
    image.fill(Qt::transparent);
    if (size.isEmpty())
        return image;
    QPainter painter(&image);
    painter.setFont(font);
    painter.setPen(QColor(0, 0, 0, 128));
    painter.drawText(QRectF(QPointF(0, 0), QSizeF(size)), Qt::AlignLeft | Qt::AlignTop | Qt::TextSingleLine,
                     name);
    return image;
}

void GRItemListView::startDrag(QPointF start)
{
    if (m_selectedItem >= quint64(itemCount()))
        return;
    auto *drag = new QDrag(this);
    drag->setMimeData(makeDragPasteboard());
    drag->setPixmap(dragImage());
    drag->setHotSpot((start - itemRect(m_selectedItem).topLeft()).toPoint());
    if (m_dragRunner)
        m_dragRunner(drag);
    else
        drag->exec(Qt::MoveAction);
    drag->deleteLater();
}

// ---- Keyboard

void GRItemListView::keyPressEvent(QKeyEvent *event)
{
    const int functionKey = FunctionKeyForEvent(event, false);
    if (functionKey > 0) {
        if (itemCount() > 0)
            emit storeKeyPressed(functionKey - 1);
        return;
    }
    const Qt::KeyboardModifiers modifiers = event->modifiers() & ~Qt::KeypadModifier;
    const bool plain = modifiers == Qt::NoModifier;
    switch (event->key()) {
    case Qt::Key_Up:
        return plain ? moveUp() : QWidget::keyPressEvent(event);
    case Qt::Key_Down:
        return plain ? moveDown() : QWidget::keyPressEvent(event);
    case Qt::Key_Left:
        return plain ? moveLeft() : QWidget::keyPressEvent(event);
    case Qt::Key_Right:
        return plain ? moveRight() : QWidget::keyPressEvent(event);
    case Qt::Key_Home:
        return scrollToBeginningOfDocument();
    case Qt::Key_End:
        return scrollToEndOfDocument();
    case Qt::Key_Return:
    case Qt::Key_Enter:
        if (itemCount() > 0)
            emit changeItemRequested();
        return;
    case Qt::Key_Delete:
    case Qt::Key_Backspace:
        if (itemCount() > 0)
            emit deleteRequested();
        return;
    case Qt::Key_Menu:
        return showContextMenu();
    case Qt::Key_F10:
        if (modifiers == Qt::ShiftModifier)
            return showContextMenu();
        break;
    default:
        break;
    }
    const QString text = event->text();
    if (!text.isEmpty() && text.at(0).isPrint() &&
        !(modifiers & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier))) {
        insertText(text);
        return;
    }
    QWidget::keyPressEvent(event);
}

void GRItemListView::selectAndShow(quint64 index)
{
    setSelectedItem(index);
    showSelectedItem();
}

void GRItemListView::move(quint64 (GRItemNavigation::*step)(quint64) const)
{
    if (itemCount() == 0)
        return;
    const GRItemNavigation grid(quint64(itemCount()), rowCount(), columnCount());
    selectAndShow((grid.*step)(m_selectedItem));
}

void GRItemListView::moveUp()
{
    move(&GRItemNavigation::up);
}

void GRItemListView::moveDown()
{
    move(&GRItemNavigation::down);
}

void GRItemListView::moveLeft()
{
    move(&GRItemNavigation::left);
}

void GRItemListView::moveRight()
{
    move(&GRItemNavigation::right);
}

void GRItemListView::scrollToBeginningOfDocument()
{
    setSelectedItem(0);
    showSelectedItem();
}

void GRItemListView::scrollToEndOfDocument()
{
    if (itemCount() > 0)
        setSelectedItem(quint64(itemCount()) - 1);
    showSelectedItem();
}

void GRItemListView::insertText(const QString &text)
{
    if (!hasFocus() || !m_items)
        return;
    const GRTypeSelect::Outcome outcome = m_typeSelect.insertText(text, *m_items, m_selectedItem);
    if (outcome.kind == GRTypeSelect::Outcome::Toggle)
        toggleItem();
    else if (outcome.kind == GRTypeSelect::Outcome::Select)
        selectAndShow(outcome.index);
}

// ---- Context menu

void GRItemListView::contextMenuEvent(QContextMenuEvent *event)
{
    if (event->reason() == QContextMenuEvent::Mouse) {
        if (handleMouseEvent(event->pos()))
            popUpContextMenu(event->pos());
        return;
    }
    showContextMenu();
}

void GRItemListView::showContextMenu()
{
    if (itemCount() == 0)
        return;
    showSelectedItem();
    const QRectF cell = itemRect(m_selectedItem);
    popUpContextMenu(QPointF(cell.left() + cell.height(), cell.bottom()));
}

void GRItemListView::popUpContextMenu(QPointF point)
{
    if (m_contextMenu)
        m_contextMenu->popup(mapToGlobal(point.toPoint()));
}

void GRItemListView::focusInEvent(QFocusEvent *event)
{
    QWidget::focusInEvent(event);
    if (itemCount() > 0)
        announceCell(m_selectedItem, QAccessible::Focus);
    update();
}

void GRItemListView::focusOutEvent(QFocusEvent *event)
{
    QWidget::focusOutEvent(event);
    update();
}

void GRItemListView::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::ActivationChange)
        update();
}

bool GRItemListView::event(QEvent *event)
{
    if (event->type() == QEvent::ParentChange)
        watchEnclosingView();
    return QWidget::event(event);
}

bool GRItemListView::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_watched && event->type() == QEvent::Resize)
        relayoutKeepingSelection();
    return QWidget::eventFilter(watched, event);
}

bool GRItemListView::isActive() const
{
    return window()->isActiveWindow() && hasFocus();
}

void GRItemListView::watchEnclosingView()
{
    if (m_watched == parentWidget())
        return;
    if (m_watched)
        m_watched->removeEventFilter(this);
    m_watched = parentWidget();
    if (!m_watched)
        return;
    m_watched->installEventFilter(this);
    if (auto *scrollArea = qobject_cast<QScrollArea *>(m_watched->parentWidget())) {
        scrollArea->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
        scrollArea->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
        scrollArea->setWidgetResizable(false);
    }
}
