#include "GRGroceryQueries.h"

#include "GRCategory.h"
#include "GRGroceryDatabase.h"
#include "GRItem.h"
#include "GRStore.h"

template <typename Keep> static QList<GRItemPtr> itemsWhere(const GRGroceryDatabase &database, Keep keep)
{
    QList<GRItemPtr> items;
    for (const GRCategoryPtr &category : database.categories()) {
        for (const GRItemPtr &item : category->items()) {
            if (keep(*item))
                items.append(item);
        }
    }
    return items;
}

QList<GRItemPtr> GRGroceryQueries::itemsOfGroup(const GRGroceryDatabase &database, bool storeMode, qint64 row)
{
    if (storeMode) {
        if (row < 0 || row >= database.stores().size())
            return {};
        return itemsOfStore(database, database.stores().at(row).get());
    }
    if (row < 0 || row >= database.categories().size())
        return {};
    return database.categories().at(row)->items();
}

QList<GRItemPtr> GRGroceryQueries::itemsOfStore(const GRGroceryDatabase &database, const GRStore *store)
{
    QList<GRItemPtr> items;
    const QList<GRCategoryPtr> &categories = database.categories();
    for (auto category = categories.crbegin(); category != categories.crend(); ++category) {
        const QList<GRItemPtr> &inCategory = (*category)->items();
        for (auto item = inCategory.crbegin(); item != inCategory.crend(); ++item) {
            if ((*item)->store().get() == store)
                items.append(*item);
        }
    }
    return items;
}

QList<GRItemPtr> GRGroceryQueries::allItems(const GRGroceryDatabase &database)
{
    return itemsWhere(database, [](const GRItem &) { return true; });
}

QList<GRItemPtr> GRGroceryQueries::neededItems(const GRGroceryDatabase &database)
{
    return itemsWhere(database, [](const GRItem &item) { return item.isNeeded(); });
}

QList<GRItemPtr> GRGroceryQueries::findItems(const GRGroceryDatabase &database, const QString &text)
{
    return itemsWhere(
        database, [&text](const GRItem &item) { return item.name().contains(text, Qt::CaseInsensitive); });
}

qint64 GRGroceryQueries::groupRowOfItem(const GRGroceryDatabase &database, bool storeMode,
                                        const GRItemPtr &item)
{
    if (!item)
        return -1;
    return storeMode ? database.indexOfStore(item->store().get())
                     : database.indexOfCategory(item->category().get());
}
