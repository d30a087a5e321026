#include "GRAppController.h"
#include "GRControlBar.h"
#include "GRDatabaseFile.h"
#include "GRGroupsController.h"
#include "GRGroupsTableModel.h"
#include "GRItem.h"
#include "GRItemDialog.h"
#include "GRItemListView.h"
#include "GRPrefController.h"
#include "GRSegmentedControl.h"
#include "GRStore.h"
#include "GRTestSupport.h"
#include "GRWindowController.h"
#include "MGAlert.h"
#include "MGToolbarSegments.h"
#include "MGUndoManager.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QLineEdit>
#include <QMimeData>
#include <QPushButton>
#include <QScrollArea>
#include <QSettings>
#include <QTableView>
#include <QTableWidget>
#include <QTemporaryDir>
#include <QTest>
#include <QToolButton>

#include <functional>
#include <memory>

namespace {

GRAppController &app()
{
    return GRAppController::sharedInstance();
}

QString dump()
{
    return GRTestSupport::dump(app().database());
}

// Sorted: the item list view orders the list on show itself.
QStringList shownNames()
{
    QStringList names;
    for (const GRItemPtr &item : app().displayItems())
        names << item->name();
    names.sort();
    return names;
}

// The drag text of the item of that name in the list on show ("#text": that text as it stands).
QByteArray dragText(const QString &item)
{
    if (item.startsWith('#'))
        return item.mid(1).toUtf8();
    const QList<GRItemPtr> &shown = app().displayItems();
    for (qsizetype i = 0; i < shown.size(); ++i)
        if (shown.at(i)->name() == item)
            return QByteArray::number(i);
    return "-1";
}

// The view's own drag handlers. The platform hands a drop only to a target that a drag entered,
// which the offscreen platform never starts; member pointers reach the handlers without one.
struct DropHandlers : QTableView
{
    using QTableView::dragMoveEvent;
    using QTableView::dropEvent;
};

// Drags the item over the groups table, dy points below the top of the row's cell, and drops it
// there; whether the view let the drag hover there.
bool dropAt(GRWindowController &w, const QString &item, int row, int dy)
{
    QMimeData data;
    data.setData("mwgroceries.drag", dragText(item));
    QTableView *table = w.categoryList();
    const QRect cell = table->visualRect(table->model()->index(row, 0));
    const QPointF at(cell.center().x(), cell.top() + dy);
    QDragMoveEvent move(at.toPoint(), Qt::MoveAction, &data, Qt::LeftButton, Qt::NoModifier);
    (table->*&DropHandlers::dragMoveEvent)(&move);
    QDropEvent drop(at, Qt::MoveAction, &data, Qt::LeftButton, Qt::NoModifier);
    (table->*&DropHandlers::dropEvent)(&drop);
    return move.isAccepted();
}

// A needed Yogurt of Bakery Bros in Pantry.
void copyYogurt()
{
    auto *data = new QMimeData;
    data->setData("mwgroceries.item", "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<item><name>Yogurt</name>"
                                      "<category>2</category><store>1</store><need>1</need></item>");
    QGuiApplication::clipboard()->setMimeData(data);
}

// clang-format off
struct RenameRow { bool stores; int row; QString name, after; int selected; }; // after: the names in order
struct DeleteRow { bool stores; int row, answer; QString question, after; }; // answer -1: no question
// dy: where on the row's cell it is dropped; -1 drops through the model with no row
struct DropRow { bool stores; QString item; int row, dy; QString after, shown; };
struct FindRow { bool stores; QString text, shown; int selected; };
// The row name of a command is its undo title.
struct CommandRow { bool stores; std::function<void(GRWindowController &)> command; };
struct QuitRow { int answer; bool closes, fileKept; };
// clang-format on

} // namespace

class TestWindowController : public QObject
{
    Q_OBJECT

    std::unique_ptr<GRWindowController> m_window;
    std::unique_ptr<QTemporaryDir> m_dir;
    int m_beeps = 0;

