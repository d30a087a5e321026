#pragma once

#include "GRTypes.h"
#include "MGToolbarSegmentsDelegate.h"
#include "MGUndoDelegate.h"

#include <QHash>
#include <QMainWindow>
#include <QPointer>
#include <QVariantMap>

class GRGroupsTableModel;
class GRItemListView;
class GRSegmentedControl;
class MGToolbarSegments;
class QAction;
class QLineEdit;
class QMenu;
class QMimeData;
class QScrollArea;
class QTableView;
class QTableWidget;
class QToolButton;
class QVariantAnimation;

// The x of a control centred under a view that starts at viewX and is viewWidth wide.
int CenteredControlX(int viewX, int viewWidth, int controlWidth);

// The main window: the groups table (categories or stores), the legend of the keys, the item list,
// the menus and toolbar, and the delegate of the shared undo manager.
class GRWindowController : public QMainWindow, public MGUndoDelegate, public MGToolbarSegmentsDelegate
{
    Q_OBJECT

public:
    explicit GRWindowController(QWidget *parent = nullptr);
    ~GRWindowController() override;

    QTableView *categoryList() const { return m_categoryList; }
    GRItemListView *itemList() const { return m_itemList; }
    GRSegmentedControl *listPicker() const { return m_listPicker; }
    GRSegmentedControl *categoryControl() const { return m_categoryControl; }
    GRSegmentedControl *itemControl() const { return m_itemControl; }
    QTableWidget *keyList() const { return m_keyList; }
    QToolButton *keyDisclosureButton() const { return m_keyDisclosureButton; }
    QLineEdit *searchField() const { return m_searchField; }
    MGToolbarSegments *undoSegments() const { return m_undoSegments; }
    GRGroupsTableModel *groupsModel() const { return m_groupsModel; }
    // The menu action whose objectName is name ("saveDocument", "undoEdit", "resetChecks", ...).
    QAction *action(const QString &name) const { return m_actions.value(name); }

    bool isStoreMode() const;
    qint64 selectedRow() const;
    void selectRow(qint64 row);
    void deselectAll();

    // Commands.
    void changeListDisplay();
    void clickListControl(int segment);
    void addCategory();
    void addStore();
    void addItem();
    // The selected group: a store in store mode, a category otherwise.
    void deleteGroup();
    void deleteCategory(qint64 row);
    void deleteStore(qint64 row);
    void renameCategory();
    void cancelOperation();
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

    // Groups table callbacks (through GRGroupsTableModel).
    void setObjectValue(const QString &name, qint64 row);
    bool validateDrop(const QMimeData *data, qint64 row, bool onRow) const;
    bool acceptDrop(const QMimeData *data, qint64 row);
    void tableViewSelectionDidChange();

    qint64 currentCategory() const;
    qint64 currentStore() const;
    void refreshLegend();
    void reloadCategories(const QVariantMap &userInfo);
    void reloadCategoriesCore(qint64 row);
    void reloadStores();
    void selectGroup(const QVariantMap &userInfo);

    // The edited mark follows g_dirty and the preferences' dirty flag.
    void updateEditedMark();
    bool validateMenuItem(QAction *action);
    // Recomputes every action's enabled state and the undo/redo titles.
    void updateMenus();
    // updateMenus on the next turn of the event loop (after the undo manager settles).
    void scheduleMenuUpdate();

    bool windowShouldClose();
    void windowDidResize();
    void keepOneItemRow();
    GRSegmentedControl *makeAddRemoveControl(QWidget *bar, const QString &name, const QString &addTip,
                                             const QString &removeTip);

    // MGUndoDelegate
    bool setUndoAction(quint32 action, quint32 descriptor, std::any &data, const std::any &context) override;
    bool undoOrRedo(quint32 &action, quint32 descriptor, std::any &data, bool isRedo) override;
    QString undoActionName(quint32 descriptor, const std::any &data) override;
    void freeUndoAction(quint32 action, quint32 descriptor, std::any &data, bool freeAll) override;

    // MGToolbarSegmentsDelegate (the undo/redo control)
    QList<QVariant> tabsForSegments(MGToolbarSegments *segments) override;
    void tabWasSelected(qint64 tab, MGToolbarSegments *segments) override;

    static QString descriptorName(quint32 descriptor);

protected:
    void closeEvent(QCloseEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void showEvent(QShowEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void buildWindow();
    void buildMenus();
    void buildToolbar();
    QAction *addAction(QMenu *menu, const QString &name, const QString &text,
                       void (GRWindowController::*slot)());
    void forwardToFocus(const char *method);
    void postRedoItems(const GRItemPtr &item = nullptr);
    void beginEditingRow(qint64 row);
    void setListPickerSegment(int segment);
    void setLegendShown(bool shown, bool animate);
    void reloadCategoriesNow(qint64 row);
    // The name editor open in the groups table, if any.
    QWidget *openEditor() const;

    QTableView *m_categoryList = nullptr;
    GRItemListView *m_itemList = nullptr;
    GRSegmentedControl *m_listPicker = nullptr;
    GRSegmentedControl *m_categoryControl = nullptr;
    GRSegmentedControl *m_itemControl = nullptr;
    QTableWidget *m_keyList = nullptr;
    QToolButton *m_keyDisclosureButton = nullptr;
    QLineEdit *m_searchField = nullptr;
    MGToolbarSegments *m_undoSegments = nullptr;
    GRGroupsTableModel *m_groupsModel = nullptr;
    QScrollArea *m_itemScroll = nullptr;
    QWidget *m_legendPane = nullptr;
    QWidget *m_categoryControlBar = nullptr;
    QWidget *m_itemControlBar = nullptr;
    QMenu *m_itemMenu = nullptr;
    QPointer<QVariantAnimation> m_legendAnimation;
    QHash<QString, QAction *> m_actions;
    bool m_legendShown = true;
    bool m_reloading = false;
    bool m_menuUpdatePending = false;
};
