#include "GRWindowController.h"

#include "GRAppController.h"
#include "GRCategory.h"
#include "GRDatabaseFile.h"
#include "GRGroupsTableModel.h"
#include "GRItem.h"
#include "GRItemListView.h"
#include "GRKeyNames.h"
#include "GRLists.h"
#include "GRPrefController.h"
#include "GRSegmentedControl.h"
#include "GRStore.h"
#include "GRTagKeys.h"
#include "GRUndoRecord.h"
#include "MGAlert.h"
#include "MGNotificationCenter.h"
#include "MGToolbarSegments.h"
#include "MGUndoManager.h"
#include "MGXmlDecoder.h"

#include <QAbstractItemDelegate>
#include <QAction>
#include <QActionGroup>
#include <QApplication>
#include <QClipboard>
#include <QCloseEvent>
#include <QDialog>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QMenuBar>
#include <QMessageBox>
#include <QMimeData>
#include <QPropertyAnimation>
#include <QScrollArea>
#include <QScrollBar>
#include <QSet>
#include <QSplitter>
#include <QTableView>
#include <QTableWidget>
#include <QTimer>
#include <QToolBar>
#include <QToolButton>
#include <QVBoxLayout>

#include <cmath>
#include <utility>

namespace {

const QString ItemType = QStringLiteral("mwgroceries.item");
const QString DragType = QString::fromLatin1(GRGroupsTableModel::DragType);

// Commands whose dialogs or output are not built yet: shown, never enabled.
const QStringList UnbuiltCommands = {
    QStringLiteral("printGroceries"), QStringLiteral("exportList"),        QStringLiteral("emailList"),
    QStringLiteral("editKeys"),       QStringLiteral("showPreferences"),   QStringLiteral("addItem"),
    QStringLiteral("editStores"),     QStringLiteral("showGroceriesHelp"),
};

// Commands of the application controller (validated there).
const QStringList AppCommands = {
    QStringLiteral("saveDocument"),    QStringLiteral("doPageLayout"),      QStringLiteral("printGroceries"),
    QStringLiteral("exportList"),      QStringLiteral("emailList"),         QStringLiteral("terminate"),
    QStringLiteral("showPreferences"), QStringLiteral("showGroceriesHelp"),
};

bool databaseChanged()
{
    return g_dirty || GRPrefController::sharedInstance().dirty();
}

void post(const char *name, const QVariantMap &userInfo = {})
{
    MGNotificationCenter::defaultCenter().post(QString::fromLatin1(name), userInfo);
}

QLineEdit *focusedLineEdit()
{
    return qobject_cast<QLineEdit *>(QApplication::focusWidget());
}

bool hasMethod(QObject *object, const char *method)
{
    return object && object->metaObject()->indexOfMethod(QByteArray(method) + "()") >= 0;
}

} // namespace

int CenteredControlX(int viewX, int viewWidth, int controlWidth)
{
    return viewX + int(std::floor((viewWidth - controlWidth) * 0.5));
}

GRWindowController::GRWindowController(QWidget *parent) : QMainWindow(parent)
{
    setObjectName(QStringLiteral("mainWindow"));
    // The platform appends " — Groceries" to the title, so the mark sits on the document part.
    setWindowTitle(QStringLiteral("Grocery List[*]"));
    setUnifiedTitleAndToolBarOnMac(true);

    MGUndoManager &undo = MGUndoManager::sharedInstance();
    undo.setDelegate(this);
    undo.setCapacity(25);
    undo.setBufferSize(sizeof(GRUndoRecord));

    buildWindow();
    buildToolbar();
    buildMenus();
    GRAppController::sharedInstance().setWindowController(this);

    toggleKeys(this);
    refreshLegend();
    MGNotificationCenter &center = MGNotificationCenter::defaultCenter();
    center.addObserver(QStringLiteral("mwgroceries.reloadCats"), this,
                       [this](const QVariantMap &userInfo) { reloadCategories(userInfo); });
    center.addObserver(QStringLiteral("mwgroceries.updateStores"), this,
                       [this](const QVariantMap &) { reloadStores(); });
    center.addObserver(QStringLiteral("mwgroceries.group"), this,
                       [this](const QVariantMap &userInfo) { selectGroup(userInfo); });
    center.addObserver(QStringLiteral("mwgroceries.redoItems"), this,
                       [this](const QVariantMap &) { scheduleMenuUpdate(); });
    center.addObserver(QStringLiteral("mwgroceries.font"), this,
                       [this](const QVariantMap &) { keepOneItemRow(); });
    connect(QGuiApplication::clipboard(), &QClipboard::dataChanged, this, &GRWindowController::updateMenus);
    connect(qApp, &QApplication::focusChanged, this, &GRWindowController::scheduleMenuUpdate);
    connect(&GRPrefController::sharedInstance(), &GRPrefController::markWindowEdited, this,
            &GRWindowController::updateEditedMark);

    m_groupsModel->reload();
    changeListDisplay();
    updateEditedMark();
    resize(960, 640);
}

GRWindowController::~GRWindowController()
{
    // Children die after this body; their focus and clipboard signals must not reach a half-gone window,
    // and an open name editor must not commit into it as the window goes.
    cancelOperation();
    disconnect(qApp, nullptr, this, nullptr);
    disconnect(QGuiApplication::clipboard(), nullptr, this, nullptr);
    MGNotificationCenter::defaultCenter().removeObserver(this);
    MGUndoManager &undo = MGUndoManager::sharedInstance();
    if (undo.delegate() == this) {
        undo.clearUndo();
        undo.setDelegate(nullptr);
    }
}

// ---- Building

