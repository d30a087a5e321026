#include "GRGroceryDatabase.h"

#include "GRCategory.h"
#include "GRStore.h"

QList<qint64> GRGroceryDatabase::defaultAisleOrder()
{
    return {0, 1, 2, 3, 4, 5, 6};
}

GRGroceryDatabase::GRGroceryDatabase() : m_aisleOrder(defaultAisleOrder()) {}

void GRGroceryDatabase::clear()
{
    m_stores.clear();
    m_categories.clear();
    m_columnCount = DefaultColumnCount;
    m_aisleOrder = defaultAisleOrder();
    m_categoryOrder.clear();
    m_manualOrder = false;
}

qsizetype GRGroceryDatabase::itemCount() const
{
    qsizetype count = 0;
    for (const GRCategoryPtr &category : m_categories)
        count += category ? category->items().size() : 0;
    return count;
}

qsizetype GRGroceryDatabase::indexOfStore(const GRStore *store) const
{
    for (qsizetype i = 0; i < m_stores.size(); ++i) {
        if (m_stores.at(i).get() == store)
            return i;
    }
    return -1;
}

qsizetype GRGroceryDatabase::indexOfCategory(const GRCategory *category) const
{
    for (qsizetype i = 0; i < m_categories.size(); ++i) {
        if (m_categories.at(i).get() == category)
            return i;
    }
    return -1;
}

GRStorePtr GRGroceryDatabase::storeForGuid(const QString &guid) const
{
    // Qt treats a null and an empty string as equal; a missing GUID names no store.
    if (guid.isEmpty())
        return nullptr;
    for (const GRStorePtr &store : m_stores) {
        if (store && store->guid() == guid)
            return store;
    }
    return nullptr;
}

GRCategoryPtr GRGroceryDatabase::categoryForGuid(const QString &guid) const
{
    for (const GRCategoryPtr &category : m_categories) {
        if (category && category->guid() == guid)
            return category;
    }
    return nullptr;
}

GRCategoryPtr GRGroceryDatabase::categoryForName(const QString &name) const
{
    for (const GRCategoryPtr &category : m_categories) {
        if (category && category->name() == name)
            return category;
    }
    return nullptr;
}

void GRGroceryDatabase::updateCategoryOrder()
{
    QList<GRCategoryOrderEntry> order;
    if (m_manualOrder) {
        QList<GRCategoryPtr> remaining = m_categories;
        for (const GRCategoryOrderEntry &entry : std::as_const(m_categoryOrder)) {
            GRCategoryPtr category = categoryForGuid(entry.guid);
            // A category already placed by an earlier entry with the same GUID keeps that place.
            if (category && remaining.removeOne(category))
                order.append({category, entry.guid});
        }
        for (const GRCategoryPtr &category : std::as_const(remaining)) {
            if (category)
                order.append({category, category->guid()});
        }
    } else {
        order.reserve(m_categories.size());
        for (const GRCategoryPtr &category : std::as_const(m_categories)) {
            if (category)
                order.append({category, category->guid()});
        }
    }
    m_categoryOrder = std::move(order);
}
