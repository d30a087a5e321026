#include "GRWindowController.h"
#include "GRRedoItems.h"

#include "GRCategory.h"
#include "GRControlBar.h"
#include "GRDatabaseFile.h"
#include "GRGroceryDatabase.h"
#include "GRGroceryEdits.h"
#include "GRGroceryQueries.h"
#include "GRGroupsController.h"
#include "GRGroupsTableModel.h"
#include "GRItem.h"
#include "GRItemCommands.h"
#include "GRItemDialog.h"
#include "GRItemListView.h"
#include "GRKeyLegend.h"
#include "GRKeyNames.h"
#include "GRKeysDialog.h"
#include "GRNames.h"
#include "GRPrefController.h"
#include "GRPrintPreviewWindow.h"
#include "GRSegmentedControl.h"
#include "GRStore.h"
#include "GRStoresDialog.h"
#include "GRUndoKinds.h"
#include "GRWindowMenus.h"
#include "MGAlert.h"
#include "MGNotificationCenter.h"
#include "MGToolbarSegments.h"
#include "MGUndoManager.h"
#include "ui_MainWindow.h"

#include <QAbstractItemDelegate>
#include <QAction>
#include <QActionGroup>
#include <QApplication>
#include <QClipboard>
#include <QCloseEvent>
#include <QHeaderView>
#include <QLineEdit>
#include <QMessageBox>
#include <QMimeData>
#include <QScrollBar>
#include <QShortcut>
#include <QTableView>
#include <QTimer>
#include <QToolBar>
#include <QToolButton>

#include <cmath>
#include <utility>

GRWindowController::GRWindowController(GRGroceryDatabase &database, QList<GRItemPtr> &displayItems,
                                       QWidget *parent)
    : QMainWindow(parent), m_database(database), m_displayItems(displayItems),
      m_ui(std::make_unique<Ui::MainWindow>())
{
    m_ui->setupUi(this);
    // The platform appends " — Groceries" to the title, so the mark sits on the document part.
    setUnifiedTitleAndToolBarOnMac(true);
    setUpWidgets();
    setUpToolbar();
    setUpTabOrder();
    setUpMenus();

    toggleKeys(this);
    refreshLegend();
    MGNotificationCenter &center = MGNotificationCenter::defaultCenter();
    center.addObserver(GRRedoItemsNotification, this, [this](const QVariantMap &) { scheduleMenuUpdate(); });
    center.addObserver(GRFontNotification, this, [this](const QVariantMap &) { keepOneItemRow(); });
    connect(QGuiApplication::clipboard(), &QClipboard::dataChanged, this, &GRWindowController::updateMenus);
    connect(qApp, &QApplication::focusChanged, this, &GRWindowController::scheduleMenuUpdate);
    // A preference change shows the mark even when it alone brings no save question (columns).
    connect(&GRPrefController::sharedInstance(), &GRPrefController::markWindowEdited, this, [this] {
        setWindowModified(true);
        scheduleMenuUpdate();
    });

    m_groups->model()->reload();
    m_groups->changeListDisplay();
    updateEditedMark();
}

GRWindowController::~GRWindowController()
{
    // Children die after this body; their focus and clipboard signals must not reach a half-gone window,
    // and an open name editor must not commit into it as the window goes.
    m_groups->cancelOperation();
    disconnect(qApp, nullptr, this, nullptr);
    disconnect(QGuiApplication::clipboard(), nullptr, this, nullptr);
    MGNotificationCenter::defaultCenter().removeObserver(this);
}

QTableView *GRWindowController::categoryList() const
{
    return m_ui->categoryList;
}

GRItemListView *GRWindowController::itemList() const
{
    return m_ui->itemList;
}

QScrollArea *GRWindowController::itemScroll() const
{
    return m_ui->itemScroll;
}

GRSegmentedControl *GRWindowController::listPicker() const
{
    return m_ui->listPicker;
}