    GRWindowController &w() { return *m_window; }
    GRGroupsController &groups() { return *m_window->groups(); }
    QAction *act(const char *name)
    {
        w().updateMenus();
        return w().action(name);
    }
    void trigger(const char *name)
    {
        QVERIFY2(act(name) && act(name)->isEnabled(), name);
        w().action(name)->trigger();
    }
    void show(bool stores, int row)
    {
        w().action(stores ? "showStores" : "showCategories")->trigger();
        groups().selectRow(row);
        groups().tableViewSelectionDidChange();
    }
    // Everything undo and redo must bring back.
    QString checkState()
    {
        return QStringLiteral("%1 / shown %2 / row %3 / %4 / %5")
            .arg(dump(), shownNames().join(","))
            .arg(groups().selectedRow())
            .arg(groups().isStoreMode() ? "stores" : "categories",
                 w().isWindowModified() ? "edited" : "clean");
    }

private slots:
    void initTestCase()
    {
        GRTestSupport::initEnvironment();
        QApplication::setQuitOnLastWindowClosed(false);
        app().setKeyStrings();
    }

    void init()
    {
        m_window.reset();
        QGuiApplication::clipboard()->clear();
        GRTestSupport::resetState();
        m_dir = std::make_unique<QTemporaryDir>();
        g_databasePath = m_dir->filePath("Groceries.xml");
        QVERIFY(GRTestSupport::writeFile(g_databasePath, GRTestSupport::sampleDatabase()));
        app().database().clear();
        app().displayItems().clear();
        QVERIFY(ReadModernDatabaseData(GRTestSupport::sampleDatabase(), app().database()));
        GRPrefController::sharedInstance().setConfirmDelete(true);
        m_window = std::make_unique<GRWindowController>(app().database(), app().displayItems());
        app().attachWindow(m_window.get());
        m_window->show();
        m_window->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
        m_beeps = 0;
        MGUndoManager::setBeepHandler([this] { ++m_beeps; });
    }

    void rename_data()
    {
        QTest::addColumn<RenameRow>("r");
        // clang-format off
        QTest::newRow("re-sorted, selected") << RenameRow{false, 0, "Zucchini", "Fruit,Pantry,Zucchini", 2};
        QTest::newRow("case-insensitive order") << RenameRow{false, 2, "apricots", "apricots,Dairy,Fruit", 0};
        QTest::newRow("empty ignored") << RenameRow{false, 1, "", "Dairy,Fruit,Pantry", 1};
        QTest::newRow("store re-sorted") << RenameRow{true, 2, "Aldo", "Corner Shop,Aldo,Bakery Bros", 0};
        QTest::newRow("store 0 refused") << RenameRow{true, 0, "Other", "Corner Shop,Bakery Bros,Market", 0};
        // clang-format on
    }

    void rename()
    {
        QFETCH(RenameRow, r);
        show(r.stores, r.row);
        const QString before = dump();
        GRGroupsTableModel *model = groups().model();
        model->setData(model->index(r.row, 0), r.name);

        QStringList names;
        for (int i = 0; i < model->rowCount(); ++i)
            names << model->index(i, 0).data().toString();
        QCOMPARE(names.join(','), r.after);
        QCOMPARE(groups().selectedRow(), qint64(r.selected));
        const bool changed = dump() != before;
        QCOMPARE(w().isWindowModified(), changed);
        QCOMPARE(MGUndoManager::sharedInstance().isUndoAvailable(), changed);
        if (r.stores && changed) // every item stays with its store
            QVERIFY(dump().contains("Cheese@Aldo") && dump().contains("Apples@Aldo*"));
    }

    void deleteGroup_data()
    {
        QTest::addColumn<DeleteRow>("r");
        // clang-format off
        QString ask = "Are you sure you want to delete the %1?\n\nIts items will be reassigned to \"%2\".";
        QTest::newRow("first to second") << DeleteRow{false, 0, 0, ask.arg("category \"Dairy\"", "Fruit"),
            "Fruit: Apples@Market*, Bananas@Corner Shop, Milk@Corner Shop*, Buttermilk@Bakery Bros,"
            " Cheese@Market | Pantry: Flour@Bakery Bros / Corner Shop, Bakery Bros, Market"};
        QTest::newRow("other to first") << DeleteRow{false, 2, 0, ask.arg("category \"Pantry\"", "Dairy"),
            "Dairy: Milk@Corner Shop*, Buttermilk@Bakery Bros, Cheese@Market, Flour@Bakery Bros"
            " | Fruit: Apples@Market*, Bananas@Corner Shop / Corner Shop, Bakery Bros, Market"};
        QTest::newRow("cancelled") << DeleteRow{false, 1, 1, ask.arg("category \"Fruit\"", "Dairy"), ""};
        QTest::newRow("to store 0") << DeleteRow{true, 1, 0, ask.arg("store \"Bakery Bros\"", "Corner Shop"),
            "Dairy: Milk@Corner Shop*, Buttermilk@Corner Shop, Cheese@Market | Fruit: Apples@Market*,"
            " Bananas@Corner Shop | Pantry: Flour@Corner Shop / Corner Shop, Market"};
        QTest::newRow("store 0 never") << DeleteRow{true, 0, -1, "", ""};
        // clang-format on
    }

