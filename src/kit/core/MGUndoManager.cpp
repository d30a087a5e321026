#include "MGUndoManager.h"

#include "MGUndoDelegate.h"

#include <exception>
#include <utility>

namespace {

constexpr quint32 kNoEntry = 0xFFFFFFFFu;
constexpr quint32 kDefaultCapacity = 25;

std::function<void()> &beepHandler()
{
    static std::function<void()> handler;
    return handler;
}

std::function<bool()> &modalCheck()
{
    static std::function<bool()> check;
    return check;
}

void beep()
{
    if (beepHandler())
        beepHandler()();
}

} // namespace

MGUndoManager &MGUndoManager::sharedInstance()
{
    // Never destroyed: delegates may still talk to it while static objects are torn down.
    static MGUndoManager *instance = new MGUndoManager;
    return *instance;
}

void MGUndoManager::setDelegate(MGUndoDelegate *delegate)
{
    m_delegate = delegate;
}

MGUndoDelegate *MGUndoManager::delegate() const
{
    return m_delegate;
}

void MGUndoManager::setCapacity(quint32 capacity)
{
    m_capacity = capacity;
}

void MGUndoManager::setBufferSize(quint64 size)
{
    m_bufferSize = size;
}

MGUndoManager::Entry *MGUndoManager::entryAt(quint32 index)
{
    return index < m_entries.size() ? &m_entries[index] : nullptr;
}

const MGUndoManager::Entry *MGUndoManager::entryAt(quint32 index) const
{
    return index < m_entries.size() ? &m_entries[index] : nullptr;
}

void MGUndoManager::freeEntry(Entry &entry, bool freeAll)
{
    if (m_delegate)
        m_delegate->freeUndoAction(entry.action, entry.descriptor, entry.data, freeAll);
    entry.action = 0;
    entry.descriptor = 0;
    entry.data.reset();
}

// Moves currentEntry to the slot for a new action, making room when the ring is full.
bool MGUndoManager::advanceCurrentEntry()
{
    ++m_currentEntry;
    if (m_currentEntry < m_entries.size())
        return true;
    try {
        if (m_capacity != 0) {
            // The oldest action goes to the end to be reused: the ring keeps the latest ones.
            Entry oldest = std::move(m_entries.front());
            m_entries.pop_front();
            m_entries.push_back(std::move(oldest));
            m_currentEntry = quint32(m_entries.size() - 1);
        } else {
            m_entries.emplace_back();
        }
    } catch (const std::exception &) {
        if (m_capacity == 0)
            --m_currentEntry;
        clearUndo();
        return false;
    }
    return true;
}

bool MGUndoManager::setUndoAction(quint32 action, quint32 descriptor, const std::any &context)
{
    if (!m_delegate || m_bufferSize == 0)
        return false;
    if (m_entries.empty()) {
        try {
            m_entries.resize(m_capacity != 0 ? m_capacity : kDefaultCapacity);
        } catch (const std::exception &) {
            m_entries.clear();
            return false;
        }
    }

    bool merged = false;
    if (isUndoAvailable() && m_okToGroup) {
        Entry &current = m_entries[m_currentEntry];
        if (current.action == action && current.descriptor == descriptor)
            merged = m_delegate->coalesceUndoAction(action, descriptor, current.data, context);
    }
    killRedo();
    m_undoSet = false;

    if (!merged) {
        if (!advanceCurrentEntry())
            return false;
        Entry &entry = m_entries[m_currentEntry];
        freeEntry(entry, false);
        entry.action = action;
        entry.descriptor = descriptor;
        if (!m_delegate->setUndoAction(action, descriptor, entry.data, context)) {
            // Take back the half-made entry so that its data is released now, then drop all history.
            m_undoSet = true;
            popUndo();
            clearUndo();
            return false;
        }
    }
    m_undoSet = true;
    m_okToGroup = true;
    m_inUseCount = m_currentEntry + 1;
    return true;
}

void MGUndoManager::undo()
{
    if (!isUndoAvailable()) {
        beep();
        return;
    }
    m_okToGroup = false;
    m_undoSet = false;
    Entry &entry = m_entries[m_currentEntry];
    --m_currentEntry;
    if (!m_delegate || !m_delegate->undoOrRedo(entry.action, entry.descriptor, entry.data, false))
        clearUndo();
}

void MGUndoManager::redo()
{
    if (!isRedoAvailable()) {
        beep();
        return;
    }
    m_okToGroup = false;
    m_undoSet = false;
    ++m_currentEntry;
    Entry &entry = m_entries[m_currentEntry];
    if (!m_delegate || !m_delegate->undoOrRedo(entry.action, entry.descriptor, entry.data, true))
        clearUndo();
}

bool MGUndoManager::isUndoAvailable() const
{
    return m_currentEntry != kNoEntry;
}

bool MGUndoManager::isRedoAvailable() const
{
    // currentEntry wraps from "none" to 0 here.
    return m_currentEntry + 1 < m_inUseCount;
}