GRSegmentedControl *GRWindowController::categoryControl() const
{
    return m_ui->categoryControl;
}

GRSegmentedControl *GRWindowController::itemControl() const
{
    return m_ui->itemControl;
}

GRKeyLegend *GRWindowController::keyLegend() const
{
    return m_ui->keyLegend;
}

QTableWidget *GRWindowController::keyList() const
{
    return m_ui->keyLegend->keyList();
}

QToolButton *GRWindowController::keyDisclosureButton() const
{
    return m_ui->keyLegend->keyDisclosureButton();
}

// ---- What undo asks of the window

qint64 GRWindowController::currentCategory() const
{
    return m_groups->currentCategory();
}

void GRWindowController::cancelOperation()
{
    m_groups->cancelOperation();
}

void GRWindowController::reloadCategoriesCore(qint64 row)
{
    m_groups->reloadCategoriesCore(row);
}

void GRWindowController::deselectAll()
{
    m_groups->deselectAll();
}

// ---- Setting up what the form can't say

void GRWindowController::setUpWidgets()
{
    m_groups = new GRGroupsController(m_database, m_displayItems, m_ui->categoryList, m_ui->listPicker, this);
    connect(m_groups, &GRGroupsController::storeModeChanged, this, [this](bool storeMode) {
        action(storeMode ? QStringLiteral("showStores") : QStringLiteral("showCategories"))->setChecked(true);
    });
    connect(m_groups, &GRGroupsController::groupsChanged, this, [this] {
        windowDidResize();
        updateMenus();
    });

    m_ui->categoryControl->setSegments({QStringLiteral("+"), QStringLiteral("\u2212")}, false);
    m_ui->categoryControl->setSegmentToolTip(0, tr("Add a category or store"));
    m_ui->categoryControl->setSegmentToolTip(1, tr("Delete the selected category or store"));
    connect(m_ui->categoryControl, &GRSegmentedControl::segmentClicked, m_groups,
            &GRGroupsController::clickListControl);
    m_ui->categoryControlBar->setAnchor(m_ui->categoryList);

    m_ui->itemList->setItems(&m_displayItems);
    // The grid takes the focus itself; its scroll area is no stop on the way.
    m_ui->itemScroll->setFocusPolicy(Qt::NoFocus);
    keepOneItemRow();
    m_ui->itemControl->setSegments({QStringLiteral("+"), QStringLiteral("\u2212")}, false);
    m_ui->itemControl->setSegmentToolTip(0, tr("Add an item"));
    m_ui->itemControl->setSegmentToolTip(1, tr("Delete the selected item"));
    m_itemCommands = new GRItemCommands(m_ui->itemList, m_database, m_displayItems, this);
    connect(m_itemCommands, &GRItemCommands::editItemRequested, this, &GRWindowController::editItem);
    connect(m_ui->itemControl, &GRSegmentedControl::segmentClicked, m_itemCommands,
            &GRItemCommands::clickListControl);
    m_ui->itemControlBar->setAnchor(m_ui->itemScroll);

    connect(m_ui->keyLegend, &GRKeyLegend::toggled, this, [this] { toggleKeys(keyDisclosureButton()); });
    // The legend never takes a selection: a click sends the focus back to the groups table.
    connect(m_ui->keyLegend, &GRKeyLegend::clicked, this,
            [this] { m_ui->categoryList->setFocus(Qt::MouseFocusReason); });

    m_ui->mainSplitter->setStretchFactor(0, 0);
    m_ui->mainSplitter->setStretchFactor(1, 1);
    m_ui->mainSplitter->setSizes({230, 730});
}

// The two lists first, one Tab apart, then the small controls.
void GRWindowController::setUpTabOrder()
{
    QList<QWidget *> chain{m_searchField, m_ui->categoryList, m_ui->itemList};
    for (GRSegmentedControl *control : {m_ui->listPicker, m_ui->categoryControl, m_ui->itemControl}) {
        if (control == m_ui->itemControl)
            chain << keyDisclosureButton();
        for (int segment = 0; segment < control->segmentCount(); ++segment)
            chain << control->button(segment);
    }
    for (qsizetype i = 1; i < chain.size(); ++i)
        QWidget::setTabOrder(chain[i - 1], chain[i]);
}

