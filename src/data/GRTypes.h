#pragma once

#include <QMetaType>

#include <memory>

// Records are shared between the live lists, the list on show, dialogs and undo snapshots, so
// stores, categories and items are held by shared pointers. An item's category is a weak
// back-reference (the category owns its items); an item's store is a strong reference so that
// an item in an old snapshot still names the store it was bought at.
class GRStore;
class GRCategory;
class GRItem;
using GRStorePtr = std::shared_ptr<GRStore>;
using GRCategoryPtr = std::shared_ptr<GRCategory>;
using GRItemPtr = std::shared_ptr<GRItem>;

// Notifications carry records in their user info.
Q_DECLARE_METATYPE(GRItemPtr)
Q_DECLARE_METATYPE(GRCategoryPtr)
Q_DECLARE_METATYPE(GRStorePtr)
