#pragma once

#include "GRTypes.h"
#include "GRUndoKinds.h"

#include <QObject>
#include <QVariantMap>

class GRGroceryDatabase;
class GRGroupsTableModel;
class GRSegmentedControl;
class QTableView;

// The groups table of the main window and what is done to it: the mode (categories or stores),
// the selection that fills the list on show, renames, drops of items, and adding and deleting
// groups. Each edit asks the core for the change after recording its undo step.
class GRGroupsController : public QObject
{
    Q_OBJECT

public:
    GRGroupsController(GRGroceryDatabase &database, QList<GRItemPtr> &displayItems, QTableView *table,
                       GRSegmentedControl *listPicker, QObject *parent = nullptr);
    ~GRGroupsController() override;

    GRGroupsTableModel *model() const { return m_model; }
    bool isStoreMode() const;
    qint64 selectedRow() const;
    // Selects without rebuilding the list on show; a row outside the table selects nothing.
    void selectRow(qint64 row);
    void deselectAll();
    // The selected row in category / store mode, otherwise -1.
    qint64 currentCategory() const;
    qint64 currentStore() const;
    // Whether the selected group may be deleted: never store 0 nor the last category.
    bool canDeleteSelection() const;

    void setListPickerSegment(int segment);
    void changeListDisplay();
    void tableViewSelectionDidChange();
    void reloadCategories(const QVariantMap &userInfo);
    void reloadCategoriesCore(qint64 row);
    void reloadStores();
    void selectGroup(const QVariantMap &userInfo);

    void setObjectValue(const QString &name, qint64 row);
    bool acceptDrop(qint64 itemIndex, qint64 row);
    void clickListControl(int segment);
    void addCategory();
    void addStore();
    void deleteGroup();
    void deleteCategory(qint64 row);
    void deleteStore(qint64 row);
    void renameCategory();
    // Closes an open name editor without committing it.
    void cancelOperation();

    // Replaces the store list after recording the step: the first store stays first, the others
    // sort by name, and the items of a store that is gone go to the first store.
    bool installStores(const QList<GRStorePtr> &stores, GRUndoDescriptor descriptor);

    // "mwgroceries.redoItems", with the item to select when there is one.

signals:
    void storeModeChanged(bool storeMode);
    // The rows or the selection changed: menus and the controls under the table follow.
    void groupsChanged();

private:
    void beginEditingRow(qint64 row);
    void reloadCategoriesNow(qint64 row);
    QWidget *openEditor() const;

    GRGroceryDatabase &m_database;
    QList<GRItemPtr> &m_displayItems;
    QTableView *m_table;
    GRSegmentedControl *m_listPicker;
    GRGroupsTableModel *m_model;
    bool m_reloading = false;
};