void GRWindowController::setUpToolbar()
{
    QToolBar *toolbar = m_ui->toolbar;
    toolbar->toggleViewAction()->setEnabled(false);

    m_undoSegments = new MGToolbarSegments(MGToolbarSegments::Momentary, false, toolbar);
    m_undoSegments->setObjectName(QStringLiteral("undoSegments"));
    m_undoSegments->setToolTip(tr("Undo or redo the last change"));
    m_undoSegments->setDelegate(this);
    m_undoSegments->layoutTabs();
    toolbar->addWidget(m_undoSegments);

    auto *spacer = new QWidget(toolbar);
    spacer->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
    toolbar->addWidget(spacer);

    m_searchField = new QLineEdit(toolbar);
    m_searchField->setObjectName(QStringLiteral("searchField"));
    m_searchField->setPlaceholderText(tr("Search"));
    m_searchField->setClearButtonEnabled(true);
    m_searchField->setFixedWidth(220);
    connect(m_searchField, &QLineEdit::textChanged, this, &GRWindowController::find);
    toolbar->addWidget(m_searchField);
    auto *margin = new QWidget(toolbar);
    margin->setFixedWidth(6);
    toolbar->addWidget(margin);
}

void GRWindowController::setUpMenus()
{
    m_menus = new GRWindowMenus(*this, m_database);
    const std::pair<const char *, void (GRWindowController::*)()> commands[] = {
        {"printGroceries", &GRWindowController::printGroceries},
        {"undoEdit", &GRWindowController::undoEdit},
        {"redoEdit", &GRWindowController::redoEdit},
        {"editKeys", &GRWindowController::editKeys},
        {"showAll", &GRWindowController::showAll},
        {"showNeedful", &GRWindowController::showNeedful},
        {"resetChecks", &GRWindowController::resetChecks},
        {"addItem", &GRWindowController::addItem},
        {"editStores", &GRWindowController::editStores},
    };
    for (const auto &[name, slot] : commands)
        connect(action(QLatin1String(name)), &QAction::triggered, this, slot);
    const std::pair<const char *, void (GRGroupsController::*)()> groupCommands[] = {
        {"addCategory", &GRGroupsController::addCategory},
        {"addStore", &GRGroupsController::addStore},
        {"renameCategory", &GRGroupsController::renameCategory},
    };
    for (const auto &[name, slot] : groupCommands)
        connect(action(QLatin1String(name)), &QAction::triggered, m_groups, slot);

    connect(action(QStringLiteral("changeItem")), &QAction::triggered, m_itemCommands,
            &GRItemCommands::changeItem);
    connect(action(QStringLiteral("duplicateItem")), &QAction::triggered, m_itemCommands,
            &GRItemCommands::duplicate);

    connect(action(QStringLiteral("find")), &QAction::triggered, this, [this] {
        m_searchField->setFocus(Qt::ShortcutFocusReason);
        m_searchField->selectAll();
    });

    auto *modes = new QActionGroup(this);
    modes->addAction(action(QStringLiteral("showCategories")));
    modes->addAction(action(QStringLiteral("showStores")));
    connect(action(QStringLiteral("showCategories")), &QAction::triggered, this,
            [this] { m_groups->setListPickerSegment(0); });
    connect(action(QStringLiteral("showStores")), &QAction::triggered, this,
            [this] { m_groups->setListPickerSegment(1); });
    connect(action(QStringLiteral("toggleKeys")), &QAction::triggered, this, [this](bool checked) {
        keyDisclosureButton()->setChecked(checked);
        toggleKeys(keyDisclosureButton());
    });
    connect(action(QStringLiteral("about")), &QAction::triggered, this, [this] {
        QMessageBox::about(this, tr("About Groceries"),
                           QStringLiteral("<h3>Groceries %1</h3><p>%2</p>")
                               .arg(QCoreApplication::applicationVersion(), tr("Grocery list manager.")));
    });

    for (QMenu *menu : {m_ui->fileMenu, m_ui->editMenu, m_ui->listMenu, m_ui->itemsMenu, m_ui->helpMenu})
        connect(menu, &QMenu::aboutToShow, this, &GRWindowController::updateMenus);
}

