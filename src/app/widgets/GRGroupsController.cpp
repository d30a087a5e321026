#include "GRGroupsController.h"

#include "GRCategory.h"
#include "GRGroceryDatabase.h"
#include "GRGroceryEdits.h"
#include "GRGroceryQueries.h"
#include "GRGroupsTableModel.h"
#include "GRItem.h"
#include "GRNames.h"
#include "GRPrefController.h"
#include "GRRedoItems.h"
#include "GRSegmentedControl.h"
#include "GRStore.h"
#include "GRUndoKinds.h"
#include "MGAlert.h"
#include "MGNotificationCenter.h"

#include <QAbstractItemDelegate>
#include <QHeaderView>
#include <QKeySequence>
#include <QShortcut>
#include <QTableView>
#include <QTimer>

#include <utility>

GRGroupsController::GRGroupsController(GRGroceryDatabase &database, QList<GRItemPtr> &displayItems,
                                       QTableView *table, GRSegmentedControl *listPicker, QObject *parent)
    : QObject(parent), m_database(database), m_displayItems(displayItems), m_table(table),
      m_listPicker(listPicker), m_model(new GRGroupsTableModel(database, this))
{
    m_listPicker->setSegments({tr("Categories"), tr("Stores")}, true);
    m_listPicker->setSelectedSegment(0);
    connect(m_listPicker, &GRSegmentedControl::segmentClicked, this, [this] { changeListDisplay(); });

    m_table->setModel(m_model);
    m_table->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    m_table->verticalHeader()->setDefaultSectionSize(m_table->fontMetrics().height() + 8);
    m_table->horizontalHeader()->setSectionResizeMode(0, QHeaderView::Stretch);
    m_table->horizontalHeader()->setSectionResizeMode(1, QHeaderView::Fixed);
    m_table->horizontalHeader()->resizeSection(
        1, m_table->fontMetrics().horizontalAdvance(QStringLiteral("F16")) + 16);
    // Drops go right on a row: the view tells "above" and "below" apart only out of overwrite mode.
    m_table->setDragDropOverwriteMode(false);
    m_table->setDropIndicatorShown(true);
    // Tab leaves the table for the next view instead of walking its cells.
    m_table->setTabKeyNavigation(false);
    connect(m_table->selectionModel(), &QItemSelectionModel::selectionChanged, this, [this] {
        if (!m_reloading)
            tableViewSelectionDidChange();
        emit groupsChanged();
    });
    connect(m_model, &GRGroupsTableModel::renameRequested, this,
            [this](int row, const QString &name) { setObjectValue(name, row); });
    connect(m_model, &GRGroupsTableModel::itemDropped, this, &GRGroupsController::acceptDrop);
    // Delete and Backspace delete a group only from the table; the item list has keys of its own.
    for (const QKeySequence &key : {QKeySequence(QKeySequence::Delete), QKeySequence(Qt::Key_Backspace)}) {
        auto *shortcut = new QShortcut(key, m_table, nullptr, nullptr, Qt::WidgetShortcut);
        connect(shortcut, &QShortcut::activated, this, &GRGroupsController::deleteGroup);
    }

    MGNotificationCenter &center = MGNotificationCenter::defaultCenter();
    center.addObserver(GRReloadCatsNotification, this,
                       [this](const QVariantMap &userInfo) { reloadCategories(userInfo); });
    center.addObserver(GRUpdateStoresNotification, this, [this](const QVariantMap &) { reloadStores(); });
    center.addObserver(GRGroupNotification, this,
                       [this](const QVariantMap &userInfo) { selectGroup(userInfo); });
}

GRGroupsController::~GRGroupsController()
{
    MGNotificationCenter::defaultCenter().removeObserver(this);
}

bool GRGroupsController::canDeleteSelection() const
{
    const qint64 row = selectedRow();
    return isStoreMode() ? row > 0 : row >= 0 && m_database.categories().size() >= 2;
}

bool GRGroupsController::isStoreMode() const
{
    return m_listPicker->selectedSegment() == 1;
}

qint64 GRGroupsController::selectedRow() const
{
    const QModelIndexList rows = m_table->selectionModel()->selectedRows();
    return rows.isEmpty() ? -1 : rows.first().row();
}