    // Through the "-" under the groups table, which follows Edit > Delete's validation.
    void deleteGroup()
    {
        QFETCH(DeleteRow, r);
        show(r.stores, r.row);
        const QString before = dump();
        MGAlert &alert = MGAlert::sharedInstance();
        if (r.answer >= 0)
            alert.setNextAnswer(r.answer);
        QCOMPARE(act("deleteSelection")->isEnabled(), r.answer >= 0);
        QCOMPARE(w().categoryControl()->isSegmentEnabled(1), r.answer >= 0);
        w().categoryControl()->button(1)->click();

        QCOMPARE(alert.shownAlerts().size(), r.answer >= 0 ? 1 : 0);
        if (r.answer >= 0)
            QCOMPARE(alert.shownAlerts().first().moreInfo, r.question);
        QCOMPARE(dump(), r.after.isEmpty() ? before : r.after);
        QCOMPARE(MGUndoManager::sharedInstance().isUndoAvailable(), !r.after.isEmpty());
        QCOMPARE(groups().selectedRow(), r.after.isEmpty() ? qint64(r.row) : 0);
    }

    // Edit > Delete goes to the focused view: the selected item without a question, the selected
    // text, the selected group; the Delete key deletes a group only from the table.
    void deleteGoesToTheFocus()
    {
        w().itemList()->setFocus();
        trigger("deleteSelection");
        QCOMPARE(shownNames(), (QStringList{"Cheese", "Milk"}));
        QVERIFY(MGAlert::sharedInstance().shownAlerts().isEmpty());

        GRPrefController::sharedInstance().setConfirmDelete(false);
        const QString before = dump();
        w().searchField()->setFocus();
        w().searchField()->setText("zz");
        w().searchField()->selectAll();
        trigger("deleteSelection");
        QCOMPARE(w().searchField()->text(), QString());
        QCOMPARE(dump(), before);

        w().categoryList()->setFocus();
        QTest::keyClick(w().categoryList(), Qt::Key_Delete);
        QCOMPARE(app().database().categories().size(), 2);
        trigger("deleteSelection");
        QCOMPARE(app().database().categories().size(), 1);
        QVERIFY(!act("deleteSelection")->isEnabled()); // the last category stays
    }

    // Tab leads from the groups to the items and Copy takes the first by name; Paste goes into the
    // selected category, or with none selected into the item's own.
    void copyAndPaste()
    {
        QVERIFY(!act("paste")->isEnabled());
        w().categoryList()->setFocus();
        QTest::keyClick(w().categoryList(), Qt::Key_Tab);
        QCOMPARE(QApplication::focusWidget(), w().itemList());
        trigger("copy");
        QCOMPARE(QGuiApplication::clipboard()->text(), "Buttermilk");
        show(false, 1);
        trigger("paste");
        QVERIFY(dump().contains("| Fruit: Apples@Market*, Bananas@Corner Shop, Buttermilk@Bakery Bros |"));
        QVERIFY(dump().startsWith("Dairy: Milk@Corner Shop*, Buttermilk"));
        QCOMPARE(w().itemList()->selectedItem(), 2ull); // the pasted item, after sorting
        copyYogurt();
        trigger("showNeedful");
        QCOMPARE(shownNames(), (QStringList{"Apples", "Milk"}));
        QCOMPARE(groups().selectedRow(), -1);
        QVERIFY(!act("renameCategory")->isEnabled());
        trigger("paste");
        QVERIFY(dump().contains("| Pantry: Flour@Bakery Bros, Yogurt@Bakery Bros* /"));
        trigger("showAll");
        QCOMPARE(shownNames().size(), 8);
    }

    // Add Item opens the sheet on the window, in the selected category.
    void addItemSheet()
    {
        show(false, 1);
        QVERIFY(w().itemControl()->isSegmentEnabled(0));
        w().itemControl()->button(0)->click();
        auto *sheet = w().findChild<GRItemDialog *>();
        QVERIFY(sheet && sheet->isVisible() && sheet->windowModality() == Qt::WindowModal);
        QTest::keyClicks(sheet->nameField(), "Pears");
        sheet->okButton()->click();
        QVERIFY(dump().contains("| Fruit: Apples@Market*, Bananas@Corner Shop, Pears@Corner Shop |"));
        QCOMPARE(shownNames(), (QStringList{"Apples", "Bananas", "Pears"}));
        QCOMPARE(app().displayItems().value(qsizetype(w().itemList()->selectedItem()))->name(), "Pears");
    }