// ---- The list on show

void GRWindowController::showItems(const QList<GRItemPtr> &items)
{
    m_displayItems = items;
    PostRedoItems();
    m_groups->deselectAll();
    updateMenus();
}

// ---- Commands

void GRWindowController::addItem()
{
    if (!m_database.categories().isEmpty())
        editItem(nullptr);
}

GRItemDialog *GRWindowController::editItem(const GRItemPtr &item)
{
    return GRItemDialog::editItem(item, m_database, m_displayItems, this, m_groups->currentCategory(),
                                  m_groups->currentStore());
}

void GRWindowController::editKeys()
{
    GRKeysDialog *dialog = GRKeysDialog::editKeys(this);
    connect(dialog, &GRKeysDialog::keyStringsChanged, this, &GRWindowController::refreshLegend);
}

void GRWindowController::editStores()
{
    GRStoresDialog *dialog = GRStoresDialog::editStores(m_database, this);
    connect(dialog, &GRStoresDialog::installStores, this, [this](const QList<GRStorePtr> &stores) {
        m_groups->installStores(stores, GRUndoDescriptor::Stores);
    });
}

void GRWindowController::showAll()
{
    showItems(GRGroceryQueries::allItems(m_database));
}

void GRWindowController::showNeedful()
{
    showItems(GRGroceryQueries::neededItems(m_database));
}

void GRWindowController::resetChecks()
{
    if (!RecordUndo(GRUndoAction::Categories, GRUndoDescriptor::ClearAllCheckmarks))
        return;
    GRGroceryEdits::clearChecks(m_database);
    PostRedoItems();
    updateMenus();
}

void GRWindowController::find(const QString &text)
{
    if (!text.isEmpty()) {
        showItems(GRGroceryQueries::findItems(m_database, text));
        return;
    }
    if (!m_database.categories().isEmpty()) {
        m_groups->selectRow(0);
        m_groups->tableViewSelectionDidChange();
        updateMenus();
    }
}

void GRWindowController::paste()
{
    const QMimeData *mime = QGuiApplication::clipboard()->mimeData();
    if (!mime || !mime->hasFormat(GRItemPasteboardType))
        return;
    const GRItemPtr item =
        GRGroceryEdits::itemFromPasteboardText(m_database, mime->data(GRItemPasteboardType));
    if (!item)
        return;
    GRCategoryPtr target = m_database.categories().value(m_groups->currentCategory());
    if (!target)
        target = item->category();
    if (!target || !RecordUndo(GRUndoAction::Category, GRUndoDescriptor::PasteItem, target))
        return;
    GRGroceryEdits::insertItem(target, item);
    m_displayItems.append(item);
    PostRedoItems(item);
    updateMenus();
}

void GRWindowController::printGroceries()
{
    GRPrintPreviewWindow::printGroceries(m_database, GRPrefController::sharedInstance(), this);
}

void GRWindowController::undoEdit()
{
    MGUndoManager::sharedInstance().undo();
    updateMenus();
}

void GRWindowController::redoEdit()
{
    MGUndoManager::sharedInstance().redo();
    updateMenus();
}

// ---- Legend

void GRWindowController::refreshLegend()
{
    m_ui->keyLegend->setKeyStrings(g_keyStrings);
}

