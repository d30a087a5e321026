#pragma once

#include "GRTypes.h"
#include "GRUndoKinds.h"

#include <QList>
#include <QString>

class GRGroceryDatabase;

// What the item sheet shows and edits, apart from any item: the sheet works on these values and
// OK hands them to apply().
struct GRItemFields
{
    QString name;
    QString aisle;           // the aisle number as typed; empty for none
    qint64 specialAisle = 0; // 1-6 for a special aisle; 0 for a numbered aisle or none
    qint64 categoryIndex = 0;
    qint64 storeIndex = 0;
    bool needed = false;
    quint64 count = 0;

    // The item's values; its category and store are found by identity (0 when not in the lists).
    static GRItemFields fromItem(const GRGroceryDatabase &database, const GRItemPtr &item);
    // A new item starts in the selected category and store, or the first of each.
    static GRItemFields forNewItem(qint64 currentCategory, qint64 currentStore);

    // The aisle to store: minus the special aisle, or the leading digits of the typed number.
    qint64 aisleValue() const;
    // Whether OK may apply them.
    bool isComplete() const { return !name.isEmpty(); }

    // The undo step OK records for item (null for a new one): one category when the item stays
    // where it is, every category when it moves.
    GRUndoAction undoAction(const GRGroceryDatabase &database, const GRItemPtr &item) const;
    static GRUndoDescriptor undoDescriptor(const GRItemPtr &item)
    {
        return item ? GRUndoDescriptor::ChangeItem : GRUndoDescriptor::AddItem;
    }
    // The category the item will be in; null when the index is outside the list.
    GRCategoryPtr category(const GRGroceryDatabase &database) const;

    // Writes the values into item (a new one when null), moving it to the end of its new
    // category's items when the category changes, and appends it to displayItems when it is not
    // on show. The edited item; null when the category index is outside the list.
    GRItemPtr apply(const GRGroceryDatabase &database, QList<GRItemPtr> &displayItems, GRItemPtr item) const;
};