void GRWindowController::buildWindow()
{
    auto *splitter = new QSplitter(Qt::Horizontal, this);
    splitter->setObjectName(QStringLiteral("mainSplitter"));
    splitter->setChildrenCollapsible(false);
    setCentralWidget(splitter);

    auto *left = new QWidget(splitter);
    auto *leftLayout = new QVBoxLayout(left);
    leftLayout->setContentsMargins(8, 8, 4, 6);
    leftLayout->setSpacing(6);

    m_listPicker =
        new GRSegmentedControl({QStringLiteral("Categories"), QStringLiteral("Stores")}, true, left);
    m_listPicker->setObjectName(QStringLiteral("listPicker"));
    m_listPicker->setSelectedSegment(0);
    connect(m_listPicker, &GRSegmentedControl::segmentClicked, this, [this] { changeListDisplay(); });
    leftLayout->addWidget(m_listPicker, 0, Qt::AlignHCenter);

    m_categoryList = new QTableView(left);
    m_categoryList->setObjectName(QStringLiteral("categoryList"));
    m_groupsModel = new GRGroupsTableModel(this);
    m_categoryList->setModel(m_groupsModel);
    m_categoryList->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_categoryList->setSelectionMode(QAbstractItemView::SingleSelection);
    m_categoryList->setEditTriggers(QAbstractItemView::DoubleClicked | QAbstractItemView::EditKeyPressed |
                                    QAbstractItemView::SelectedClicked);
    m_categoryList->setShowGrid(false);
    m_categoryList->setAlternatingRowColors(true);
    m_categoryList->setWordWrap(false);
    m_categoryList->horizontalHeader()->hide();
    m_categoryList->verticalHeader()->hide();
    m_categoryList->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    m_categoryList->verticalHeader()->setDefaultSectionSize(m_categoryList->fontMetrics().height() + 8);
    m_categoryList->horizontalHeader()->setSectionResizeMode(0, QHeaderView::Stretch);
    m_categoryList->horizontalHeader()->setSectionResizeMode(1, QHeaderView::Fixed);
    m_categoryList->horizontalHeader()->resizeSection(
        1, m_categoryList->fontMetrics().horizontalAdvance(QStringLiteral("F16")) + 16);
    m_categoryList->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_categoryList->setAcceptDrops(true);
    m_categoryList->setDragDropMode(QAbstractItemView::DropOnly);
    m_categoryList->setDragDropOverwriteMode(true);
    m_categoryList->setDropIndicatorShown(true);
    m_categoryList->setDefaultDropAction(Qt::MoveAction);
    m_categoryList->installEventFilter(this);
    connect(m_categoryList->selectionModel(), &QItemSelectionModel::selectionChanged, this, [this] {
        if (!m_reloading)
            tableViewSelectionDidChange();
        updateMenus();
    });
    leftLayout->addWidget(m_categoryList, 1);

    m_categoryControlBar = new QWidget(left);
    m_categoryControl =
        makeAddRemoveControl(m_categoryControlBar, QStringLiteral("categoryControl"),
                             tr("Add a category or store"), tr("Delete the selected category or store"));
    connect(m_categoryControl, &GRSegmentedControl::segmentClicked, this,
            &GRWindowController::clickListControl);
    leftLayout->addWidget(m_categoryControlBar);

    m_keyDisclosureButton = new QToolButton(left);
    m_keyDisclosureButton->setObjectName(QStringLiteral("keyDisclosureButton"));
    m_keyDisclosureButton->setText(tr("Key"));
    m_keyDisclosureButton->setCheckable(true);
    m_keyDisclosureButton->setAutoRaise(true);
    m_keyDisclosureButton->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    m_keyDisclosureButton->setArrowType(Qt::RightArrow);
    m_keyDisclosureButton->setToolTip(tr("Show or hide the key legend"));
    connect(m_keyDisclosureButton, &QToolButton::clicked, this,
            [this] { toggleKeys(m_keyDisclosureButton); });
    leftLayout->addWidget(m_keyDisclosureButton, 0, Qt::AlignLeft);

    m_legendPane = new QWidget(left);
    auto *legendLayout = new QVBoxLayout(m_legendPane);
    legendLayout->setContentsMargins(0, 0, 0, 0);
    m_keyList = new QTableWidget(6, 2, m_legendPane);
    m_keyList->setObjectName(QStringLiteral("keyList"));
    m_keyList->horizontalHeader()->hide();
    m_keyList->verticalHeader()->hide();
    m_keyList->setShowGrid(false);
    m_keyList->setSelectionMode(QAbstractItemView::NoSelection);
    m_keyList->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_keyList->setFocusPolicy(Qt::NoFocus);
    m_keyList->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_keyList->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    const int keyRow = m_keyList->fontMetrics().height() + 6;
    m_keyList->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    m_keyList->verticalHeader()->setDefaultSectionSize(keyRow);
    m_keyList->horizontalHeader()->setSectionResizeMode(0, QHeaderView::Fixed);
    m_keyList->horizontalHeader()->resizeSection(0, keyRow + 8);
    m_keyList->horizontalHeader()->setSectionResizeMode(1, QHeaderView::Stretch);
    m_keyList->setFixedHeight(6 * keyRow + 2 * m_keyList->frameWidth());
    m_keyList->viewport()->installEventFilter(this);
    legendLayout->addWidget(m_keyList);
    leftLayout->addWidget(m_legendPane);

    auto *right = new QWidget(splitter);
    auto *rightLayout = new QVBoxLayout(right);
    rightLayout->setContentsMargins(4, 8, 8, 6);
    rightLayout->setSpacing(6);
    m_itemScroll = new QScrollArea(right);
    m_itemScroll->setObjectName(QStringLiteral("itemScroll"));
    m_itemScroll->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_itemScroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    m_itemScroll->setWidgetResizable(false);
    m_itemScroll->setBackgroundRole(QPalette::Base);
    m_itemScroll->installEventFilter(this);
    m_itemList = new GRItemListView(m_itemScroll);
    m_itemList->setObjectName(QStringLiteral("itemList"));
    m_itemScroll->setWidget(m_itemList);
    keepOneItemRow();
    rightLayout->addWidget(m_itemScroll, 1);

    m_itemControlBar = new QWidget(right);
    m_itemControl = makeAddRemoveControl(m_itemControlBar, QStringLiteral("itemControl"), tr("Add an item"),
                                         tr("Delete the selected item"));
    connect(m_itemControl, &GRSegmentedControl::segmentClicked, this, [this](int segment) {
        if (segment == 0)
            addItem();
    });
    rightLayout->addWidget(m_itemControlBar);

    splitter->addWidget(left);
    splitter->addWidget(right);
    splitter->setStretchFactor(0, 0);
    splitter->setStretchFactor(1, 1);
    left->setMinimumWidth(170);
    splitter->setSizes({230, 730});
}

