#pragma once

#include "GRTypes.h"

#include <QList>
#include <QString>

class GRGroceryDatabase;
class GRStore;

// The lists a command puts on show, read from the database it is given.
class GRGroceryQueries
{
public:
    // The items of the category at row in the category's order, or those bought at the store at
    // row: categories from the last to the first, and each one's items from the last to the
    // first. Empty for a row outside the list.
    static QList<GRItemPtr> itemsOfGroup(const GRGroceryDatabase &database, bool storeMode, qint64 row);
    static QList<GRItemPtr> itemsOfStore(const GRGroceryDatabase &database, const GRStore *store);
    // Every item, categories in list order and items in each category's order.
    static QList<GRItemPtr> allItems(const GRGroceryDatabase &database);
    static QList<GRItemPtr> neededItems(const GRGroceryDatabase &database);
    // The items whose name holds text, compared without regard to case.
    static QList<GRItemPtr> findItems(const GRGroceryDatabase &database, const QString &text);
    // The row of the item's store (store mode) or category in the groups table; -1 when absent.
    static qint64 groupRowOfItem(const GRGroceryDatabase &database, bool storeMode, const GRItemPtr &item);
};
