#include "GRAppController.h"
#include "GRCategory.h"
#include "GRDatabaseFile.h"
#include "GRGroupsTableModel.h"
#include "GRItem.h"
#include "GRLists.h"
#include "GRPrefController.h"
#include "GRSegmentedControl.h"
#include "GRStore.h"
#include "GRTestSupport.h"
#include "GRWindowController.h"
#include "MGAlert.h"
#include "MGUndoManager.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QLineEdit>
#include <QMimeData>
#include <QRandomGenerator>
#include <QSettings>
#include <QTableView>
#include <QTableWidget>
#include <QTemporaryDir>
#include <QTest>
#include <QToolButton>

#include <functional>
#include <memory>

namespace {

// Stores: Corner Shop, Bakery Bros, Market. Categories: Dairy, Fruit, Pantry.
const QByteArray Database = R"(<?xml version="1.0" encoding="UTF-8"?><groceries version="1"><stores>
<store><name>Corner Shop</name></store><store><name>Bakery Bros</name></store>
<store><name>Market</name></store></stores><categories>
<category><name>Dairy</name></category><category><name>Fruit</name></category>
<category><name>Pantry</name></category></categories><items>
<item><name>Milk</name><category>0</category><store>0</store><need>1</need></item>
<item><name>Buttermilk</name><category>0</category><store>1</store></item>
<item><name>Cheese</name><category>0</category><store>2</store></item>
<item><name>Apples</name><category>1</category><store>2</store><need>1</need></item>
<item><name>Bananas</name><category>1</category><store>0</store></item>
<item><name>Flour</name><category>2</category><store>1</store></item></items></groceries>)";

// The whole database: "Category: item@store*, ...|..." (* = needed), then the stores.
QString dump()
{
    QStringList categories;
    for (const GRCategoryPtr &category : GRLists::shared().categories()) {
        QStringList items;
        for (const GRItemPtr &item : category->items()) {
            items << item->name() + '@' + (item->store() ? item->store()->name() : QString()) +
                         (item->isNeeded() ? "*" : "");
            if (item->category() != category)
                items.last() += "!wrong-category";
        }
        categories << category->name() + ": " + items.join(", ");
    }
    QStringList stores;
    for (const GRStorePtr &store : GRLists::shared().stores())
        stores << store->name();
    return categories.join(" | ") + " / " + stores.join(", ");
}

// Sorted: the item list view orders the list on show itself.
QStringList shownNames()
{
    QStringList names;
    for (const GRItemPtr &item : GRLists::shared().displayItems())
        names << item->name();
    names.sort();
    return names;
}

// Drops the item of that name in the list on show ("#text": that drag text as it stands) onto a row,
// or above it when on is false.
bool drop(GRWindowController &w, const QString &item, int row, bool on = true)
{
    QByteArray index = item.startsWith('#') ? item.mid(1).toUtf8() : "-1";
    const QList<GRItemPtr> &shown = GRLists::shared().displayItems();
    for (qsizetype i = 0; i < shown.size(); ++i)
        if (shown.at(i)->name() == item)
            index = QByteArray::number(i);
    QMimeData data;
    data.setData("mwgroceries.drag", index);
    GRGroupsTableModel *model = w.groupsModel();
    return model->dropMimeData(&data, Qt::MoveAction, on ? -1 : row, 0,
                               on ? model->index(row, 0) : QModelIndex());
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
// item: from the list on show, Dairy's in category mode, Corner Shop's in store mode
struct DropRow { bool stores; QString item; int row; bool on; QString after, shown; };
struct FindRow { bool stores; QString text, shown; int selected; };
// The row name of a round trip is its undo title.
struct RoundTripRow { bool stores; std::function<void(GRWindowController &)> command; };
struct QuitRow { int answer; bool closes, fileKept; };
// clang-format on

} // namespace

class TestWindowController : public QObject
{
    Q_OBJECT

    std::unique_ptr<GRWindowController> m_window;
    std::unique_ptr<QTemporaryDir> m_dir;

    GRWindowController &w() { return *m_window; }
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
        w().selectRow(row);
        w().tableViewSelectionDidChange();
    }
    // Everything undo and redo must bring back.
    QString checkState()
    {
        return QStringLiteral("%1 / shown %2 / row %3 / %4 / %5")
            .arg(dump(), shownNames().join(","))
            .arg(w().selectedRow())
            .arg(w().isStoreMode() ? "stores" : "categories", w().isWindowModified() ? "edited" : "clean");
    }

