#include "GRSnapshots.h"

#include "GRCategory.h"
#include "GRItem.h"
#include "GRStore.h"

QList<GRCategoryPtr> CopyCategories(const QList<GRCategoryPtr> &categories, QList<GRItemPtr> &list)
{
    QList<GRCategoryPtr> copies;
    copies.reserve(categories.size());
    for (const GRCategoryPtr &category : categories)
        copies.append(CopyCategory(category, list));
    return copies;
}

GRCategoryPtr CopyCategory(const GRCategoryPtr &category, QList<GRItemPtr> &list)
{
    if (!category)
        return nullptr;
    GRCategoryPtr copy = category->copy();
    if (list.isEmpty())
        return copy;
    QHash<const GRItem *, GRItemPtr> copies;
    qsizetype next = 0; // the copy leaves out null entries
    for (const GRItemPtr &source : category->items()) {
        if (source)
            copies.insert(source.get(), copy->items().at(next++));
    }
    for (GRItemPtr &entry : list) {
        const auto found = copies.constFind(entry.get());
        if (found != copies.cend())
            entry = *found;
    }
    return copy;
}

QList<GRStorePtr> CopyStores(const QList<GRStorePtr> &stores, QHash<QString, GRStorePtr> &byGuid)
{
    byGuid.clear();
    QList<GRStorePtr> copies;
    copies.reserve(stores.size());
    for (const GRStorePtr &store : stores) {
        if (!store)
            continue;
        GRStorePtr copy = store->copy();
        copies.append(copy);
        byGuid.insert(copy->guid(), copy);
    }
    return copies;
}
