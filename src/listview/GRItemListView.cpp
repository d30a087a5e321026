#include "GRItemListView.h"

#include "DrawQuartzCheckbox.h"
#include "GRItem.h"
#include "GRNameSorter.h"
#include "GRNames.h"
#include "GRPrefController.h"
#include "GRStore.h"
#include "MGNotificationCenter.h"

#include <QFontMetricsF>
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
        drawItem(items[i], items[i]->isNeeded(), rect, painter);
    }
}

void GRItemListView::mousePressEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton) {
        QWidget::mousePressEvent(event);
        return;
    }
    const qint64 index = itemAt(event->position());
    if (index >= 0)
        setSelectedItem(quint64(index));
}

void GRItemListView::focusInEvent(QFocusEvent *event)
{
    QWidget::focusInEvent(event);
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