private slots:
    void initTestCase()
    {
        GRTestSupport::initEnvironment();
        QApplication::setQuitOnLastWindowClosed(false);
        GRAppController::sharedInstance().setKeyStrings();
    }

    void init()
    {
        m_window.reset();
        QGuiApplication::clipboard()->clear();
        GRTestSupport::resetDatabase();
        m_dir = std::make_unique<QTemporaryDir>();
        g_databasePath = m_dir->filePath("Groceries.xml");
        QVERIFY(GRTestSupport::writeFile(g_databasePath, Database));
        QVERIFY(ReadModernDatabaseData(Database));
        GRPrefController::sharedInstance().setConfirmDelete(true);
        m_window = std::make_unique<GRWindowController>();
        m_window->show();
        m_window->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
        MGUndoManager::setBeepHandler([] {});
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
        GRGroupsTableModel *model = w().groupsModel();
        model->setData(model->index(r.row, 0), r.name);

        QStringList names;
        for (int i = 0; i < model->rowCount(); ++i)
            names << model->index(i, 0).data().toString();
        QCOMPARE(names.join(','), r.after);
        QCOMPARE(w().selectedRow(), qint64(r.selected));
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

    void deleteGroup()
    {
        QFETCH(DeleteRow, r);
        show(r.stores, r.row);
        const QString before = dump();
        MGAlert &alert = MGAlert::sharedInstance();
        if (r.answer >= 0)
            alert.setNextAnswer(r.answer);
        QCOMPARE(act("delete")->isEnabled(), r.answer >= 0);
        QCOMPARE(w().categoryControl()->isSegmentEnabled(1), r.answer >= 0);
        w().deleteGroup();

        QCOMPARE(alert.shownAlerts().size(), r.answer >= 0 ? 1 : 0);
        if (r.answer >= 0)
            QCOMPARE(alert.shownAlerts().first().moreInfo, r.question);
        QCOMPARE(dump(), r.after.isEmpty() ? before : r.after);
        QCOMPARE(MGUndoManager::sharedInstance().isUndoAvailable(), !r.after.isEmpty());
        QCOMPARE(w().selectedRow(), r.after.isEmpty() ? qint64(r.row) : 0);
    }

    void deleteLastCategoryRefused()
    {
        GRPrefController::sharedInstance().setConfirmDelete(false);
        w().categoryList()->setFocus();
        QTest::keyClick(w().categoryList(), Qt::Key_Delete);
        QCOMPARE(GRLists::shared().categories().size(), 2);
        w().deleteCategory(1);
        QVERIFY(!act("delete")->isEnabled());
        w().deleteCategory(0);
        QCOMPARE(GRLists::shared().categories().size(), 1);
    }

    void drops_data()
    {
        QTest::addColumn<DropRow>("r");
        // clang-format off
        QTest::newRow("onto a category") << DropRow{false, "Buttermilk", 1, true,
            "Dairy: Milk@Corner Shop*, Cheese@Market | Fruit: Apples@Market*, Bananas@Corner Shop,"
            " Buttermilk@Bakery Bros | Pantry: Flour@Bakery Bros / Corner Shop, Bakery Bros, Market",
            "Cheese,Milk"};
        QTest::newRow("onto a store") << DropRow{true, "Milk", 2, true,
            "Dairy: Milk@Market*, Buttermilk@Bakery Bros, Cheese@Market | Fruit: Apples@Market*,"
            " Bananas@Corner Shop | Pantry: Flour@Bakery Bros / Corner Shop, Bakery Bros, Market", "Bananas"};
        QTest::newRow("own category") << DropRow{false, "Milk", 0, true, "", ""};
        QTest::newRow("own store") << DropRow{true, "Bananas", 0, true, "", ""};
        QTest::newRow("above a row") << DropRow{false, "Milk", 1, false, "", ""};
        QTest::newRow("past the rows") << DropRow{false, "Milk", 3, true, "", ""};
        QTest::newRow("bad index") << DropRow{false, "#7", 1, true, "", ""};
        QTest::newRow("not a number") << DropRow{false, "#x", 1, true, "", ""};
        // clang-format on
    }

    void drops()
    {
        QFETCH(DropRow, r);
        show(r.stores, 0);
        const QString before = dump();
        const QStringList shownBefore = shownNames();
        const bool accepted = drop(w(), r.item, r.row, r.on);

        QCOMPARE(accepted, !r.after.isEmpty());
        QCOMPARE(dump(), accepted ? r.after : before);
        QCOMPARE(shownNames(), accepted ? r.shown.split(',') : shownBefore);
        QCOMPARE(MGUndoManager::sharedInstance().isUndoAvailable(), accepted);
    }

    void find_data()
    {
        QTest::addColumn<FindRow>("r");
        QTest::newRow("substring, any case") << FindRow{false, "MILK", "Buttermilk,Milk", -1};
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
        QCOMPARE(w().selectedRow(), qint64(r.selected));
        QVERIFY(!MGUndoManager::sharedInstance().isUndoAvailable());
    }

    // Paste goes into the selected category, or with none selected into the item's own.
    void showAndPaste()
    {
        QVERIFY(!act("paste")->isEnabled());
        copyYogurt();
        trigger("paste");
        QVERIFY(dump().startsWith(
            "Dairy: Milk@Corner Shop*, Buttermilk@Bakery Bros, Cheese@Market, Yogurt@Bakery Bros* |"));
        trigger("showNeedful");
        QCOMPARE(shownNames(), (QStringList{"Apples", "Milk", "Yogurt"}));
        QCOMPARE(w().selectedRow(), -1);
        QVERIFY(!act("renameCategory")->isEnabled());
        trigger("paste");
        QVERIFY(dump().contains("| Pantry: Flour@Bakery Bros, Yogurt@Bakery Bros* /"));
        trigger("showAll");
        QCOMPARE(shownNames().size(), 8);
    }

    // A new group opens its name editor; the mode follows the kind of group added.
    void addAndRenameThroughEditor()
    {
        show(true, 0);
        trigger("addCategory");
        QVERIFY(!w().isStoreMode());
        auto *editor = qobject_cast<QLineEdit *>(QApplication::focusWidget());
        QVERIFY(editor && editor->selectedText() == "New category");
        QTest::keyClick(editor, Qt::Key_Escape);

        trigger("renameCategory");
        editor = qobject_cast<QLineEdit *>(QApplication::focusWidget());
        QVERIFY(editor);
        QTest::keyClicks(editor, "Apples and pears");
        QTest::keyClick(editor, Qt::Key_Return);
        QTRY_COMPARE(w().selectedRow(), qint64(0));
        QCOMPARE(dump().section(" | ", 0, 0), QString("Apples and pears: "));

        trigger("addStore");
        QVERIFY(w().isStoreMode());
        QCOMPARE(GRLists::shared().stores().last()->name(), QString("New store"));
    }

    void undoRoundTrip_data()
    {
        QTest::addColumn<RoundTripRow>("r");
        using W = GRWindowController;
        using R = RoundTripRow;
        // clang-format off
        QTest::newRow("Clear All Checkmarks") << R{false, [](W &w) { w.resetChecks(); }};
        QTest::newRow("Rename Category") << R{false, [](W &w) { w.setObjectValue("Apricots", 1); }};
        QTest::newRow("Rename Store") << R{true, [](W &w) { w.setObjectValue("Aldo", 1); }};
        QTest::newRow("Delete Category") << R{false, [](W &w) { w.deleteGroup(); }};
        QTest::newRow("Delete Store") << R{true, [](W &w) { w.deleteStore(2); }};
        QTest::newRow("Move Item") << R{false, [](W &w) { drop(w, "Apples", 2); }};
        QTest::newRow("Change Item") << R{true, [](W &w) { drop(w, "Bananas", 2); }};
        QTest::newRow("Add Category") << R{false, [](W &w) { w.addCategory(); w.cancelOperation(); }};
        QTest::newRow("Add Store") << R{true, [](W &w) { w.addStore(); w.cancelOperation(); }};
        QTest::newRow("Paste Item") << R{false, [](W &w) { copyYogurt(); w.paste(); }};
        // clang-format on
    }

    // Undo gives back exactly the state before the command; redo then exactly the state after it.
    void undoRoundTrip()
    {
        QFETCH(RoundTripRow, r);
        MGAlert::sharedInstance().setNextAnswer(0);
        show(r.stores, r.stores ? 0 : 1); // a change to the stores selects the first
        const QString before = checkState();
        r.command(w());
        const QString after = checkState();
        QVERIFY(after != before);
        QCOMPARE(act("undoEdit")->text(), QString("Undo ") + QTest::currentDataTag());
        trigger("undoEdit");
        QCOMPARE(checkState(), before);
        QCOMPARE(act("redoEdit")->text(), QString("Redo ") + QTest::currentDataTag());
        trigger("redoEdit");
        QCOMPARE(checkState(), after);
    }

    // Undoing back to the saved state clears the edited mark, 26 actions keep 25, a save clears the history.
    void undoHistory()
    {
        QCOMPARE(act("undoEdit")->text() + act("redoEdit")->text(), QString("UndoRedo"));
        QVERIFY(!w().isWindowModified() && !act("undoEdit")->isEnabled() &&
                !act("saveDocument")->isEnabled());
        trigger("resetChecks");
        QVERIFY(w().isWindowModified() && act("saveDocument")->isEnabled());
        trigger("undoEdit");
        QVERIFY(!w().isWindowModified());
        trigger("redoEdit");
        QVERIFY(w().isWindowModified());
        for (int i = 1; i < 26; ++i)
            trigger("resetChecks");
        int undos = 0;
        for (; act("undoEdit")->isEnabled() && undos < 30; ++undos)
            trigger("undoEdit");
        QCOMPARE(undos, 25);
        QVERIFY(w().isWindowModified()); // the oldest step, which made the change, is gone
        trigger("saveDocument");
        QVERIFY(!w().isWindowModified());
        QVERIFY(!act("undoEdit")->isEnabled() && !act("redoEdit")->isEnabled() &&
                !act("saveDocument")->isEnabled());
        QVERIFY(!GRTestSupport::readFile(g_databasePath).contains("<need>"));
    }

    // Random edits, undos and redos keep every record reachable and every back-reference right.
    void randomEditsKeepRecordsConsistent()
    {
        GRPrefController::sharedInstance().setConfirmDelete(false);
        QRandomGenerator random(20240611);
        GRLists &lists = GRLists::shared();
        int row = 0;
        // clang-format off
        const std::function<void()> steps[] = {
            [&] { w().resetChecks(); },
            [&] { w().setObjectValue(QString("N%1").arg(random.bounded(50)), row); },
            [&] { w().deleteGroup(); },
            [&] { w().addCategory(); w().cancelOperation(); },
            [&] { w().addStore(); w().cancelOperation(); },
            [&] { drop(w(), "#" + QString::number(random.bounded(4)), row); },
            [&] { w().action(random.bounded(2) ? "showStores" : "showCategories")->trigger(); },
            [&] { w().selectRow(row); w().tableViewSelectionDidChange(); },
            [&] { w().showAll(); },
            [&] { w().redoEdit(); },
            [&] { w().undoEdit(); },
        };
        // clang-format on
        for (int step = 0; step < 400; ++step) {
            row = int(random.bounded(qMax(w().groupsModel()->rowCount(), 1)));
            steps[random.bounded(11)]();
            for (const GRCategoryPtr &category : lists.categories())
                for (const GRItemPtr &item : category->items())
                    QVERIFY(item->category() == category && lists.indexOfStore(item->store().get()) >= 0);
            QVERIFY(!lists.stores().isEmpty() && !lists.categories().isEmpty());
        }
    }

    void quitQuestion_data()
    {
        QTest::addColumn<QuitRow>("r");
        QTest::newRow("clean: no question") << QuitRow{-1, true, true};
        QTest::newRow("save") << QuitRow{0, true, false};
        QTest::newRow("cancel") << QuitRow{1, false, true};
        QTest::newRow("don't save") << QuitRow{2, true, true};
    }

    void quitQuestion()
    {
        QFETCH(QuitRow, r);
        GRPrefController::sharedInstance().setShowKeys(false);
        MGAlert &alert = MGAlert::sharedInstance();
        if (r.answer >= 0) { // -1: nothing changed, so no question
            trigger("resetChecks");
            alert.setNextAnswer(r.answer);
        }
        const QByteArray file = GRTestSupport::readFile(g_databasePath);

        QCOMPARE(w().close(), r.closes);
        QCOMPARE(alert.shownAlerts().size(), r.answer >= 0 ? 1 : 0);
        if (r.answer >= 0) {
            const MGAlert::Request &request = alert.shownAlerts().first();
            QCOMPARE(QStringList({request.message, request.moreInfo}) + request.buttonStrings,
                     (QStringList{"Save changes to the groceries database?",
                                  "Your changes will be lost if you don't save them.", "Save", "Cancel",
                                  "Don't Save"}));
        }
        QCOMPARE(GRTestSupport::readFile(g_databasePath) == file, r.fileKept);
        QCOMPARE(g_dirty, !r.closes);
        if (r.closes) {
            GRAppController::sharedInstance().applicationWillTerminate();
            QCOMPARE(QSettings("Marlowick", "Groceries").value("mwgroceries.showKeys").toBool(), false);
        }
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
        QTRY_COMPARE(keys->isVisible(), !shown);
    }

    void centredControl()
    {
        // x, view width, control width, expected: odd widths round down, a wider control goes left
        const int rows[][4] = {{10, 200, 60, 80}, {0, 101, 50, 25}, {20, 40, 61, 9}, {0, 0, 30, -15}};
        for (const auto &r : rows)
            QCOMPARE(CenteredControlX(r[0], r[1], r[2]), r[3]);
    }
};

QTEST_MAIN(TestWindowController)
#include "tst_windowcontroller.moc"