void GRGroupsController::selectRow(qint64 row)
{
    const bool reloading = std::exchange(m_reloading, true);
    if (row >= 0 && row < m_model->rowCount()) {
        const QModelIndex index = m_model->index(int(row), 0);
        m_table->selectionModel()->setCurrentIndex(index, QItemSelectionModel::ClearAndSelect |
                                                              QItemSelectionModel::Rows);
        m_table->scrollTo(index);
    } else {
        m_table->clearSelection();
    }
    m_reloading = reloading;
}

void GRGroupsController::deselectAll()
{
    const bool reloading = std::exchange(m_reloading, true);
    m_table->clearSelection();
    m_reloading = reloading;
}

void GRGroupsController::setListPickerSegment(int segment)
{
    if (m_listPicker->selectedSegment() == segment)
        return;
    m_listPicker->setSelectedSegment(segment);
    changeListDisplay();
}

qint64 GRGroupsController::currentCategory() const
{
    return isStoreMode() ? -1 : selectedRow();
}

qint64 GRGroupsController::currentStore() const
{
    return isStoreMode() ? selectedRow() : -1;
}

void GRGroupsController::changeListDisplay()
{
    const bool storeMode = isStoreMode();
    m_model->setStoreMode(storeMode);
    m_table->setColumnHidden(1, !storeMode);
    m_model->reload();
    emit storeModeChanged(storeMode);
    selectRow(0);
    tableViewSelectionDidChange();
    emit groupsChanged();
}

void GRGroupsController::tableViewSelectionDidChange()
{
    const qint64 row = selectedRow();
    if (row < 0)
        return;
    m_displayItems = GRGroceryQueries::itemsOfGroup(m_database, isStoreMode(), row);
    PostRedoItems();
}

void GRGroupsController::reloadCategories(const QVariantMap &userInfo)
{
    reloadCategoriesCore(userInfo.value(GRSelectionKey).toLongLong());
}

void GRGroupsController::reloadCategoriesCore(qint64 row)
{
    m_model->reload();
    if (openEditor()) {
        // Called from the name editor's commit: moving the selection now would close the editor
        // from inside its own commit.
        QTimer::singleShot(0, this, [this, row] { reloadCategoriesNow(row); });
        return;
    }
    reloadCategoriesNow(row);
}

void GRGroupsController::reloadCategoriesNow(qint64 row)
{
    m_model->reload();
    selectRow(isStoreMode() ? 0 : row);
    tableViewSelectionDidChange();
    emit groupsChanged();
}

void GRGroupsController::reloadStores()
{
    if (isStoreMode())
        reloadCategoriesCore(0);
    else
        m_model->reload();
}

void GRGroupsController::selectGroup(const QVariantMap &userInfo)
{
    const qint64 row = selectedRow();
    const qint64 index = GRGroceryQueries::groupRowOfItem(m_database, isStoreMode(),
                                                          userInfo.value(GRItemKey).value<GRItemPtr>());
    if (row >= 0 && index >= 0 && index != row) {
        selectRow(index);
        tableViewSelectionDidChange();
    }
}

void GRGroupsController::setObjectValue(const QString &name, qint64 row)
{
    if (name.isEmpty())
        return;
    if (isStoreMode()) {
        if (row >= 1 && row < m_database.stores().size())
            installStores(GRGroceryEdits::storesRenaming(m_database, row, name),
                          GRUndoDescriptor::RenameStore);
        return;
    }
    if (row < 0 || row >= m_database.categories().size())
        return;
    const GRCategoryPtr category = m_database.categories().at(row);
    if (!RecordUndo(GRUndoAction::Category, GRUndoDescriptor::RenameCategory, category))
        return;
    reloadCategoriesCore(GRGroceryEdits::renameCategory(m_database, category, name));
    MGNotificationCenter::defaultCenter().post(GRUpdateCatsNotification);
}

bool GRGroupsController::installStores(const QList<GRStorePtr> &stores, GRUndoDescriptor descriptor)
{
    if (stores.isEmpty() || !stores.first() || !RecordUndo(GRUndoAction::CategoriesAndStores, descriptor))
        return false;
    GRGroceryEdits::installNewStores(m_database, stores);
    PostRedoItems();
    MGNotificationCenter::defaultCenter().post(GRUpdateStoresNotification);
    return true;
}