void MGUndoManager::clearUndo()
{
    for (quint32 i = 0; i < m_inUseCount; ++i) {
        if (Entry *entry = entryAt(i))
            freeEntry(*entry, false);
    }
    m_inUseCount = 0;
    m_currentEntry = kNoEntry;
    m_undoSet = false;
    m_okToGroup = false;
}

void MGUndoManager::killRedo()
{
    for (quint32 i = m_currentEntry + 1; i < m_inUseCount; ++i) {
        if (Entry *entry = entryAt(i))
            freeEntry(*entry, false);
    }
    if (m_inUseCount > m_currentEntry + 1)
        m_inUseCount = m_currentEntry + 1;
}

void MGUndoManager::popUndo()
{
    Entry *entry = m_undoSet && isUndoAvailable() ? entryAt(m_currentEntry) : nullptr;
    if (!entry)
        return;
    if (m_delegate)
        m_delegate->didPopUndoAction(entry->action, entry->descriptor, entry->data);
    freeEntry(*entry, false);
    m_inUseCount = m_currentEntry;
    --m_currentEntry;
    m_undoSet = false;
}

void MGUndoManager::suppressCoalescing()
{
    m_okToGroup = false;
}

bool MGUndoManager::okToGroup() const
{
    return m_okToGroup;
}

bool MGUndoManager::validateState(bool undo, QString *title) const
{
    const QString verb = undo ? QStringLiteral("Undo") : QStringLiteral("Redo");
    const bool available = undo ? isUndoAvailable() : isRedoAvailable();
    const Entry *entry = available ? entryAt(undo ? m_currentEntry : m_currentEntry + 1) : nullptr;
    if (title) {
        QString name;
        if (entry && m_delegate)
            name = m_delegate->undoActionName(entry->descriptor, entry->data);
        *title = name.isEmpty() ? verb : QStringLiteral("%1 %2").arg(verb, name);
    }
    if (!entry)
        return false;
    return !(modalCheck() && modalCheck()());
}

void MGUndoManager::enumerate(bool all, const std::any &context)
{
    if (!m_delegate)
        return;
    const size_t count = all ? m_entries.size() : m_inUseCount;
    for (size_t i = 0; i < count && i < m_entries.size(); ++i) {
        Entry &entry = m_entries[i];
        m_delegate->enumeratedUndoAction(entry.action, entry.descriptor, entry.data, context);
    }
}

void MGUndoManager::updateCurrentAction(quint32 action)
{
    if (Entry *entry = m_undoSet ? entryAt(m_currentEntry) : nullptr)
        entry->action = action;
}

void MGUndoManager::updateCurrentDescriptor(quint32 descriptor)
{
    if (Entry *entry = m_undoSet ? entryAt(m_currentEntry) : nullptr)
        entry->descriptor = descriptor;
}

std::any *MGUndoManager::dataForCurrentUndoAction(quint32 *action, quint32 *descriptor)
{
    Entry *entry = m_undoSet ? entryAt(m_currentEntry) : nullptr;
    if (!entry)
        return nullptr;
    if (action)
        *action = entry->action;
    if (descriptor)
        *descriptor = entry->descriptor;
    return &entry->data;
}

std::any *MGUndoManager::dataForPreviousUndoAction(quint32 *action, quint32 *descriptor)
{
    Entry *entry =
        m_undoSet && isUndoAvailable() && m_currentEntry > 0 ? entryAt(m_currentEntry - 1) : nullptr;
    if (!entry)
        return nullptr;
    if (action)
        *action = entry->action;
    if (descriptor)
        *descriptor = entry->descriptor;
    return &entry->data;
}

quint32 MGUndoManager::newUndoID()
{
    return m_nextUndoID++;
}

bool MGUndoManager::isUndoIDActive(quint32 id) const
{
    return id == m_currentUndoID;
}

bool MGUndoManager::setUndoID(quint32 id, quint32 action, quint32 descriptor, const std::any &context)
{
    if (id == m_currentUndoID)
        return true;
    if (id == kNoEntry)
        id = newUndoID();
    m_currentUndoID = id;
    return setUndoAction(action, descriptor, context);
}

bool MGUndoManager::setNewUndoAction(quint32 action, quint32 descriptor)
{
    m_currentUndoID = newUndoID();
    return setUndoAction(action, descriptor);
}

qint64 MGUndoManager::currentEntry() const
{
    return isUndoAvailable() ? qint64(m_currentEntry) : -1;
}

quint32 MGUndoManager::inUseCount() const
{
    return m_inUseCount;
}

void MGUndoManager::setBeepHandler(std::function<void()> beep)
{
    beepHandler() = std::move(beep);
}

void MGUndoManager::setModalCheck(std::function<bool()> modalWindowIsUp)
{
    modalCheck() = std::move(modalWindowIsUp);
}

// Drops every entry without calling the delegate, which a test may already have destroyed.
void MGUndoManager::reset()
{
    m_delegate = nullptr;
    m_bufferSize = 0;
    m_entries.clear();
    m_capacity = 0;
    m_inUseCount = 0;
    m_currentEntry = kNoEntry;
    m_currentUndoID = 0xFFFFFFFEu;
    m_nextUndoID = 1;
    m_okToGroup = false;
    m_undoSet = false;
}
