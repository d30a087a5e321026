#include "GRRecordPositions.h"

#include "GRGroceryDatabase.h"

GRRecordPositions::GRRecordPositions(const GRGroceryDatabase &database)
{
    // A record listed twice answers with its first position, as a search in list order would.
    m_stores.reserve(database.stores().size());
    for (qsizetype i = 0; i < database.stores().size(); ++i)
        m_stores.insert(database.stores().at(i).get(), m_stores.value(database.stores().at(i).get(), i));
    m_categories.reserve(database.categories().size());
    for (qsizetype i = 0; i < database.categories().size(); ++i) {
        const GRCategory *category = database.categories().at(i).get();
        m_categories.insert(category, m_categories.value(category, i));
    }
}

qint64 GRRecordPositions::storeIndex(const GRStore *store) const
{
    return m_stores.value(store, -1);
}

qint64 GRRecordPositions::categoryIndex(const GRCategory *category) const
{
    return m_categories.value(category, -1);
}
