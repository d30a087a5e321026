#pragma once

#include <QtGlobal>

// What undo needs of the window that shows the list: the selected category, and the refreshes
// after an undo or redo exchanged the records.
class GRUndoView
{
public:
    virtual ~GRUndoView() = default;
    // The selected row of the groups table in category mode, otherwise -1.
    virtual qint64 currentCategory() const = 0;
    // Closes an open name editor without committing it.
    virtual void cancelOperation() = 0;
    // Reloads the groups table, selects row (category mode) and rebuilds the list on show.
    virtual void reloadCategoriesCore(qint64 row) = 0;
    virtual void deselectAll() = 0;
    // The edited mark follows g_dirty and the preferences' dirty flag.
    virtual void updateEditedMark() = 0;
};