// A "+"/"−" pair in a bar of its own, which resizeEvent centres under its list.
GRSegmentedControl *GRWindowController::makeAddRemoveControl(QWidget *bar, const QString &name,
                                                             const QString &addTip, const QString &removeTip)
{
    auto *control = new GRSegmentedControl({QStringLiteral("+"), QStringLiteral("\u2212")}, false, bar);
    control->setObjectName(name);
    control->setSegmentToolTip(0, addTip);
    control->setSegmentToolTip(1, removeTip);
    control->adjustSize();
    bar->setFixedHeight(control->sizeHint().height());
    bar->installEventFilter(this);
    return control;
}

void GRWindowController::buildToolbar()
{
    QToolBar *toolbar = addToolBar(tr("Toolbar"));
    toolbar->setObjectName(QStringLiteral("toolbar"));
    toolbar->setMovable(false);
    toolbar->setFloatable(false);
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

QAction *GRWindowController::addAction(QMenu *menu, const QString &name, const QString &text,
                                       void (GRWindowController::*slot)())
{
    auto *action = new QAction(text, this);
    action->setObjectName(name);
    if (slot)
        connect(action, &QAction::triggered, this, slot);
    menu->addAction(action);
    m_actions.insert(name, action);
    return action;
}

void GRWindowController::buildMenus()
{
    GRAppController &app = GRAppController::sharedInstance();
    QMenuBar *bar = menuBar();

    QMenu *file = bar->addMenu(tr("&File"));
    addAction(file, QStringLiteral("saveDocument"), tr("&Save"), nullptr)->setShortcut(QKeySequence::Save);
    connect(action(QStringLiteral("saveDocument")), &QAction::triggered, &app,
            &GRAppController::saveDocument);
    file->addSeparator();
    addAction(file, QStringLiteral("doPageLayout"), tr("Page Set&up\u2026"), nullptr)
        ->setShortcut(QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_P));
    connect(action(QStringLiteral("doPageLayout")), &QAction::triggered, &app,
            &GRAppController::doPageLayout);
    addAction(file, QStringLiteral("printGroceries"), tr("&Print\u2026"), &GRWindowController::printGroceries)
        ->setShortcut(QKeySequence::Print);
    file->addSeparator();
    addAction(file, QStringLiteral("exportList"), tr("&Export\u2026"), nullptr);
    addAction(file, QStringLiteral("emailList"), tr("E-&mail List"), nullptr);
    file->addSeparator();
    QAction *quit = addAction(file, QStringLiteral("terminate"), tr("&Quit"), nullptr);
    quit->setShortcut(QKeySequence::Quit);
    quit->setMenuRole(QAction::QuitRole);
    connect(quit, &QAction::triggered, &app, &GRAppController::terminate);

    QMenu *edit = bar->addMenu(tr("&Edit"));
    addAction(edit, QStringLiteral("undoEdit"), tr("Undo"), &GRWindowController::undoEdit)
        ->setShortcut(QKeySequence::Undo);
    addAction(edit, QStringLiteral("redoEdit"), tr("Redo"), &GRWindowController::redoEdit)
        ->setShortcut(QKeySequence::Redo);
    edit->addSeparator();
    addAction(edit, QStringLiteral("cut"), tr("Cu&t"), nullptr)->setShortcut(QKeySequence::Cut);
    connect(action(QStringLiteral("cut")), &QAction::triggered, this, [this] { forwardToFocus("cut"); });
    addAction(edit, QStringLiteral("copy"), tr("&Copy"), nullptr)->setShortcut(QKeySequence::Copy);
    connect(action(QStringLiteral("copy")), &QAction::triggered, this, [this] { forwardToFocus("copy"); });
    addAction(edit, QStringLiteral("paste"), tr("&Paste"), nullptr)->setShortcut(QKeySequence::Paste);
    connect(action(QStringLiteral("paste")), &QAction::triggered, this, [this] {
        if (QLineEdit *line = focusedLineEdit())
            line->paste();
        else
            paste();
    });
    // Delete works as a key only in the groups table: the item list has a Delete of its own.
    QAction *remove =
        addAction(edit, QStringLiteral("delete"), tr("&Delete"), &GRWindowController::deleteGroup);
    remove->setShortcuts({QKeySequence(QKeySequence::Delete), QKeySequence(Qt::Key_Backspace)});
    remove->setShortcutContext(Qt::WidgetShortcut);
    m_categoryList->addAction(remove);
    addAction(edit, QStringLiteral("selectAll"), tr("Select &All"), nullptr)
        ->setShortcut(QKeySequence::SelectAll);
    connect(action(QStringLiteral("selectAll")), &QAction::triggered, this,
            [this] { forwardToFocus("selectAll"); });
    edit->addSeparator();
    addAction(edit, QStringLiteral("find"), tr("&Find"), nullptr)->setShortcut(QKeySequence::Find);
    connect(action(QStringLiteral("find")), &QAction::triggered, this, [this] {
        m_searchField->setFocus(Qt::ShortcutFocusReason);
        m_searchField->selectAll();
    });
    edit->addSeparator();
    addAction(edit, QStringLiteral("editKeys"), tr("Edit &Keys\u2026"), &GRWindowController::editKeys);
    QAction *prefs = addAction(edit, QStringLiteral("showPreferences"), tr("Pr&eferences\u2026"), nullptr);
    prefs->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_Comma));
    prefs->setMenuRole(QAction::PreferencesRole);
    connect(prefs, &QAction::triggered, &app, &GRAppController::showPreferences);

    QMenu *list = bar->addMenu(tr("&List"));
    addAction(list, QStringLiteral("showAll"), tr("Show &All"), &GRWindowController::showAll)
        ->setShortcut(QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_A));
    addAction(list, QStringLiteral("showNeedful"), tr("Show &Needed"), &GRWindowController::showNeedful)
        ->setShortcut(QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_N));
    addAction(list, QStringLiteral("resetChecks"), tr("&Clear All Checkmarks"),
              &GRWindowController::resetChecks);
    list->addSeparator();
    auto *modes = new QActionGroup(this);
    QAction *categories = addAction(list, QStringLiteral("showCategories"), tr("Ca&tegories"), nullptr);
    QAction *stores = addAction(list, QStringLiteral("showStores"), tr("&Stores"), nullptr);
    categories->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_1));
    stores->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_2));
    for (QAction *mode : {categories, stores}) {
        mode->setCheckable(true);
        modes->addAction(mode);
    }
    categories->setChecked(true);
    connect(categories, &QAction::triggered, this, [this] { setListPickerSegment(0); });
    connect(stores, &QAction::triggered, this, [this] { setListPickerSegment(1); });
    list->addSeparator();
    QAction *legend = addAction(list, QStringLiteral("toggleKeys"), tr("Show &Key Legend"), nullptr);
    legend->setCheckable(true);
    legend->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_K));
    connect(legend, &QAction::triggered, this, [this](bool checked) {
        m_keyDisclosureButton->setChecked(checked);
        toggleKeys(m_keyDisclosureButton);
    });

    QMenu *items = bar->addMenu(tr("&Items"));
    addAction(items, QStringLiteral("addItem"), tr("Add &Item\u2026"), &GRWindowController::addItem)
        ->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_N));
    addAction(items, QStringLiteral("addCategory"), tr("Add &Category"), &GRWindowController::addCategory);
    addAction(items, QStringLiteral("addStore"), tr("Add &Store"), &GRWindowController::addStore);
    addAction(items, QStringLiteral("renameCategory"), tr("&Rename"), &GRWindowController::renameCategory);
    items->addSeparator();
    addAction(items, QStringLiteral("editStores"), tr("&Edit Stores\u2026"), &GRWindowController::editStores);

    QMenu *help = bar->addMenu(tr("&Help"));
    addAction(help, QStringLiteral("showGroceriesHelp"), tr("Groceries &Help"), nullptr);
    connect(action(QStringLiteral("showGroceriesHelp")), &QAction::triggered, &app,
            &GRAppController::showGroceriesHelp);
    QAction *about = addAction(help, QStringLiteral("about"), tr("&About Groceries"), nullptr);
    about->setMenuRole(QAction::AboutRole);
    connect(about, &QAction::triggered, this, [this] {
        QMessageBox::about(this, tr("About Groceries"),
                           QStringLiteral("<h3>Groceries %1</h3><p>%2</p>")
                               .arg(QCoreApplication::applicationVersion(), GRAppController::aboutString()));
    });

    for (QMenu *menu : {file, edit, list, items, help})
        connect(menu, &QMenu::aboutToShow, this, &GRWindowController::updateMenus);
}

