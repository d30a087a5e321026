#pragma once

#include "GRTypes.h"
#include "MGUndoDelegate.h"

#include <QList>

class GRGroceryDatabase;
class GRUndoView;

// The undo delegate of the grocery list. Before a command changes anything it copies the part of
// the database the command is about to change (GRUndoAction), together with the list on show and
// the selected category; undo and redo exchange that copy with the live state.
class GRSnapshotUndo : public MGUndoDelegate
{
public:
    static constexpr quint32 Capacity = 25;

    GRSnapshotUndo(GRGroceryDatabase &database, QList<GRItemPtr> &displayItems);
    ~GRSnapshotUndo() override;
    GRSnapshotUndo(const GRSnapshotUndo &) = delete;
    GRSnapshotUndo &operator=(const GRSnapshotUndo &) = delete;

    // The window that shows the list; without one undo works on the data alone.
    void setView(GRUndoView *view) { m_view = view; }
    // Makes this the shared undo manager's delegate, with room for 25 steps.
    void install();

    bool setUndoAction(quint32 action, quint32 descriptor, std::any &data, const std::any &context) override;
    bool undoOrRedo(quint32 &action, quint32 descriptor, std::any &data, bool isRedo) override;
    QString undoActionName(quint32 descriptor, const std::any &data) override;
    void freeUndoAction(quint32 action, quint32 descriptor, std::any &data, bool freeAll) override;

private:
    qint64 currentCategory() const;
    void updateEditedMark();

    GRGroceryDatabase &m_database;
    QList<GRItemPtr> &m_displayItems;
    GRUndoView *m_view = nullptr;
};