void GRWindowController::toggleKeys(QObject *sender)
{
    GRPrefController &prefs = GRPrefController::sharedInstance();
    const bool restoring = sender == this;
    const bool show = restoring ? prefs.showKeys() : keyDisclosureButton()->isChecked();
    if (!restoring)
        prefs.setShowKeys(show);
    action(QStringLiteral("toggleKeys"))->setChecked(show);
    m_ui->keyLegend->setShown(show, !restoring);
}

// ---- Edited mark and menus

void GRWindowController::updateEditedMark()
{
    setWindowModified(DatabaseChanged());
    scheduleMenuUpdate();
}

void GRWindowController::scheduleMenuUpdate()
{
    if (m_menuUpdatePending)
        return;
    m_menuUpdatePending = true;
    QTimer::singleShot(0, this, [this] { updateMenus(); });
}

QAction *GRWindowController::action(const QString &name) const
{
    return m_menus->action(name);
}

bool GRWindowController::validateMenuItem(QAction *menuAction)
{
    return m_menus->validateMenuItem(menuAction);
}

void GRWindowController::updateMenus()
{
    m_menuUpdatePending = false;
    for (QAction *menuAction : m_menus->actions()) {
        if (!GRWindowMenus::isAppCommand(menuAction->objectName()))
            menuAction->setEnabled(validateMenuItem(menuAction));
    }
    m_ui->categoryControl->setSegmentEnabled(1, m_groups->canDeleteSelection());
    m_ui->itemControl->setSegmentEnabled(0, validateMenuItem(action(QStringLiteral("addItem"))));
    m_ui->itemControl->setSegmentEnabled(1, !m_displayItems.isEmpty());
    emit menusValidated();
}

// ---- Window delegate

bool GRWindowController::windowShouldClose()
{
    if (!DatabaseChanged())
        return true;
    const int answer = MGAlert::sharedInstance().giveAlertMessage(
        QStringLiteral("Save changes to the groceries database?"),
        QStringLiteral("Your changes will be lost if you don't save them."),
        {QStringLiteral("Save"), QStringLiteral("Cancel"), QStringLiteral("Don't Save")});
    switch (answer) {
    case 0: {
        const bool saved = SaveGroceries(m_database);
        updateEditedMark();
        return saved;
    }
    case 2:
        g_dirty = false;
        GRPrefController::sharedInstance().setDirty(false);
        updateEditedMark();
        return true;
    default:
        return false;
    }
}

void GRWindowController::closeEvent(QCloseEvent *event)
{
    if (windowShouldClose())
        event->accept();
    else
        event->ignore();
}

void GRWindowController::windowDidResize()
{
    m_ui->categoryControlBar->recentre();
    m_ui->itemControlBar->recentre();
}

// A grid without a row would show nothing: the item area always keeps room for one cell.
void GRWindowController::keepOneItemRow()
{
    QScrollArea *scroll = m_ui->itemScroll;
    const int scrollBar = scroll->horizontalScrollBar()->sizeHint().height();
    const int pitch = int(std::ceil(m_ui->itemList->itemSize().height())) + 8;
    scroll->setMinimumHeight(pitch + scrollBar + 2 * scroll->frameWidth());
}

void GRWindowController::showEvent(QShowEvent *event)
{
    QMainWindow::showEvent(event);
    windowDidResize();
    updateMenus();
}

// ---- Undo/redo control

QList<QVariant> GRWindowController::tabsForSegments(MGToolbarSegments *segments)
{
    Q_UNUSED(segments)
    return {QVariant::fromValue(QIcon(QStringLiteral(":/images/UndoTool.png"))),
            QVariant::fromValue(QIcon(QStringLiteral(":/images/RedoTool.png")))};
}

// With nothing to undo or redo the control stays enabled, and the undo manager beeps.
void GRWindowController::tabWasSelected(qint64 tab, MGToolbarSegments *segments)
{
    Q_UNUSED(segments)
    if (tab == 0)
        undoEdit();
    else
        redoEdit();
}
