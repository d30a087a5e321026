#pragma once

#include "GRTypes.h"

#include <QString>

// What an undo step copies before a command changes anything.
enum class GRUndoAction : quint32
{
    Categories = 0,          // every category with copies of its items
    Category = 1,            // the one category given as context, with copies of its items
    CategoriesAndStores = 2, // every category with its items, and every store
};

// What the command was; it names the step in the Undo and Redo menu titles.
enum class GRUndoDescriptor : quint32
{
    AddItem = 0,
    ChangeItem = 1,
    CutItem = 2,
    PasteItem = 3,
    DeleteItem = 4,
    Duplicate = 5,
    MoveItem = 6,
    ClearAllCheckmarks = 7,
    CheckItem = 8,
    ReassignStore = 9,
    AddCategory = 10,
    RenameCategory = 11,
    DeleteCategory = 12,
    Stores = 13,
    AddStore = 14,
    RenameStore = 15,
    DeleteStore = 16,
};

// "Add Item", "Change Item", ...; empty for a number outside the table.
QString UndoDescriptorName(quint32 descriptor);
// Records a step with the shared undo manager before a command changes anything. False when it
// was refused: the command must then change nothing.
bool RecordUndo(GRUndoAction action, GRUndoDescriptor descriptor, const GRCategoryPtr &context = nullptr);