    void drops_data()
    {
        QTest::addColumn<DropRow>("r");
        // clang-format off
        QTest::newRow("onto a category") << DropRow{false, "Buttermilk", 1, 12,
            "Dairy: Milk@Corner Shop*, Cheese@Market | Fruit: Apples@Market*, Bananas@Corner Shop,"
            " Buttermilk@Bakery Bros | Pantry: Flour@Bakery Bros / Corner Shop, Bakery Bros, Market",
            "Cheese,Milk"};
        QTest::newRow("onto a store") << DropRow{true, "Milk", 2, 12,
            "Dairy: Milk@Market*, Buttermilk@Bakery Bros, Cheese@Market | Fruit: Apples@Market*,"
            " Bananas@Corner Shop | Pantry: Flour@Bakery Bros / Corner Shop, Bakery Bros, Market", "Bananas"};
        QTest::newRow("above a row") << DropRow{false, "Milk", 1, 1, "", ""};
        QTest::newRow("own category") << DropRow{false, "Milk", 0, 12, "", ""};
        QTest::newRow("own store") << DropRow{true, "Bananas", 0, 12, "", ""};
        QTest::newRow("bad index") << DropRow{false, "#7", 1, 12, "", ""};
        QTest::newRow("not a number") << DropRow{false, "#x", 1, 12, "", ""};
        QTest::newRow("past the rows") << DropRow{false, "Milk", 3, -1, "", ""};
        // clang-format on
    }

    void drops()
    {
        QFETCH(DropRow, r);
        show(r.stores, 0);
        const QString before = dump();
        const QStringList shownBefore = shownNames();
        if (r.dy >= 0) {
            QCOMPARE(dropAt(w(), r.item, r.row, r.dy), r.dy > 4); // only right on a row
        } else {
            QMimeData data;
            data.setData("mwgroceries.drag", dragText(r.item));
            GRGroupsTableModel *model = groups().model();
            QVERIFY(!model->dropMimeData(&data, Qt::MoveAction, -1, 0, model->index(r.row, 0)));
        }
        const bool accepted = !r.after.isEmpty();
        QCOMPARE(dump(), accepted ? r.after : before);
        QCOMPARE(shownNames(), accepted ? r.shown.split(',') : shownBefore);
        QCOMPARE(MGUndoManager::sharedInstance().isUndoAvailable(), accepted);
    }

    void find_data()
    {
        QTest::addColumn<FindRow>("r");
        QTest::newRow("store mode searches categories") << FindRow{true, "an", "Bananas", -1};
        QTest::newRow("nothing") << FindRow{false, "zzz", "", -1};
        QTest::newRow("empty selects first") << FindRow{false, "x\b", "Buttermilk,Cheese,Milk", 0};
    }

    void find()
    {
        QFETCH(FindRow, r);
        show(r.stores, 2);
        trigger("find");
        QCOMPARE(QApplication::focusWidget(), w().searchField());
        QTest::keyClicks(w().searchField(), r.text);
        QCOMPARE(shownNames().join(','), r.shown);
        QCOMPARE(groups().selectedRow(), qint64(r.selected));
        QVERIFY(!MGUndoManager::sharedInstance().isUndoAvailable());
    }

    // A new group opens its name editor; the mode follows the kind of group added.
    void addAndRenameThroughEditor()
    {
        show(true, 0);
        trigger("addCategory");
        QVERIFY(!groups().isStoreMode());
        auto *editor = qobject_cast<QLineEdit *>(QApplication::focusWidget());
        QVERIFY(editor && editor->selectedText() == "New category");
        QTest::keyClick(editor, Qt::Key_Escape);

        trigger("renameCategory");
        editor = qobject_cast<QLineEdit *>(QApplication::focusWidget());
        QVERIFY(editor);
        QTest::keyClicks(editor, "Apples and pears");
        QTest::keyClick(editor, Qt::Key_Return);
        QTRY_COMPARE(groups().selectedRow(), qint64(0));
        QCOMPARE(dump().section(" | ", 0, 0), QString("Apples and pears: "));

        trigger("addStore");
        QVERIFY(groups().isStoreMode() && w().action("showStores")->isChecked());
        QCOMPARE(app().database().stores().last()->name(), QString("New store"));
    }

