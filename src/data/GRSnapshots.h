#pragma once

#include "GRTypes.h"

#include <QHash>
#include <QList>
#include <QString>

// Deep copies for undo snapshots.
// A copy of every category with copies of its items; entries of list that are items of a copied
// category are replaced, in place, by the item's copy.
QList<GRCategoryPtr> CopyCategories(const QList<GRCategoryPtr> &categories, QList<GRItemPtr> &list);
GRCategoryPtr CopyCategory(const GRCategoryPtr &category, QList<GRItemPtr> &list);
// A copy of every store, in order, and the same copies keyed by GUID.
QList<GRStorePtr> CopyStores(const QList<GRStorePtr> &stores, QHash<QString, GRStorePtr> &byGuid);
