#pragma once

#include "GRTypes.h"

#include <QList>
#include <QString>

class GRGroceryDatabase;

// The data half of every command: each changes only the database it is given. The caller records
// the undo step first and refreshes the views after.
class GRGroceryEdits
{
public:
    // Sets the name and re-sorts the categories by name; the category's new row.
    static qint64 renameCategory(GRGroceryDatabase &database, const GRCategoryPtr &category,
                                 const QString &name);
    // "New category" / "New store" at the end of its list, not sorted until renamed.
    static GRCategoryPtr addCategory(GRGroceryDatabase &database);
    static GRStorePtr addStore(GRGroceryDatabase &database);
    // Who receives the items of the category at row when it goes: the first category, or the
    // second when row is the first. Null when row is outside the list or it is the only one.
    static GRCategoryPtr categoryHeir(const GRGroceryDatabase &database, qint64 row);
    // Appends the victim's items to the heir's and removes the victim from the list.
    static void mergeCategory(GRGroceryDatabase &database, const GRCategoryPtr &victim,
                              const GRCategoryPtr &heir);
    // Moves the item to the end of target's items; false when it is there already.
    static bool moveItem(const GRItemPtr &item, const GRCategoryPtr &target);
    // Gives the item another store; false when it is bought there already.
    static bool reassignStore(const GRItemPtr &item, const GRStorePtr &store);
    static void clearChecks(GRGroceryDatabase &database);
    // Appends the item to category, which becomes its category.
    static void insertItem(const GRCategoryPtr &category, const GRItemPtr &item);
    // Takes the item out of the list on show and out of its category. The item to select next:
    // the one now at its old place, or the last; null when the list is empty.
    static GRItemPtr removeItem(QList<GRItemPtr> &displayItems, const GRItemPtr &item);
    // A copy of item at the end of its category's items and of the list on show.
    static GRItemPtr duplicateItem(QList<GRItemPtr> &displayItems, const GRItemPtr &item);
    // The pasteboard text of type "mwgroceries.item": the item's XML, naming its category and
    // store by position in database. Empty when either is not in the lists.
    static QString itemPasteboardText(const GRGroceryDatabase &database, const GRItemPtr &item);
    // The item that pasteboard text of type "mwgroceries.item" describes, its category and store
    // resolved against database; null when the text is no such item.
    static GRItemPtr itemFromPasteboardText(const GRGroceryDatabase &database, const QByteArray &text);

    // The store list with the store at row replaced by a renamed copy, or without it.
    static QList<GRStorePtr> storesRenaming(const GRGroceryDatabase &database, qint64 row,
                                            const QString &name);
    static QList<GRStorePtr> storesWithout(const GRGroceryDatabase &database, qint64 row);
    // Replaces the store list: the first store stays first and the others are sorted by name;
    // every item is pointed at the new store of its store's GUID, or at the first store when its
    // store is gone. False, and nothing changed, for an empty list.
    static bool installNewStores(GRGroceryDatabase &database, QList<GRStorePtr> newStores);
    // Points every item whose store is not in the list at the store with the same GUID, or at the
    // first store; a consistent database is left as it is.
    static void repointItemStores(GRGroceryDatabase &database);
};