    void commands_data()
    {
        QTest::addColumn<CommandRow>("r");
        using W = GRWindowController;
        using R = CommandRow;
        const auto groupsOf = [](W &w) -> GRGroupsController & { return *w.groups(); };
        // clang-format off
        QTest::newRow("Clear All Checkmarks") << R{false, [](W &w) { w.resetChecks(); }};
        QTest::newRow("Rename Category") << R{false, [=](W &w) { groupsOf(w).setObjectValue("Apricots", 1); }};
        QTest::newRow("Rename Store") << R{true, [=](W &w) { groupsOf(w).setObjectValue("Aldo", 1); }};
        QTest::newRow("Delete Category") << R{false, [=](W &w) { groupsOf(w).deleteGroup(); }};
        QTest::newRow("Delete Store") << R{true, [=](W &w) { groupsOf(w).deleteStore(2); }};
        QTest::newRow("Move Item") << R{false, [](W &w) { dropAt(w, "Apples", 2, 12); }};
        QTest::newRow("Change Item") << R{true, [](W &w) { dropAt(w, "Bananas", 2, 12); }};
        QTest::newRow("Add Category") << R{false, [=](W &w) { groupsOf(w).addCategory(); groupsOf(w).cancelOperation(); }};
        QTest::newRow("Add Store") << R{true, [=](W &w) { groupsOf(w).addStore(); groupsOf(w).cancelOperation(); }};
        QTest::newRow("Paste Item") << R{false, [](W &w) { copyYogurt(); w.paste(); }};
        // The item grid's commands act on its selected item, Apples.
        const auto grid = [](Qt::Key key) {
            return [key](W &w) { w.itemList()->setFocus(); QTest::keyClick(w.itemList(), key); };
        };
        const auto menu = [](const char *name) {
            return [name](W &w) { w.itemList()->setFocus(); w.updateMenus(); w.action(name)->trigger(); };
        };
        QTest::newRow("Check Item") << R{false, grid(Qt::Key_Space)};
        QTest::newRow("Reassign Store") << R{false, grid(Qt::Key_F1)};
        QTest::newRow("Delete Item") << R{false, menu("deleteSelection")};
        QTest::newRow("Cut Item") << R{false, menu("cut")};
        QTest::newRow("Duplicate") << R{false, menu("duplicateItem")};
        QTest::newRow("Add Item") << R{false, [](W &w) {
            GRItemDialog *sheet = w.editItem(nullptr);
            sheet->nameField()->setText("Kiwi");
            emit sheet->nameField()->textEdited("Kiwi");
            sheet->accept(); }};
        // clang-format on
    }

    // Each command reaches the core and the views follow: the menu names the step, undo through
    // the menu and redo through the toolbar give back the states before and after it. With the
    // undo step refused, a command leaves everything as it was; only deleting an item goes on.
    void commands()
    {
        QFETCH(CommandRow, r);
        const QString tag = QTest::currentDataTag();
        MGAlert::sharedInstance().setNextAnswer(0);
        MGAlert::sharedInstance().setNextAnswer(0);
        show(r.stores, r.stores ? 0 : 1); // a change to the stores selects the first
        const QString before = checkState(), data = dump();
        r.command(w());
        const QString after = checkState();
        QVERIFY(after != before);
        QCOMPARE(act("undoEdit")->text(), "Undo " + tag);
        trigger("undoEdit");
        QCOMPARE(checkState(), before);
        QCOMPARE(act("redoEdit")->text(), "Redo " + tag);
        w().tabWasSelected(1, w().undoSegments());
        QCOMPARE(checkState(), after);

        trigger("undoEdit");
        MGUndoManager::sharedInstance().setBufferSize(0);
        r.command(w());
        const bool deletes = tag == "Delete Item" || tag == "Cut Item";
        QCOMPARE(dump(), deletes ? QString(data).replace("Apples@Market*, ", "") : data);
        QVERIFY(!w().isWindowModified());
    }

