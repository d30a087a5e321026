#include "GRSnapshotUndo.h"
#include "GRRedoItems.h"

#include "GRCategory.h"
#include "GRDatabaseFile.h"
#include "GRGroceryDatabase.h"
#include "GRGroceryEdits.h"
#include "GRItem.h"
#include "GRNameSorter.h"
#include "GRNames.h"
#include "GRSnapshots.h"
#include "GRStore.h"
#include "GRUndoKinds.h"
#include "GRUndoRecord.h"
#include "GRUndoView.h"
#include "MGNotificationCenter.h"
#include "MGUndoManager.h"

namespace {

GRCategoryPtr contextCategory(const std::any &context)
{
    const GRCategoryPtr *category = std::any_cast<GRCategoryPtr>(&context);
    return category ? *category : nullptr;
}

// Drops the items whose category is no longer in the database.
void dropItemsOfGoneCategories(QList<GRItemPtr> &items, const GRGroceryDatabase &database)
{
    items.removeIf([&database](const GRItemPtr &item) {
        const GRCategoryPtr category = item ? item->category() : nullptr;
        return !category || database.indexOfCategory(category.get()) < 0;
    });
}

} // namespace

GRSnapshotUndo::GRSnapshotUndo(GRGroceryDatabase &database, QList<GRItemPtr> &displayItems)
    : m_database(database), m_displayItems(displayItems)
{
}

GRSnapshotUndo::~GRSnapshotUndo()
{
    MGUndoManager &undo = MGUndoManager::sharedInstance();
    if (undo.delegate() == this) {
        undo.clearUndo();
        undo.setDelegate(nullptr);
    }
}

void GRSnapshotUndo::install()
{
    MGUndoManager &undo = MGUndoManager::sharedInstance();
    undo.clearUndo();
    undo.setDelegate(this);
    undo.setCapacity(Capacity);
    undo.setBufferSize(sizeof(GRUndoRecord));
}

qint64 GRSnapshotUndo::currentCategory() const
{
    return m_view ? m_view->currentCategory() : -1;
}

void GRSnapshotUndo::updateEditedMark()
{
    if (m_view)
        m_view->updateEditedMark();
}

bool GRSnapshotUndo::setUndoAction(quint32 action, quint32 descriptor, std::any &data,
                                   const std::any &context)
{
    Q_UNUSED(descriptor)
    GRUndoRecord record;
    record.displayed = m_displayItems;
    record.selection = currentCategory();
    switch (GRUndoAction(action)) {
    case GRUndoAction::Categories:
        record.categories = CopyCategories(m_database.categories(), record.displayed);
        break;
    case GRUndoAction::Category:
        record.category = CopyCategory(contextCategory(context), record.displayed);
        if (!record.category)
            return false;
        break;
    case GRUndoAction::CategoriesAndStores: {
        record.categories = CopyCategories(m_database.categories(), record.displayed);
        QHash<QString, GRStorePtr> byGuid;
        record.stores = CopyStores(m_database.stores(), byGuid);
        for (const GRCategoryPtr &category : std::as_const(record.categories)) {
            for (const GRItemPtr &item : std::as_const(category->items())) {
                if (item->store())
                    item->setStore(byGuid.value(item->store()->guid(), item->store()));
            }
        }
        break;
    }
    default:
        return false;
    }
    record.wasChanged = DatabaseChanged();
    data = std::move(record);
    g_dirty = true;
    updateEditedMark();
    return true;
}

bool GRSnapshotUndo::undoOrRedo(quint32 &action, quint32 descriptor, std::any &data, bool isRedo)
{
    Q_UNUSED(descriptor)
    Q_UNUSED(isRedo)
    GRUndoRecord *record = std::any_cast<GRUndoRecord>(&data);
    if (!record)
        return false;
    const qint64 remembered = currentCategory();
    if (m_view)
        m_view->cancelOperation();
    QList<GRCategoryPtr> &categories = m_database.categories();
    switch (GRUndoAction(action)) {
    case GRUndoAction::CategoriesAndStores:
        categories.swap(record->categories);
        m_database.stores().swap(record->stores);
        break;
    case GRUndoAction::Category: {
        const GRCategoryPtr live =
            record->category ? m_database.categoryForGuid(record->category->guid()) : nullptr;
        if (!live)
            return false;
        categories[m_database.indexOfCategory(live.get())] = record->category;
        // Only a renamed category changes place: sorting after any other step would reorder a list
        // that is not in name order, such as one with a new category still at its end.
        if (live->name() != record->category->name())
            SortByName(categories);
        record->selection = m_database.indexOfCategory(record->category.get());
        record->category = live;
        break;
    }
    case GRUndoAction::Categories:
        categories.swap(record->categories);
        break;
    default:
        return false;
    }
    GRGroceryEdits::repointItemStores(m_database);

    QList<GRItemPtr> shown = m_displayItems;
    if (m_view) {
        m_view->reloadCategoriesCore(record->selection < 0 ? 0 : record->selection);
        if (record->selection < 0)
            m_view->deselectAll();
    }
    record->selection = remembered;
    m_displayItems = record->displayed;
    record->displayed = shown;
    // A list on show that spans categories (a store, every item, a search) also holds items of
    // categories that later steps have since exchanged for copies; a change to one of those
    // would reach nothing that is saved.
    dropItemsOfGoneCategories(m_displayItems, m_database);
    PostRedoItems();
    MGNotificationCenter &center = MGNotificationCenter::defaultCenter();
    center.post(GRUpdateCatsNotification);
    center.post(GRUpdateStoresNotification);

    std::swap(g_dirty, record->wasChanged);
    g_dirty = DatabaseChanged();
    updateEditedMark();
    return true;
}

QString GRSnapshotUndo::undoActionName(quint32 descriptor, const std::any &data)
{
    Q_UNUSED(data)
    return UndoDescriptorName(descriptor);
}

void GRSnapshotUndo::freeUndoAction(quint32 action, quint32 descriptor, std::any &data, bool freeAll)
{
    Q_UNUSED(action)
    Q_UNUSED(descriptor)
    Q_UNUSED(freeAll)
    data.reset();
}
