#include "GRItemCellAccessible.h"

#include "GRAisles.h"
#include "GRItem.h"
#include "GRItemListView.h"
#include "GRStore.h"

#include <QWidget>
#include <QWindow>

GRItemCellAccessible::GRItemCellAccessible(GRItemListView *view, int index) : m_view(view), m_index(index) {}

QString GRItemCellAccessible::accessibleName(const GRItem &item)
{
    QStringList parts{item.name()};
    if (item.isNeeded())
        parts << QObject::tr("needed");
    if (item.needCount() >= 2)
        parts << QString::number(item.needCount());
    if (item.aisle() != 0)
        parts << GRAisles::displayName(item.aisle());
    if (item.store())
        parts << item.store()->name();
    return parts.join(QStringLiteral(", "));
}

GRItemPtr GRItemCellAccessible::item() const
{
    if (!m_view || !m_view->items())
        return nullptr;
    return m_view->items()->value(m_index);
}

bool GRItemCellAccessible::isValid() const
{
    return item() != nullptr;
}

QWindow *GRItemCellAccessible::window() const
{
    return m_view ? m_view->window()->windowHandle() : nullptr;
}

QAccessibleInterface *GRItemCellAccessible::parent() const
{
    return m_view ? QAccessible::queryAccessibleInterface(m_view) : nullptr;
}

QString GRItemCellAccessible::text(QAccessible::Text t) const
{
    const GRItemPtr shown = item();
    if (!shown)
        return {};
    switch (t) {
    case QAccessible::Name:
        return accessibleName(*shown);
    case QAccessible::Value:
        return shown->isNeeded() ? QObject::tr("needed") : QObject::tr("not needed");
    default:
        return {};
    }
}

QRect GRItemCellAccessible::rect() const
{
    if (!m_view)
        return {};
    const QRect cell = m_view->itemRect(quint64(m_index)).toAlignedRect();
    return QRect(m_view->mapToGlobal(cell.topLeft()), cell.size());
}

QAccessible::State GRItemCellAccessible::state() const
{
    QAccessible::State state;
    const GRItemPtr shown = item();
    if (!shown) {
        state.invalid = true;
        return state;
    }
    state.checkable = true;
    state.checked = shown->isNeeded();
    state.focusable = true;
    state.selectable = true;
    const bool selected = m_view->selectedItem() == quint64(m_index);
    state.selected = selected;
    state.focused = selected && m_view->hasFocus();
    const QRect visible = m_view->visibleRegion().boundingRect();
    state.offscreen = !visible.intersects(m_view->itemRect(quint64(m_index)).toAlignedRect());
    return state;
}

void *GRItemCellAccessible::interface_cast(QAccessible::InterfaceType type)
{
    return type == QAccessible::ActionInterface ? static_cast<QAccessibleActionInterface *>(this) : nullptr;
}

QStringList GRItemCellAccessible::actionNames() const
{
    return {toggleAction(), setFocusAction()};
}

void GRItemCellAccessible::doAction(const QString &actionName)
{
    if (!isValid())
        return;
    m_view->setSelectedItem(quint64(m_index));
    if (actionName == toggleAction())
        m_view->toggleItem();
    else if (actionName == setFocusAction())
        m_view->setFocus(Qt::OtherFocusReason);
}

QStringList GRItemCellAccessible::keyBindingsForAction(const QString &actionName) const
{
    return actionName == toggleAction() ? QStringList{QStringLiteral("Space")} : QStringList();
}