    // Undoing back to the saved state clears the edited mark; a save clears the history. The undo
    // and redo segments stay enabled: with nothing to do, a click beeps.
    void undoHistory()
    {
        MGToolbarSegments *segments = w().undoSegments();
        QCOMPARE(act("undoEdit")->text() + act("redoEdit")->text(), QString("UndoRedo"));
        QVERIFY(!w().isWindowModified() && !act("undoEdit")->isEnabled() &&
                !act("saveDocument")->isEnabled());
        w().tabWasSelected(0, segments);
        w().tabWasSelected(1, segments);
        QCOMPARE(m_beeps, 2);
        trigger("resetChecks");
        QVERIFY(w().isWindowModified() && act("saveDocument")->isEnabled());
        w().tabWasSelected(0, segments);
        QVERIFY(!w().isWindowModified());
        trigger("redoEdit");
        QVERIFY(w().isWindowModified());
        trigger("saveDocument");
        QVERIFY(!w().isWindowModified() && !act("undoEdit")->isEnabled() && !act("redoEdit")->isEnabled() &&
                !act("saveDocument")->isEnabled());
        QVERIFY(segments->isTabEnabled(0) && segments->isTabEnabled(1) && m_beeps == 2);
        QVERIFY(!GRTestSupport::readFile(g_databasePath).contains("<need>"));
    }

    void quitQuestion_data()
    {
        QTest::addColumn<QuitRow>("r");
        QTest::newRow("clean: no question") << QuitRow{-1, true, true};
        QTest::newRow("save") << QuitRow{0, true, false};
        QTest::newRow("cancel") << QuitRow{1, false, true};
        QTest::newRow("don't save") << QuitRow{2, true, true};
    }

    // Closing the window and logging out of the session ask the same question.
    void quitQuestion()
    {
        QFETCH(QuitRow, r);
        GRPrefController::sharedInstance().setShowKeys(false);
        MGAlert &alert = MGAlert::sharedInstance();
        for (const bool logout : {false, true}) {
            if (r.answer >= 0) { // -1: nothing changed, so no question
                groups().setObjectValue(logout ? "Logout" : "Close", 0);
                alert.setNextAnswer(r.answer);
            }
            alert.clearShownAlerts();
            const QByteArray file = GRTestSupport::readFile(g_databasePath);
            QCOMPARE(logout ? app().commitData(true) : w().close(), r.closes);
            QCOMPARE(GRTestSupport::alerts(),
                     r.answer < 0
                         ? QStringList()
                         : QStringList{"Save changes to the groceries database?|Your changes will be lost "
                                       "if you don't save them.|Save|Cancel|Don't Save"});
            QCOMPARE(GRTestSupport::readFile(g_databasePath) == file, r.fileKept);
            QCOMPARE(g_dirty, !r.closes);
            w().show();
        }
        // A session that won't let us ask keeps unsaved edits by refusing.
        trigger("resetChecks");
        QCOMPARE(app().commitData(false), false);
        QVERIFY(g_dirty);
        app().applicationWillTerminate();
        QCOMPARE(QSettings("Marlowick", "Groceries").value("mwgroceries.showKeys").toBool(), false);
    }

    void legend()
    {
        QTableWidget *keys = w().keyList();
        QCOMPARE(keys->item(0, 0)->text(), QString(QChar(0x301C)));
        QCOMPARE(keys->item(5, 1)->text(), QString("Organic"));
        w().searchField()->setFocus();
        QTest::mouseClick(keys->viewport(), Qt::LeftButton, {},
                          keys->visualItemRect(keys->item(2, 1)).center());
        QCOMPARE(QApplication::focusWidget(), w().categoryList());
        QVERIFY(keys->selectedItems().isEmpty());

        const bool shown = GRPrefController::sharedInstance().showKeys();
        QTest::mouseClick(w().keyDisclosureButton(), Qt::LeftButton);
        QCOMPARE(GRPrefController::sharedInstance().showKeys(), !shown);
        QCOMPARE(w().action("toggleKeys")->isChecked(), !shown);
        QTRY_COMPARE(keys->isVisible(), !shown);
    }

    void centredControls()
    {
        // x, view width, control width, expected: odd widths round down, a wider control goes left
        const int rows[][4] = {{10, 200, 60, 80}, {0, 101, 50, 25}, {20, 40, 61, 9}, {0, 0, 30, -15}};
        for (const auto &r : rows)
            QCOMPARE(CenteredControlX(r[0], r[1], r[2]), r[3]);
        const auto x = [this](QWidget *widget) { return widget->mapTo(&w(), QPoint()).x(); };
        QCOMPARE(x(w().categoryControl()),
                 CenteredControlX(x(w().categoryList()), w().categoryList()->width(),
                                  w().categoryControl()->width()));
        QCOMPARE(x(w().itemControl()), CenteredControlX(x(w().itemScroll()), w().itemScroll()->width(),
                                                        w().itemControl()->width()));
    }
};

QTEST_MAIN(TestWindowController)
#include "tst_windowcontroller.moc"