bool GRGroupsController::acceptDrop(qint64 itemIndex, qint64 row)
{
    if (itemIndex < 0 || itemIndex >= m_displayItems.size() || row < 0)
        return false;
    const GRItemPtr item = m_displayItems.at(itemIndex);
    if (isStoreMode()) {
        const GRStorePtr target = m_database.stores().value(row);
        if (!target || item->store() == target ||
            !RecordUndo(GRUndoAction::Category, GRUndoDescriptor::ChangeItem, item->category()))
            return false;
        GRGroceryEdits::reassignStore(item, target);
    } else {
        const GRCategoryPtr target = m_database.categories().value(row);
        if (!target || item->category() == target ||
            !RecordUndo(GRUndoAction::Categories, GRUndoDescriptor::MoveItem))
            return false;
        GRGroceryEdits::moveItem(item, target);
    }
    m_displayItems.removeAll(item);
    PostRedoItems();
    emit groupsChanged();
    return true;
}

void GRGroupsController::clickListControl(int segment)
{
    if (segment == 1)
        deleteGroup();
    else if (isStoreMode())
        addStore();
    else
        addCategory();
}

void GRGroupsController::beginEditingRow(qint64 row)
{
    const QModelIndex index = m_model->index(int(row), 0);
    if (!index.isValid())
        return;
    m_table->scrollTo(index);
    m_table->setFocus(Qt::OtherFocusReason);
    m_table->edit(index);
}

void GRGroupsController::addCategory()
{
    setListPickerSegment(0);
    if (!RecordUndo(GRUndoAction::Categories, GRUndoDescriptor::AddCategory))
        return;
    GRGroceryEdits::addCategory(m_database);
    const qint64 row = m_database.categories().size() - 1;
    reloadCategoriesCore(row);
    beginEditingRow(row);
    MGNotificationCenter::defaultCenter().post(GRUpdateCatsNotification);
}

void GRGroupsController::addStore()
{
    setListPickerSegment(1);
    if (!RecordUndo(GRUndoAction::CategoriesAndStores, GRUndoDescriptor::AddStore))
        return;
    GRGroceryEdits::addStore(m_database);
    const qint64 row = m_database.stores().size() - 1;
    reloadCategoriesCore(row);
    beginEditingRow(row);
}

void GRGroupsController::deleteGroup()
{
    if (isStoreMode())
        deleteStore(selectedRow());
    else
        deleteCategory(selectedRow());
}

void GRGroupsController::deleteCategory(qint64 row)
{
    const GRCategoryPtr heir = GRGroceryEdits::categoryHeir(m_database, row);
    if (!heir)
        return;
    const GRCategoryPtr victim = m_database.categories().at(row);
    if (GRPrefController::sharedInstance().confirmDelete() &&
        !OkToProceed(
            QStringLiteral("Delete category?"),
            QStringLiteral("Are you sure you want to delete the category \"%1\"?\n\nIts items will be "
                           "reassigned to \"%2\".")
                .arg(victim->name(), heir->name())))
        return;
    if (!RecordUndo(GRUndoAction::Categories, GRUndoDescriptor::DeleteCategory))
        return;
    GRGroceryEdits::mergeCategory(m_database, victim, heir);
    reloadCategoriesCore(0);
    MGNotificationCenter::defaultCenter().post(GRUpdateCatsNotification);
}

void GRGroupsController::deleteStore(qint64 row)
{
    const QList<GRStorePtr> &stores = m_database.stores();
    if (row < 1 || row >= stores.size())
        return;
    if (GRPrefController::sharedInstance().confirmDelete() &&
        !OkToProceed(QStringLiteral("Delete store?"),
                     QStringLiteral("Are you sure you want to delete the store \"%1\"?\n\nIts items will be "
                                    "reassigned to \"%2\".")
                         .arg(stores.at(row)->name(), stores.at(0)->name())))
        return;
    installStores(GRGroceryEdits::storesWithout(m_database, row), GRUndoDescriptor::DeleteStore);
}

void GRGroupsController::renameCategory()
{
    const qint64 row = selectedRow();
    if (row >= 0 && (m_model->flags(m_model->index(int(row), 0)) & Qt::ItemIsEditable))
        beginEditingRow(row);
}

QWidget *GRGroupsController::openEditor() const
{
    for (int row = 0; row < m_model->rowCount(); ++row) {
        if (QWidget *editor = m_table->indexWidget(m_model->index(row, 0)))
            return editor;
    }
    return nullptr;
}

void GRGroupsController::cancelOperation()
{
    // closeEditor is protected on the view; the delegate's signal reaches it.
    if (QWidget *editor = openEditor())
        emit m_table->itemDelegate()->closeEditor(editor, QAbstractItemDelegate::RevertModelCache);
}
