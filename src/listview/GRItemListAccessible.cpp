#include "GRItemListAccessible.h"

#include "GRItemCellAccessible.h"
#include "GRItemListView.h"

GRItemListAccessible::GRItemListAccessible(QWidget *widget) : QAccessibleWidget(widget, QAccessible::List) {}

GRItemListAccessible::~GRItemListAccessible()
{
    for (const QAccessible::Id id : std::as_const(m_cells))
        QAccessible::deleteAccessibleInterface(id);
}

void GRItemListAccessible::install()
{
    static bool installed = false;
    if (installed)
        return;
    installed = true;
    QAccessible::installFactory([](const QString &className, QObject *object) -> QAccessibleInterface * {
        if (className == QLatin1String("GRItemListView") && object && object->isWidgetType())
            return new GRItemListAccessible(static_cast<QWidget *>(object));
        return nullptr;
    });
}

GRItemListView *GRItemListAccessible::view() const
{
    return static_cast<GRItemListView *>(widget());
}

int GRItemListAccessible::childCount() const
{
    return int(view()->itemCount());
}

QAccessibleInterface *GRItemListAccessible::child(int index) const
{
    if (index < 0 || index >= childCount())
        return nullptr;
    const auto cell = m_cells.constFind(index);
    if (cell != m_cells.constEnd())
        return QAccessible::accessibleInterface(*cell);
    auto *made = new GRItemCellAccessible(view(), index);
    m_cells.insert(index, QAccessible::registerAccessibleInterface(made));
    return made;
}

int GRItemListAccessible::indexOfChild(const QAccessibleInterface *child) const
{
    for (auto cell = m_cells.constBegin(); cell != m_cells.constEnd(); ++cell) {
        if (QAccessible::accessibleInterface(cell.value()) == child)
            return cell.key() < childCount() ? cell.key() : -1;
    }
    return -1;
}

QAccessibleInterface *GRItemListAccessible::childAt(int x, int y) const
{
    const qint64 index = view()->itemAt(view()->mapFromGlobal(QPoint(x, y)));
    return index < 0 ? nullptr : child(int(index));
}

QAccessibleInterface *GRItemListAccessible::focusChild() const
{
    if (!view()->hasFocus() || childCount() == 0)
        return nullptr;
    return child(int(view()->selectedItem()));
}
