#pragma once

#include "GRTypes.h"

#include <QAccessibleActionInterface>
#include <QAccessibleInterface>
#include <QPointer>

class GRItemListView;

// One cell of the item grid: a check box named "Milk, needed, 2, Aisle 5, Corner Market" whose
// state follows the item's needed mark. It stands for a position in the list on show, so it
// reads whichever item is there now.
class GRItemCellAccessible : public QAccessibleInterface, public QAccessibleActionInterface
{
public:
    GRItemCellAccessible(GRItemListView *view, int index);

    // The spoken name of item: name, whether needed, the count, the aisle and the store.
    static QString accessibleName(const GRItem &item);

    bool isValid() const override;
    QObject *object() const override { return nullptr; }
    QWindow *window() const override;
    QAccessibleInterface *focusChild() const override { return nullptr; }
    QAccessibleInterface *childAt(int, int) const override { return nullptr; }
    QAccessibleInterface *parent() const override;
    QAccessibleInterface *child(int) const override { return nullptr; }
    int childCount() const override { return 0; }
    int indexOfChild(const QAccessibleInterface *) const override { return -1; }
    QString text(QAccessible::Text t) const override;
    void setText(QAccessible::Text, const QString &) override {}
    QRect rect() const override;
    QAccessible::Role role() const override { return QAccessible::CheckBox; }
    QAccessible::State state() const override;
    void *interface_cast(QAccessible::InterfaceType type) override;

    QStringList actionNames() const override;
    void doAction(const QString &actionName) override;
    QStringList keyBindingsForAction(const QString &actionName) const override;

private:
    GRItemPtr item() const;

    QPointer<GRItemListView> m_view;
    int m_index;
};
