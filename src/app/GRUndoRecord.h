#pragma once

#include "GRTypes.h"

#include <QList>

// One undo entry of the main window: the part of the database a command is about to change,
// swapped with the live state on undo and again on redo.
struct GRUndoRecord
{
    QList<GRCategoryPtr> categories; // actions 0 and 2
    QList<GRStorePtr> stores;        // action 2
    GRCategoryPtr category;          // action 1
    QList<GRItemPtr> displayed;      // the list on show
    qint64 selection = -1;           // the selected category row, -1 for none or store mode
    bool wasChanged = false;         // whether the database counted as changed
};
