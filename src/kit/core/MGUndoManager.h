#pragma once

#include <QString>
#include <QtGlobal>

#include <any>
#include <deque>
#include <functional>

class MGUndoDelegate;

// A fixed ring of undo entries shared by the whole process. Entries 0 .. inUseCount-1 hold actions;
// those up to currentEntry can be undone, those above it redone.
class MGUndoManager
{
public:
    static MGUndoManager &sharedInstance();

    MGUndoManager(const MGUndoManager &) = delete;
    MGUndoManager &operator=(const MGUndoManager &) = delete;

    void setDelegate(MGUndoDelegate *delegate);
    MGUndoDelegate *delegate() const;
    void setCapacity(quint32 capacity);
    // 0 turns undo off; otherwise only its being non-zero matters, entries hold a std::any.
    void setBufferSize(quint64 size);

    bool setUndoAction(quint32 action, quint32 descriptor, const std::any &context = {});
    void undo();
    void redo();
    bool isUndoAvailable() const;
    bool isRedoAvailable() const;
    void clearUndo();
    void killRedo();
    void popUndo();
    void suppressCoalescing();
    bool okToGroup() const;
    // title receives "Undo"/"Undo <name>" or "Redo"/"Redo <name>".
    bool validateState(bool undo, QString *title) const;
    void enumerate(bool all, const std::any &context);
    void updateCurrentAction(quint32 action);
    void updateCurrentDescriptor(quint32 descriptor);
    std::any *dataForCurrentUndoAction(quint32 *action, quint32 *descriptor);
    std::any *dataForPreviousUndoAction(quint32 *action, quint32 *descriptor);
    quint32 newUndoID();
    bool isUndoIDActive(quint32 id) const;
    bool setUndoID(quint32 id, quint32 action, quint32 descriptor, const std::any &context = {});
    bool setNewUndoAction(quint32 action, quint32 descriptor);
    qint64 currentEntry() const; // -1 when there is nothing to undo
    quint32 inUseCount() const;

    // The UI installs QApplication::beep and "a modal window is up"; tests install fakes.
    static void setBeepHandler(std::function<void()> beep);
    static void setModalCheck(std::function<bool()> modalWindowIsUp);
    void reset();

private:
    struct Entry
    {
        quint32 action = 0;
        quint32 descriptor = 0;
        std::any data;
    };

    MGUndoManager() = default;
    void freeEntry(Entry &entry, bool freeAll);
    bool advanceCurrentEntry();
    Entry *entryAt(quint32 index);
    const Entry *entryAt(quint32 index) const;

    MGUndoDelegate *m_delegate = nullptr;
    quint64 m_bufferSize = 0;
    // A deque keeps references to entries valid while the ring rotates or grows under a delegate call.
    std::deque<Entry> m_entries;
    quint32 m_capacity = 0;
    quint32 m_inUseCount = 0;
    quint32 m_currentEntry = 0xFFFFFFFFu;
    quint32 m_currentUndoID = 0xFFFFFFFEu;
    quint32 m_nextUndoID = 1;
    bool m_okToGroup = false;
    bool m_undoSet = false;
};
