#pragma once

#include "GRTypes.h"

#include <QList>

// One undo step: the part of the database a command is about to change, exchanged with the live
// state on undo and again on redo, so that one record serves both directions.
struct GRUndoRecord
{
    QList<GRCategoryPtr> categories; // Categories and CategoriesAndStores
    QList<GRStorePtr> stores;        // CategoriesAndStores
    GRCategoryPtr category;          // Category
    QList<GRItemPtr> displayed;      // the list on show
    qint64 selection = -1;           // the selected category row, -1 for none or store mode
    bool wasChanged = false;         // whether the database counted as changed
};
