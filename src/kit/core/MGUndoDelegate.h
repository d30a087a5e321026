#pragma once

#include <QString>
#include <QtGlobal>

#include <any>

// The owner of the undo entries' contents: fills, applies, names and frees them. The manager only
// decides when an entry is made, reused, dropped, undone or redone.
class MGUndoDelegate
{
public:
    virtual ~MGUndoDelegate() = default;
    virtual bool setUndoAction(quint32 action, quint32 descriptor, std::any &data,
                               const std::any &context) = 0;
    virtual bool undoOrRedo(quint32 &action, quint32 descriptor, std::any &data, bool isRedo) = 0;
    virtual QString undoActionName(quint32 descriptor, const std::any &data) = 0;
    virtual void freeUndoAction(quint32 action, quint32 descriptor, std::any &data, bool freeAll) = 0;
    // Optional; the defaults behave as a delegate that does not implement them.
    virtual bool coalesceUndoAction(quint32, quint32, std::any &, const std::any &) { return false; }
    virtual void didPopUndoAction(quint32, quint32, std::any &) {}
    virtual void enumeratedUndoAction(quint32, quint32, std::any &, const std::any &) {}
};