// ---- Modes and selection

bool GRWindowController::isStoreMode() const
{
    return m_listPicker->selectedSegment() == 1;
}

qint64 GRWindowController::selectedRow() const
{
    const QModelIndexList rows = m_categoryList->selectionModel()->selectedRows();
    return rows.isEmpty() ? -1 : rows.first().row();
}

void GRWindowController::selectRow(qint64 row)
{
    const bool reloading = std::exchange(m_reloading, true);
    if (row >= 0 && row < m_groupsModel->rowCount()) {
        const QModelIndex index = m_groupsModel->index(int(row), 0);
        m_categoryList->selectionModel()->setCurrentIndex(index, QItemSelectionModel::ClearAndSelect |
                                                                     QItemSelectionModel::Rows);
        m_categoryList->scrollTo(index);
    } else {
        m_categoryList->clearSelection();
    }
    m_reloading = reloading;
}

void GRWindowController::deselectAll()
{
    const bool reloading = std::exchange(m_reloading, true);
    m_categoryList->clearSelection();
    m_reloading = reloading;
}

void GRWindowController::setListPickerSegment(int segment)
{
    if (m_listPicker->selectedSegment() == segment)
        return;
    m_listPicker->setSelectedSegment(segment);
    changeListDisplay();
}

qint64 GRWindowController::currentCategory() const
{
    return isStoreMode() ? -1 : selectedRow();
}

qint64 GRWindowController::currentStore() const
{
    return isStoreMode() ? selectedRow() : -1;
}

void GRWindowController::changeListDisplay()
{
    const bool storeMode = isStoreMode();
    m_groupsModel->setStoreMode(storeMode);
    m_categoryList->setColumnHidden(1, !storeMode);
    m_groupsModel->reload();
    if (QAction *mode = action(storeMode ? QStringLiteral("showStores") : QStringLiteral("showCategories")))
        mode->setChecked(true);
    selectRow(0);
    tableViewSelectionDidChange();
    updateMenus();
}

void GRWindowController::tableViewSelectionDidChange()
{
    const qint64 row = selectedRow();
    if (row < 0)
        return;
    GRLists &lists = GRLists::shared();
    QList<GRItemPtr> &display = lists.displayItems();
    display.clear();
    if (isStoreMode()) {
        if (row < lists.stores().size()) {
            const GRStore *store = lists.stores().at(row).get();
            const QList<GRCategoryPtr> &categories = lists.categories();
            for (auto category = categories.crbegin(); category != categories.crend(); ++category) {
                const QList<GRItemPtr> &items = (*category)->items();
                for (auto item = items.crbegin(); item != items.crend(); ++item) {
                    if ((*item)->store().get() == store)
                        display.append(*item);
                }
            }
        }
    } else if (row < lists.categories().size()) {
        display = lists.categories().at(row)->items();
    }
    postRedoItems();
}

void GRWindowController::reloadCategories(const QVariantMap &userInfo)
{
    reloadCategoriesCore(userInfo.value(QStringLiteral("selection")).toLongLong());
}

void GRWindowController::reloadCategoriesCore(qint64 row)
{
    m_groupsModel->reload();
    if (openEditor()) {
        // Called from the name editor's commit: moving the selection now would close the editor
        // from inside its own commit.
        QTimer::singleShot(0, this, [this, row] { reloadCategoriesNow(row); });
        return;
    }
    reloadCategoriesNow(row);
}

void GRWindowController::reloadCategoriesNow(qint64 row)
{
    m_groupsModel->reload();
    selectRow(isStoreMode() ? 0 : row);
    tableViewSelectionDidChange();
    windowDidResize();
    updateMenus();
}

void GRWindowController::reloadStores()
{
    if (isStoreMode())
        reloadCategoriesCore(0);
    else
        m_groupsModel->reload();
}

void GRWindowController::selectGroup(const QVariantMap &userInfo)
{
    const qint64 row = selectedRow();
    const GRItemPtr item = userInfo.value(QStringLiteral("item")).value<GRItemPtr>();
    if (row < 0 || !item)
        return;
    GRLists &lists = GRLists::shared();
    const qint64 index = isStoreMode() ? lists.indexOfStore(item->store().get())
                                       : lists.indexOfCategory(item->category().get());
    if (index >= 0 && index != row) {
        selectRow(index);
        tableViewSelectionDidChange();
    }
}

