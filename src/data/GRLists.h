#pragma once

#include "GRTypes.h"

#include <QHash>
#include <QList>
#include <QString>

// The live store and category lists. The application controller owns them through this
// object; records resolve file positions and GUIDs against it before that controller exists.
class GRLists
{
public:
    static GRLists &shared();

    QList<GRStorePtr> &stores() { return m_stores; }
    QList<GRCategoryPtr> &categories() { return m_categories; }
    // The items the item list shows, filled by the main window for the chosen group.
    QList<GRItemPtr> &displayItems() { return m_displayItems; }
    void clear();

    qsizetype indexOfStore(const GRStore *store) const;          // -1 when absent
    qsizetype indexOfCategory(const GRCategory *category) const; // -1 when absent

private:
    QList<GRStorePtr> m_stores;
    QList<GRCategoryPtr> m_categories;
    QList<GRItemPtr> m_displayItems;
};

// The name sorter: by name, ascending, case-insensitive; stable, so equal names keep their order.
void SortByName(QList<GRItemPtr> &items);
void SortByName(QList<GRCategoryPtr> &categories);

// Undo snapshots.
// A deep copy of every live category; entries of list that are items of a copied category are
// replaced, in place, by the item's copy.
QList<GRCategoryPtr> CopyCategories(QList<GRItemPtr> &list);
GRCategoryPtr CopyCategory(const GRCategoryPtr &category, QList<GRItemPtr> &list);
// A copy of every live store, in order, and the same copies keyed by GUID.
QList<GRStorePtr> CopyStores(QHash<QString, GRStorePtr> &byGuid);

// A fresh upper-case GUID, 36 characters.
QString GRNewGuid();
