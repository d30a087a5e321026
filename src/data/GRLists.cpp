#include "GRLists.h"

#include "GRCategory.h"
#include "GRItem.h"
#include "GRStore.h"

#include <QUuid>

#include <algorithm>

GRLists &GRLists::shared()
{
    // Never destroyed: records may still be referenced from other statics at exit.
    static GRLists *const instance = new GRLists;
    return *instance;
}

void GRLists::clear()
{
    m_stores.clear();
    m_categories.clear();
    m_displayItems.clear();
}

qsizetype GRLists::indexOfStore(const GRStore *store) const
{
    for (qsizetype i = 0; i < m_stores.size(); ++i) {
        if (m_stores.at(i).get() == store)
            return i;
    }
    return -1;
}

qsizetype GRLists::indexOfCategory(const GRCategory *category) const
{
    for (qsizetype i = 0; i < m_categories.size(); ++i) {
        if (m_categories.at(i).get() == category)
            return i;
    }
    return -1;
}

QList<GRCategoryPtr> CopyCategories(QList<GRItemPtr> &list)
{
    QList<GRCategoryPtr> copies;
    const QList<GRCategoryPtr> live = GRLists::shared().categories();
    copies.reserve(live.size());
    for (const GRCategoryPtr &category : live)
        copies.append(CopyCategory(category, list));
    return copies;
}

GRCategoryPtr CopyCategory(const GRCategoryPtr &category, QList<GRItemPtr> &list)
{
    if (!category)
        return nullptr;
    GRCategoryPtr copy = category->copy();
    const QList<GRItemPtr> &sources = category->items();
    for (qsizetype i = 0; i < sources.size(); ++i) {
        const GRItem *source = sources.at(i).get();
        for (GRItemPtr &entry : list) {
            if (entry.get() == source) {
                entry = copy->items().at(i);
                break;
            }
        }
    }
    return copy;
}

QList<GRStorePtr> CopyStores(QHash<QString, GRStorePtr> &byGuid)
{
    byGuid.clear();
    QList<GRStorePtr> copies;
    const QList<GRStorePtr> live = GRLists::shared().stores();
    copies.reserve(live.size());
    for (const GRStorePtr &store : live) {
        if (!store)
            continue;
        GRStorePtr copy = store->copy();
        copies.append(copy);
        byGuid.insert(copy->guid(), copy);
    }
    return copies;
}

QString GRNewGuid()
{
    return QUuid::createUuid().toString(QUuid::WithoutBraces).toUpper();
}

template <typename Ptr> static void sortByName(QList<Ptr> &records)
{
    std::stable_sort(records.begin(), records.end(), [](const Ptr &a, const Ptr &b) {
        return QString::compare(a->name(), b->name(), Qt::CaseInsensitive) < 0;
    });
}

void SortByName(QList<GRItemPtr> &items)
{
    sortByName(items);
}

void SortByName(QList<GRCategoryPtr> &categories)
{
    sortByName(categories);
}