void GRWindowController::postRedoItems(const GRItemPtr &item)
{
    QVariantMap userInfo;
    if (item)
        userInfo.insert(QStringLiteral("item"), QVariant::fromValue(item));
    post("mwgroceries.redoItems", userInfo);
}

// ---- Groups table: rename, drops

void GRWindowController::setObjectValue(const QString &name, qint64 row)
{
    if (name.isEmpty())
        return;
    GRLists &lists = GRLists::shared();
    if (isStoreMode()) {
        if (row < 1 || row >= lists.stores().size())
            return;
        QList<GRStorePtr> newStores = lists.stores();
        GRStorePtr renamed = newStores.at(row)->copy();
        renamed->setName(name);
        newStores[row] = renamed;
        GRAppController::sharedInstance().installNewStores(newStores, 15);
        return;
    }
    if (row < 0 || row >= lists.categories().size())
        return;
    const GRCategoryPtr category = lists.categories().at(row);
    if (!MGUndoManager::sharedInstance().setUndoAction(1, 11, category))
        return;
    category->setName(name);
    SortByName(lists.categories());
    reloadCategoriesCore(lists.indexOfCategory(category.get()));
    post("mwgroceries.updateCats");
}

bool GRWindowController::validateDrop(const QMimeData *data, qint64 row, bool onRow) const
{
    return onRow && row >= 0 && row < m_groupsModel->rowCount() && data && data->hasFormat(DragType);
}

bool GRWindowController::acceptDrop(const QMimeData *data, qint64 row)
{
    if (!data || !data->hasFormat(DragType))
        return false;
    bool ok = false;
    const qint64 index = QString::fromUtf8(data->data(DragType)).trimmed().toLongLong(&ok);
    GRLists &lists = GRLists::shared();
    if (!ok || index < 0 || index >= lists.displayItems().size())
        return false;
    const GRItemPtr item = lists.displayItems().at(index);
    MGUndoManager &undo = MGUndoManager::sharedInstance();
    if (isStoreMode()) {
        if (row < 0 || row >= lists.stores().size())
            return false;
        const GRStorePtr target = lists.stores().at(row);
        if (item->store() == target || !undo.setUndoAction(1, 1, item->category()))
            return false;
        item->setStore(target);
    } else {
        if (row < 0 || row >= lists.categories().size())
            return false;
        const GRCategoryPtr target = lists.categories().at(row);
        const GRCategoryPtr old = item->category();
        if (old == target || !undo.setUndoAction(0, 6))
            return false;
        target->items().append(item);
        item->setCategory(target);
        if (old)
            old->items().removeAll(item);
    }
    lists.displayItems().removeAll(item);
    postRedoItems();
    updateMenus();
    return true;
}

// ---- Commands

void GRWindowController::clickListControl(int segment)
{
    if (segment == 1)
        deleteGroup();
    else if (isStoreMode())
        addStore();
    else
        addCategory();
}

void GRWindowController::beginEditingRow(qint64 row)
{
    const QModelIndex index = m_groupsModel->index(int(row), 0);
    if (!index.isValid())
        return;
    m_categoryList->scrollTo(index);
    m_categoryList->setFocus(Qt::OtherFocusReason);
    m_categoryList->edit(index);
}

void GRWindowController::addCategory()
{
    if (isStoreMode()) {
        m_listPicker->setSelectedSegment(0);
        m_groupsModel->setStoreMode(false);
        m_categoryList->setColumnHidden(1, true);
        if (QAction *mode = action(QStringLiteral("showCategories")))
            mode->setChecked(true);
        reloadCategoriesCore(0);
    }
    if (!MGUndoManager::sharedInstance().setUndoAction(0, 10))
        return;
    GRCategoryPtr category = GRCategory::create();
    category->setName(QStringLiteral("New category"));
    QList<GRCategoryPtr> &categories = GRLists::shared().categories();
    categories.append(category);
    reloadCategoriesCore(categories.size() - 1);
    beginEditingRow(categories.size() - 1);
    post("mwgroceries.updateCats");
}

void GRWindowController::addStore()
{
    if (!isStoreMode())
        setListPickerSegment(1);
    if (!MGUndoManager::sharedInstance().setUndoAction(2, 14))
        return;
    GRStorePtr store = GRStore::create();
    store->setName(QStringLiteral("New store"));
    QList<GRStorePtr> &stores = GRLists::shared().stores();
    stores.append(store);
    reloadCategoriesCore(stores.size() - 1);
    beginEditingRow(stores.size() - 1);
}

void GRWindowController::addItem()
{
    // The item dialog is not built yet.
}

void GRWindowController::deleteGroup()
{
    if (isStoreMode())
        deleteStore(selectedRow());
    else
        deleteCategory(selectedRow());
}

void GRWindowController::deleteCategory(qint64 row)
{
    QList<GRCategoryPtr> &categories = GRLists::shared().categories();
    if (row < 0 || row >= categories.size() || categories.size() < 2)
        return;
    const GRCategoryPtr victim = categories.at(row);
    const GRCategoryPtr heir = categories.at(row == 0 ? 1 : 0);
    if (GRPrefController::sharedInstance().confirmDelete() &&
        !OkToProceed(
            QStringLiteral("Delete category?"),
            QStringLiteral("Are you sure you want to delete the category \"%1\"?\n\nIts items will be "
                           "reassigned to \"%2\".")
                .arg(victim->name(), heir->name())))
        return;
    if (!MGUndoManager::sharedInstance().setUndoAction(0, 12))
        return;
    for (const GRItemPtr &item : std::as_const(victim->items())) {
        heir->items().append(item);
        item->setCategory(heir);
    }
    categories.removeAll(victim);
    reloadCategoriesCore(0);
    post("mwgroceries.updateCats");
}

void GRWindowController::deleteStore(qint64 row)
{
    const QList<GRStorePtr> &stores = GRLists::shared().stores();
    if (row < 1 || row >= stores.size() || stores.size() < 2)
        return;
    if (GRPrefController::sharedInstance().confirmDelete() &&
        !OkToProceed(QStringLiteral("Delete store?"),
                     QStringLiteral("Are you sure you want to delete the store \"%1\"?\n\nIts items will be "
                                    "reassigned to \"%2\".")
                         .arg(stores.at(row)->name(), stores.at(0)->name())))
        return;
    QList<GRStorePtr> newStores = stores;
    newStores.removeAt(row);
    GRAppController::sharedInstance().installNewStores(newStores, 16);
}

