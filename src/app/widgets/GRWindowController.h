#pragma once

#include "GRTypes.h"
#include "GRUndoView.h"
#include "MGToolbarSegmentsDelegate.h"

#include <QHash>
#include <QMainWindow>
#include <QVariantMap>

#include <memory>

namespace Ui {
class MainWindow;
}

class GRControlBar;
class GRGroceryDatabase;
class GRGroupsController;
class GRItemCommands;
class GRItemDialog;
class GRItemListView;
class GRKeyLegend;
class GRSegmentedControl;
class GRWindowMenus;
class MGToolbarSegments;
class QAction;
class QLineEdit;
class QScrollArea;
class QTableView;
class QTableWidget;
class QToolButton;

// The main window: the groups table (categories or stores), the key legend, the item list and
// the menus. It shows the database it is given and the list on show; every command asks the core
// for the change, records the undo step first and then brings the views up to date.
class GRWindowController : public QMainWindow, public GRUndoView, public MGToolbarSegmentsDelegate
{
    Q_OBJECT

public:
    GRWindowController(GRGroceryDatabase &database, QList<GRItemPtr> &displayItems,
                       QWidget *parent = nullptr);
    ~GRWindowController() override;

    QTableView *categoryList() const;
    GRItemListView *itemList() const;
    QScrollArea *itemScroll() const;
    GRSegmentedControl *listPicker() const;
    GRSegmentedControl *categoryControl() const;
    GRSegmentedControl *itemControl() const;
    GRKeyLegend *keyLegend() const;
    QTableWidget *keyList() const;
    QToolButton *keyDisclosureButton() const;
    QLineEdit *searchField() const { return m_searchField; }
    MGToolbarSegments *undoSegments() const { return m_undoSegments; }
    GRGroupsController *groups() const { return m_groups; }
    GRWindowMenus *menus() const { return m_menus; }
    GRItemCommands *itemCommands() const { return m_itemCommands; }
    // The menu action whose objectName is name ("saveDocument", "undoEdit", "resetChecks", ...).
    QAction *action(const QString &name) const;

    // Commands of the list on show and of the window; the groups' own are on groups(), the
    // selected item's on itemCommands().
    void addItem();
    // Opens the item sheet on item, or on a new item in the selected category or store.
    GRItemDialog *editItem(const GRItemPtr &item);
    void editKeys();
    void editStores();
    void showAll();
    void showNeedful();
    void resetChecks();
    void find(const QString &text);
    void paste();
    void printGroceries();
    void undoEdit();
    void redoEdit();
    // sender == this restores the saved state at once; otherwise follows the disclosure button.
    void toggleKeys(QObject *sender);

    void refreshLegend();

    // GRUndoView
    qint64 currentCategory() const override;
    void cancelOperation() override;
    void reloadCategoriesCore(qint64 row) override;
    void deselectAll() override;
    void updateEditedMark() override;

    bool validateMenuItem(QAction *action);
    // Recomputes every window command's enabled state and the undo/redo titles.
    void updateMenus();
    // updateMenus on the next turn of the event loop (after the undo manager settles).
    void scheduleMenuUpdate();

    bool windowShouldClose();
    void windowDidResize();
    void keepOneItemRow();

    // MGToolbarSegmentsDelegate (the undo/redo control)
    QList<QVariant> tabsForSegments(MGToolbarSegments *segments) override;
    void tabWasSelected(qint64 tab, MGToolbarSegments *segments) override;

signals:
    // The window's commands were validated; the application controller validates its own.
    void menusValidated();

protected:
    void closeEvent(QCloseEvent *event) override;
    void showEvent(QShowEvent *event) override;

private:
    void setUpWidgets();
    void setUpToolbar();
    void setUpTabOrder();
    void setUpMenus();
    void showItems(const QList<GRItemPtr> &items);

    GRGroceryDatabase &m_database;
    QList<GRItemPtr> &m_displayItems;
    std::unique_ptr<Ui::MainWindow> m_ui;
    GRGroupsController *m_groups = nullptr;
    GRItemCommands *m_itemCommands = nullptr;
    QLineEdit *m_searchField = nullptr;
    MGToolbarSegments *m_undoSegments = nullptr;
    GRWindowMenus *m_menus = nullptr;
    bool m_menuUpdatePending = false;
};
