#pragma once

#include <QHash>

class GRCategory;
class GRGroceryDatabase;
class GRStore;

// Where each store and category stands in its list. The file names an item's store and category
// by position; a save builds this once instead of searching the lists for every item.
class GRRecordPositions
{
public:
    explicit GRRecordPositions(const GRGroceryDatabase &database);

    qint64 storeIndex(const GRStore *store) const;          // -1 when absent
    qint64 categoryIndex(const GRCategory *category) const; // -1 when absent

private:
    QHash<const GRStore *, qint64> m_stores;
    QHash<const GRCategory *, qint64> m_categories;
};