void GRWindowController::renameCategory()
{
    const qint64 row = selectedRow();
    if (row >= 0 && (m_groupsModel->flags(m_groupsModel->index(int(row), 0)) & Qt::ItemIsEditable))
        beginEditingRow(row);
}

QWidget *GRWindowController::openEditor() const
{
    for (int row = 0; row < m_groupsModel->rowCount(); ++row) {
        if (QWidget *editor = m_categoryList->indexWidget(m_groupsModel->index(row, 0)))
            return editor;
    }
    return nullptr;
}

void GRWindowController::cancelOperation()
{
    // closeEditor is protected on the view; the delegate's signal reaches it.
    if (QWidget *editor = openEditor())
        emit m_categoryList->itemDelegate()->closeEditor(editor, QAbstractItemDelegate::RevertModelCache);
}

void GRWindowController::editKeys()
{
    // The keys dialog is not built yet.
}

void GRWindowController::editStores()
{
    // The stores dialog is not built yet.
}

void GRWindowController::showAll()
{
    QList<GRItemPtr> &display = GRLists::shared().displayItems();
    display.clear();
    for (const GRCategoryPtr &category : std::as_const(GRLists::shared().categories()))
        display.append(category->items());
    postRedoItems();
    deselectAll();
    updateMenus();
}

void GRWindowController::showNeedful()
{
    QList<GRItemPtr> &display = GRLists::shared().displayItems();
    display.clear();
    for (const GRCategoryPtr &category : std::as_const(GRLists::shared().categories())) {
        for (const GRItemPtr &item : std::as_const(category->items())) {
            if (item->isNeeded())
                display.append(item);
        }
    }
    postRedoItems();
    deselectAll();
    updateMenus();
}

void GRWindowController::resetChecks()
{
    if (!MGUndoManager::sharedInstance().setUndoAction(0, 7))
        return;
    for (const GRCategoryPtr &category : std::as_const(GRLists::shared().categories())) {
        for (const GRItemPtr &item : std::as_const(category->items()))
            item->setNeeded(false);
    }
    postRedoItems();
    updateMenus();
}

void GRWindowController::find(const QString &text)
{
    GRLists &lists = GRLists::shared();
    if (text.isEmpty()) {
        if (!lists.categories().isEmpty()) {
            selectRow(0);
            tableViewSelectionDidChange();
            updateMenus();
        }
        return;
    }
    QList<GRItemPtr> &display = lists.displayItems();
    display.clear();
    for (const GRCategoryPtr &category : std::as_const(lists.categories())) {
        for (const GRItemPtr &item : std::as_const(category->items())) {
            if (item->name().contains(text, Qt::CaseInsensitive))
                display.append(item);
        }
    }
    postRedoItems();
    deselectAll();
    updateMenus();
}

void GRWindowController::paste()
{
    const QMimeData *mime = QGuiApplication::clipboard()->mimeData();
    if (!mime || !mime->hasFormat(ItemType))
        return;
    RegisterGroceryTags();
    std::unique_ptr<MGXmlDecoder> decoder = MGXmlDecoder::fromString(QString::fromUtf8(mime->data(ItemType)));
    if (!decoder || !decoder->getNextTag())
        return;
    const GRItemPtr item = GRItem::fromXml(*decoder);
    if (!item)
        return;
    GRLists &lists = GRLists::shared();
    GRCategoryPtr target;
    const qint64 row = currentCategory();
    if (row >= 0 && row < lists.categories().size()) {
        target = lists.categories().at(row);
        item->setCategory(target);
    } else {
        target = item->category();
    }
    if (!target || !MGUndoManager::sharedInstance().setUndoAction(1, 3, target))
        return;
    target->items().append(item);
    lists.displayItems().append(item);
    postRedoItems(item);
    updateMenus();
}

