#pragma once

#include <QAccessibleWidget>
#include <QHash>

class GRItemListView;

// The item grid as assistive technology sees it: a list whose children are the items on show,
// each a check box (GRItemCellAccessible).
class GRItemListAccessible : public QAccessibleWidget
{
public:
    explicit GRItemListAccessible(QWidget *widget);
    ~GRItemListAccessible() override;

    // Registers the factory that gives every item grid this interface; once per process.
    static void install();

    GRItemListView *view() const;
    int childCount() const override;
    QAccessibleInterface *child(int index) const override;
    int indexOfChild(const QAccessibleInterface *child) const override;
    QAccessibleInterface *childAt(int x, int y) const override;
    QAccessibleInterface *focusChild() const override;

private:
    mutable QHash<int, QAccessible::Id> m_cells;
};