void GRWindowController::printGroceries()
{
    // Printing is not built yet.
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

void GRWindowController::forwardToFocus(const char *method)
{
    QWidget *focus = QApplication::focusWidget();
    if (qobject_cast<QLineEdit *>(focus) || (focus == m_itemList && hasMethod(m_itemList, method)))
        QMetaObject::invokeMethod(focus, method);
}

// ---- Legend

void GRWindowController::refreshLegend()
{
    QFont keyFont = m_keyList->font();
    keyFont.setPointSizeF(keyFont.pointSizeF() * 1.15);
    for (int row = 0; row < 6; ++row) {
        const QString line = g_keyStrings.value(row);
        const qsizetype tab = line.indexOf(QLatin1Char('\t'));
        auto *mark = new QTableWidgetItem(tab < 0 ? QString() : line.left(tab));
        mark->setTextAlignment(Qt::AlignCenter);
        mark->setFont(keyFont);
        mark->setFlags(Qt::ItemIsEnabled);
        auto *name = new QTableWidgetItem(tab < 0 ? line : line.mid(tab + 1));
        name->setFlags(Qt::ItemIsEnabled);
        m_keyList->setItem(row, 0, mark);
        m_keyList->setItem(row, 1, name);
    }
}

void GRWindowController::toggleKeys(QObject *sender)
{
    GRPrefController &prefs = GRPrefController::sharedInstance();
    bool show;
    if (sender == this) {
        show = prefs.showKeys();
        m_keyDisclosureButton->setChecked(show);
    } else {
        show = m_keyDisclosureButton->isChecked();
        prefs.setShowKeys(show);
    }
    m_keyDisclosureButton->setArrowType(show ? Qt::DownArrow : Qt::RightArrow);
    if (QAction *legend = action(QStringLiteral("toggleKeys")))
        legend->setChecked(show);
    if (sender == this) {
        setLegendShown(show, false);
        return;
    }
    if (m_legendShown == show)
        return;
    setLegendShown(show, true);
}

void GRWindowController::setLegendShown(bool shown, bool animate)
{
    m_legendShown = shown;
    if (m_legendAnimation)
        m_legendAnimation->stop();
    const int height = m_keyList->height();
    if (!animate || !isVisible()) {
        m_legendPane->setMaximumHeight(shown ? QWIDGETSIZE_MAX : 0);
        m_legendPane->setVisible(shown);
        return;
    }
    // The groups table gives up (or takes back) the legend's height as the legend grows or shrinks.
    auto *animation = new QPropertyAnimation(m_legendPane, "maximumHeight", this);
    animation->setDuration(160);
    animation->setEasingCurve(QEasingCurve::InOutQuad);
    animation->setStartValue(shown ? 0 : m_legendPane->height());
    animation->setEndValue(shown ? height : 0);
    if (shown) {
        m_legendPane->setMaximumHeight(0);
        m_legendPane->setVisible(true);
    }
    connect(animation, &QPropertyAnimation::finished, this, [this, shown] {
        m_legendPane->setMaximumHeight(shown ? QWIDGETSIZE_MAX : 0);
        m_legendPane->setVisible(shown);
    });
    m_legendAnimation = animation;
    animation->start(QAbstractAnimation::DeleteWhenStopped);
}

// ---- Edited mark and menus

void GRWindowController::updateEditedMark()
{
    setWindowModified(databaseChanged());
    scheduleMenuUpdate();
}

void GRWindowController::scheduleMenuUpdate()
{
    if (m_menuUpdatePending)
        return;
    m_menuUpdatePending = true;
    QTimer::singleShot(0, this, [this] { updateMenus(); });
}

bool GRWindowController::validateMenuItem(QAction *menuAction)
{
    if (!menuAction)
        return false;
    const QString name = menuAction->objectName();
    if (UnbuiltCommands.contains(name))
        return false;
    if (AppCommands.contains(name))
        return GRAppController::sharedInstance().validateMenuItem(menuAction);
    GRLists &lists = GRLists::shared();
    const qint64 row = selectedRow();
    if (name == QLatin1String("renameCategory"))
        return row >= 0;
    if (name == QLatin1String("addItem"))
        return !lists.categories().isEmpty();
    if (name == QLatin1String("delete"))
        return isStoreMode() ? row > 0 : row >= 0 && lists.categories().size() >= 2;
    if (name == QLatin1String("paste")) {
        if (QLineEdit *line = focusedLineEdit())
            return !line->isReadOnly() && QGuiApplication::clipboard()->mimeData() &&
                   QGuiApplication::clipboard()->mimeData()->hasText();
        const QMimeData *mime = QGuiApplication::clipboard()->mimeData();
        return mime && mime->hasFormat(ItemType) && !lists.categories().isEmpty();
    }
    if (name == QLatin1String("undoEdit") || name == QLatin1String("redoEdit")) {
        QString title;
        const bool enabled =
            MGUndoManager::sharedInstance().validateState(name == QLatin1String("undoEdit"), &title);
        menuAction->setText(title);
        return enabled;
    }
    if (name == QLatin1String("cut") || name == QLatin1String("copy")) {
        QWidget *focus = QApplication::focusWidget();
        if (QLineEdit *line = qobject_cast<QLineEdit *>(focus))
            return line->hasSelectedText() && (name == QLatin1String("copy") || !line->isReadOnly());
        return focus == m_itemList && hasMethod(m_itemList, name.toLatin1().constData()) &&
               !lists.displayItems().isEmpty();
    }
    if (name == QLatin1String("selectAll"))
        return focusedLineEdit() != nullptr;
    return true;
}

void GRWindowController::updateMenus()
{
    m_menuUpdatePending = false;
    if (!m_undoSegments) // still being built
        return;
    for (QAction *menuAction : std::as_const(m_actions))
        menuAction->setEnabled(validateMenuItem(menuAction));
    m_categoryControl->setSegmentEnabled(1, validateMenuItem(action(QStringLiteral("delete"))));
    m_itemControl->setSegmentEnabled(0, validateMenuItem(action(QStringLiteral("addItem"))));
    m_itemControl->setSegmentEnabled(1, false);
    MGUndoManager &undo = MGUndoManager::sharedInstance();
    const bool modal = GRAppController::isModalUp();
    m_undoSegments->setEnabled(!modal && undo.isUndoAvailable(), 0);
    m_undoSegments->setEnabled(!modal && undo.isRedoAvailable(), 1);
}

// ---- Window delegate

bool GRWindowController::windowShouldClose()
{
    if (!databaseChanged())
        return true;
    const int answer = MGAlert::sharedInstance().giveAlertMessage(
        QStringLiteral("Save changes to the groceries database?"),
        QStringLiteral("Your changes will be lost if you don't save them."),
        {QStringLiteral("Save"), QStringLiteral("Cancel"), QStringLiteral("Don't Save")});
    switch (answer) {
    case 0:
        return SaveGroceries();
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
    const std::pair<QWidget *, QWidget *> pairs[] = {{m_categoryList, m_categoryControl},
                                                     {m_itemScroll, m_itemControl}};
    for (const auto &[view, control] : pairs) {
        if (!control)
            continue;
        QWidget *bar = control->parentWidget();
        const int viewX = view ? view->mapTo(this, QPoint(0, 0)).x() - bar->mapTo(this, QPoint(0, 0)).x() : 0;
        const int viewWidth = view ? view->width() : 0;
        const int x = CenteredControlX(viewX, viewWidth, control->width());
        if (control->x() == x)
            continue;
        control->hide();
        control->move(x, control->y());
        control->show();
    }
}

// A grid without a row would show nothing: the item area always keeps room for one cell.
void GRWindowController::keepOneItemRow()
{
    const int scrollBar = m_itemScroll->horizontalScrollBar()->sizeHint().height();
    const int pitch = int(std::ceil(GRItemListView::itemSize().height())) + 8;
    m_itemScroll->setMinimumHeight(pitch + scrollBar + 2 * m_itemScroll->frameWidth());
}

void GRWindowController::resizeEvent(QResizeEvent *event)
{
    QMainWindow::resizeEvent(event);
    windowDidResize();
}

void GRWindowController::showEvent(QShowEvent *event)
{
    QMainWindow::showEvent(event);
    windowDidResize();
    updateMenus();
}

bool GRWindowController::eventFilter(QObject *watched, QEvent *event)
{
    if (m_keyList && watched == m_keyList->viewport() &&
        (event->type() == QEvent::MouseButtonPress || event->type() == QEvent::MouseButtonDblClick)) {
        // The legend never takes a selection: a click sends the focus back to the groups table.
        m_categoryList->setFocus(Qt::MouseFocusReason);
        return true;
    }
    if ((watched == m_categoryList || watched == m_itemScroll || watched == m_categoryControlBar ||
         watched == m_itemControlBar) &&
        (event->type() == QEvent::Resize || event->type() == QEvent::Move))
        windowDidResize();
    return QMainWindow::eventFilter(watched, event);
}

// ---- Undo delegate

QString GRWindowController::descriptorName(quint32 descriptor)
{
    static const QStringList names = {
        QStringLiteral("Add Item"),        QStringLiteral("Change Item"),
        QStringLiteral("Cut Item"),        QStringLiteral("Paste Item"),
        QStringLiteral("Delete Item"),     QStringLiteral("Duplicate"),
        QStringLiteral("Move Item"),       QStringLiteral("Clear All Checkmarks"),
        QStringLiteral("Check Item"),      QStringLiteral("Reassign Store"),
        QStringLiteral("Add Category"),    QStringLiteral("Rename Category"),
        QStringLiteral("Delete Category"), QStringLiteral("Stores"),
        QStringLiteral("Add Store"),       QStringLiteral("Rename Store"),
        QStringLiteral("Delete Store"),
    };
    return descriptor < quint32(names.size()) ? names.at(descriptor) : QString();
}

static GRCategoryPtr contextCategory(const std::any &context)
{
    if (const GRCategoryPtr *category = std::any_cast<GRCategoryPtr>(&context))
        return *category;
    if (const GRCategory *const *raw = std::any_cast<GRCategory *>(&context)) {
        GRLists &lists = GRLists::shared();
        const qsizetype index = lists.indexOfCategory(*raw);
        return index >= 0 ? lists.categories().at(index) : nullptr;
    }
    return nullptr;
}

// A store snapshot holds copies, so after an older category snapshot comes back its items may
// name a store that is equal by GUID but no longer the live object: point them at the live one.
static void repointItemStores()
{
    GRLists &lists = GRLists::shared();
    if (lists.stores().isEmpty())
        return;
    QSet<const GRStore *> live;
    QHash<QString, GRStorePtr> byGuid;
    for (const GRStorePtr &store : std::as_const(lists.stores())) {
        live.insert(store.get());
        if (!byGuid.contains(store->guid()))
            byGuid.insert(store->guid(), store);
    }
    for (const GRCategoryPtr &category : std::as_const(lists.categories())) {
        for (const GRItemPtr &item : std::as_const(category->items())) {
            if (!live.contains(item->store().get()))
                item->setStore(
                    byGuid.value(item->store() ? item->store()->guid() : QString(), lists.stores().first()));
        }
    }
}

bool GRWindowController::setUndoAction(quint32 action, quint32 descriptor, std::any &data,
                                       const std::any &context)
{
    Q_UNUSED(descriptor)
    GRUndoRecord record;
    record.displayed = GRLists::shared().displayItems();
    record.selection = currentCategory();
    switch (action) {
    case 0:
        record.categories = CopyCategories(record.displayed);
        break;
    case 1:
        record.category = CopyCategory(contextCategory(context), record.displayed);
        if (!record.category)
            return false;
        break;
    case 2: {
        record.categories = CopyCategories(record.displayed);
        QHash<QString, GRStorePtr> byGuid;
        record.stores = CopyStores(byGuid);
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
    record.wasChanged = databaseChanged();
    data = std::move(record);
    g_dirty = true;
    updateEditedMark();
    return true;
}

bool GRWindowController::undoOrRedo(quint32 &action, quint32 descriptor, std::any &data, bool isRedo)
{
    Q_UNUSED(descriptor)
    Q_UNUSED(isRedo)
    GRUndoRecord *record = std::any_cast<GRUndoRecord>(&data);
    if (!record)
        return false;
    GRAppController &app = GRAppController::sharedInstance();
    GRLists &lists = GRLists::shared();
    const qint64 remembered = currentCategory();
    cancelOperation();
    switch (action) {
    case 2:
        app.setCategories(record->categories);
        app.setStores(record->stores);
        break;
    case 1: {
        if (!record->category)
            return false;
        QList<GRCategoryPtr> &categories = lists.categories();
        qsizetype index = -1;
        for (qsizetype i = 0; i < categories.size(); ++i) {
            if (categories.at(i)->guid() == record->category->guid()) {
                index = i;
                break;
            }
        }
        if (index < 0)
            return false;
        GRCategoryPtr live = categories.at(index);
        categories[index] = record->category;
        SortByName(categories);
        record->selection = lists.indexOfCategory(record->category.get());
        record->category = live;
        break;
    }
    case 0:
        app.setCategories(record->categories);
        break;
    default:
        return false;
    }
    repointItemStores();
    QList<GRItemPtr> shown = lists.displayItems();
    reloadCategoriesCore(record->selection < 0 ? 0 : record->selection);
    if (record->selection < 0)
        deselectAll();
    record->selection = remembered;
    lists.displayItems() = record->displayed;
    record->displayed = shown;
    post("mwgroceries.redoItems");
    post("mwgroceries.updateCats");
    post("mwgroceries.updateStores");
    std::swap(g_dirty, record->wasChanged);
    g_dirty = g_dirty || GRPrefController::sharedInstance().dirty();
    updateEditedMark();
    return true;
}

QString GRWindowController::undoActionName(quint32 descriptor, const std::any &data)
{
    Q_UNUSED(data)
    return descriptorName(descriptor);
}

void GRWindowController::freeUndoAction(quint32 action, quint32 descriptor, std::any &data, bool freeAll)
{
    Q_UNUSED(action)
    Q_UNUSED(descriptor)
    Q_UNUSED(freeAll)
    data.reset();
}

// ---- Undo/redo control

QList<QVariant> GRWindowController::tabsForSegments(MGToolbarSegments *segments)
{
    Q_UNUSED(segments)
    return {QVariant::fromValue(QIcon(QStringLiteral(":/images/UndoTool.png"))),
            QVariant::fromValue(QIcon(QStringLiteral(":/images/RedoTool.png")))};
}

void GRWindowController::tabWasSelected(qint64 tab, MGToolbarSegments *segments)
{
    Q_UNUSED(segments)
    if (tab == 0)
        undoEdit();
    else
        redoEdit();
}
