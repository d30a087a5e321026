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

using TS = GRTestSupport;

namespace {

// Stores: Corner Shop, Bakery Bros, Market. Categories: Dairy, Fruit, Pantry.
const QByteArray Database = R"(<?xml version="1.0" encoding="UTF-8"?>
<groceries version="1"><stores>
<store><name>Corner Shop</name></store><store><name>Bakery Bros</name></store><store><name>Market</name></store>
</stores><categories>
<category><name>Dairy</name></category><category><name>Fruit</name></category><category><name>Pantry</name></category>
</categories><items>
<item><name>Milk</name><category>0</category><store>0</store><need>1</need></item>
<item><name>Buttermilk</name><category>0</category><store>1</store></item>
<item><name>Cheese</name><category>0</category><store>2</store></item>
<item><name>Apples</name><category>1</category><store>2</store><need>1</need></item>
<item><name>Bananas</name><category>1</category><store>0</store></item>
<item><name>Flour</name><category>2</category><store>1</store></item>
</items></groceries>
)";

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

// The drag text for the item of that name in the list on show; "#text" is taken as it stands.
QByteArray dragIndex(const QString &item)
{
    if (item.startsWith('#'))
        return item.mid(1).toUtf8();
    const QList<GRItemPtr> &shown = GRLists::shared().displayItems();
    for (qsizetype i = 0; i < shown.size(); ++i) {
        if (shown.at(i)->name() == item)
            return QByteArray::number(i);
    }
    return "-1";
}

QMimeData *dragData(const QByteArray &index)
{
    auto *data = new QMimeData;
    data->setData("mwgroceries.drag", index);
    return data;
}

} // namespace

class TestWindowController : public QObject
{
    Q_OBJECT

    std::unique_ptr<GRWindowController> m_window;
    std::unique_ptr<QTemporaryDir> m_dir;

    GRWindowController &w() { return *m_window; }
    void trigger(const char *name)
    {
        QAction *action = w().action(name);
        QVERIFY2(action, name);
        w().updateMenus();
        QVERIFY2(action->isEnabled(), name);
        action->trigger();
    }
    bool enabled(const char *name)
    {
        w().updateMenus();
        return w().action(name)->isEnabled();
    }
    QString title(const char *name)
    {
        w().updateMenus();
        return w().action(name)->text();
    }
    void setStoreMode(bool storeMode) { w().action(storeMode ? "showStores" : "showCategories")->trigger(); }
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
        TS::initEnvironment();
        QApplication::setQuitOnLastWindowClosed(false);
        GRAppController::sharedInstance().setKeyStrings();
    }

    void init()
    {
        TS::resetDatabase();
        m_dir = std::make_unique<QTemporaryDir>();
        g_databasePath = m_dir->filePath("Groceries.xml");
        QVERIFY(TS::writeFile(g_databasePath, Database));
        QVERIFY(ReadModernDatabaseData(Database));
        GRPrefController::sharedInstance().setConfirmDelete(true);
        m_window = std::make_unique<GRWindowController>();
        m_window->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
        m_window->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
        MGUndoManager::setBeepHandler([] {});
    }

    void cleanup()
    {
        m_window.reset();
        QGuiApplication::clipboard()->clear();
    }

    void startsOnFirstCategory()
    {
        QCOMPARE(w().selectedRow(), 0);
        QCOMPARE(shownNames(), (QStringList{"Buttermilk", "Cheese", "Milk"}));
        QVERIFY(!w().isWindowModified());
        QCOMPARE(title("undoEdit"), QString("Undo"));
        QCOMPARE(title("redoEdit"), QString("Redo"));
        QVERIFY(!enabled("undoEdit") && !enabled("saveDocument"));
    }

    void rename_data()
    {
        QTest::addColumn<bool>("stores");
        QTest::addColumn<int>("row");
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("after"); // category or store names, in order
        QTest::addColumn<int>("selected");

        // clang-format off
        QTest::newRow("re-sorted, stays selected") << false << 0 << "Zucchini" << "Fruit,Pantry,Zucchini" << 2;
        QTest::newRow("case-insensitive order") << false << 2 << "apricots" << "apricots,Dairy,Fruit" << 0;
        QTest::newRow("empty ignored") << false << 1 << "" << "Dairy,Fruit,Pantry" << 1;
        QTest::newRow("store re-sorted") << true << 2 << "Aldo" << "Corner Shop,Aldo,Bakery Bros" << 0;
        QTest::newRow("store 0 refused") << true << 0 << "Other" << "Corner Shop,Bakery Bros,Market" << 0;
        // clang-format on
    }

    void rename()
    {
        QFETCH(bool, stores);
        QFETCH(int, row);
        QFETCH(QString, name);
        QFETCH(QString, after);
        QFETCH(int, selected);

        setStoreMode(stores);
        w().selectRow(row);
        w().tableViewSelectionDidChange();
        const QString before = dump();
        GRGroupsTableModel *model = w().groupsModel();
        model->setData(model->index(row, 0), name);

        QStringList names;
        for (int r = 0; r < model->rowCount(); ++r)
            names << model->index(r, 0).data().toString();
        QCOMPARE(names.join(','), after);
        QCOMPARE(w().selectedRow(), qint64(selected));
        const bool changed = dump() != before;
        QCOMPARE(w().isWindowModified(), changed);
        if (stores && changed) // every item stays with its store, matched by GUID
            QVERIFY(dump().contains("Cheese@Aldo") && dump().contains("Apples@Aldo*"));
        if (changed) {
            trigger("undoEdit");
            QCOMPARE(dump(), before);
            QCOMPARE(w().selectedRow(), qint64(stores ? 0 : row));
        }
    }

    void renameThroughEditor()
    {
        w().selectRow(1);
        w().tableViewSelectionDidChange();
        trigger("renameCategory");
        auto *editor = qobject_cast<QLineEdit *>(QApplication::focusWidget());
        QVERIFY(editor);
        QTest::keyClicks(editor, "Apples and pears");
        QTest::keyClick(editor, Qt::Key_Return);
        QTRY_COMPARE(w().selectedRow(), qint64(0));
        QCOMPARE(dump().left(28), QString("Apples and pears: Apples@Mar"));
        QCOMPARE(title("undoEdit"), QString("Undo Rename Category"));
    }

    void deleteGroup_data()
    {
        QTest::addColumn<bool>("stores");
        QTest::addColumn<int>("row");
        QTest::addColumn<int>("answer"); // -1: no question expected
        QTest::addColumn<QString>("question");
        QTest::addColumn<QString>("after");

        // clang-format off
        QTest::newRow("row 0 goes to row 1") << false << 0 << 0
            << "Are you sure you want to delete the category \"Dairy\"?\n\nIts items will be reassigned to \"Fruit\"."
            << "Fruit: Apples@Market*, Bananas@Corner Shop, Milk@Corner Shop*, Buttermilk@Bakery Bros, Cheese@Market"
               " | Pantry: Flour@Bakery Bros / Corner Shop, Bakery Bros, Market";
        QTest::newRow("other row goes to row 0") << false << 2 << 0
            << "Are you sure you want to delete the category \"Pantry\"?\n\nIts items will be reassigned to \"Dairy\"."
            << "Dairy: Milk@Corner Shop*, Buttermilk@Bakery Bros, Cheese@Market, Flour@Bakery Bros"
               " | Fruit: Apples@Market*, Bananas@Corner Shop / Corner Shop, Bakery Bros, Market";
        QTest::newRow("cancelled") << false << 1 << 1
            << "Are you sure you want to delete the category \"Fruit\"?\n\nIts items will be reassigned to \"Dairy\"."
            << "";
        QTest::newRow("store goes to store 0") << true << 1 << 0
            << "Are you sure you want to delete the store \"Bakery Bros\"?\n\nIts items will be reassigned to \"Corner Shop\"."
            << "Dairy: Milk@Corner Shop*, Buttermilk@Corner Shop, Cheese@Market | Fruit: Apples@Market*,"
               " Bananas@Corner Shop | Pantry: Flour@Corner Shop / Corner Shop, Market";
        QTest::newRow("store 0 never") << true << 0 << -1 << "" << "";
        // clang-format on
    }

    void deleteGroup()
    {
        QFETCH(bool, stores);
        QFETCH(int, row);
        QFETCH(int, answer);
        QFETCH(QString, question);
        QFETCH(QString, after);

        setStoreMode(stores);
        w().selectRow(row);
        w().tableViewSelectionDidChange();
        const QString before = dump();
        MGAlert &alert = MGAlert::sharedInstance();
        if (answer >= 0)
            alert.setNextAnswer(answer);
        QCOMPARE(enabled("delete"), answer >= 0);
        QCOMPARE(w().categoryControl()->isSegmentEnabled(1), answer >= 0);
        w().deleteGroup();

        QCOMPARE(alert.shownAlerts().size(), answer >= 0 ? 1 : 0);
        if (answer >= 0)
            QCOMPARE(alert.shownAlerts().first().moreInfo, question);
        QCOMPARE(dump(), after.isEmpty() ? before : after);
        QCOMPARE(MGUndoManager::sharedInstance().isUndoAvailable(), !after.isEmpty());
        QCOMPARE(w().selectedRow(), after.isEmpty() ? qint64(row) : 0);
    }

    void deleteLastCategoryRefused()
    {
        GRPrefController::sharedInstance().setConfirmDelete(false);
        w().selectRow(2);
        w().categoryList()->setFocus();
        QTest::keyClick(w().categoryList(), Qt::Key_Delete);
        QCOMPARE(GRLists::shared().categories().size(), 2);
        w().deleteCategory(1);
        QCOMPARE(GRLists::shared().categories().size(), 1);
        QVERIFY(!enabled("delete"));
        w().deleteCategory(0);
        QCOMPARE(GRLists::shared().categories().size(), 1);
    }

    void drops_data()
    {
        QTest::addColumn<bool>("stores");
        QTest::addColumn<QString>("item"); // dragged from the list on show
        QTest::addColumn<int>("row");
        QTest::addColumn<bool>("on"); // on the row, or above it
        QTest::addColumn<QString>("after");
        QTest::addColumn<QString>("shown");

        // Category mode shows Dairy's items, store mode those of Corner Shop.
        // clang-format off
        QTest::newRow("onto a category") << false << "Buttermilk" << 1 << true
            << "Dairy: Milk@Corner Shop*, Cheese@Market | Fruit: Apples@Market*, Bananas@Corner Shop,"
               " Buttermilk@Bakery Bros | Pantry: Flour@Bakery Bros / Corner Shop, Bakery Bros, Market"
            << "Cheese,Milk";
        QTest::newRow("onto a store") << true << "Milk" << 2 << true
            << "Dairy: Milk@Market*, Buttermilk@Bakery Bros, Cheese@Market | Fruit: Apples@Market*,"
               " Bananas@Corner Shop | Pantry: Flour@Bakery Bros / Corner Shop, Bakery Bros, Market"
            << "Bananas";
        QTest::newRow("own category") << false << "Milk" << 0 << true << "" << "";
        QTest::newRow("own store") << true << "Bananas" << 0 << true << "" << "";
        QTest::newRow("above a row") << false << "Milk" << 1 << false << "" << "";
        QTest::newRow("past the rows") << false << "Milk" << 3 << true << "" << "";
        QTest::newRow("bad index") << false << "#7" << 1 << true << "" << "";
        QTest::newRow("not a number") << false << "#x" << 1 << true << "" << "";
        // clang-format on
    }

    void drops()
    {
        QFETCH(bool, stores);
        QFETCH(QString, item);
        QFETCH(int, row);
        QFETCH(bool, on);
        QFETCH(QString, after);
        QFETCH(QString, shown);

        setStoreMode(stores);
        const QString before = dump();
        const QStringList shownBefore = shownNames();
        GRGroupsTableModel *model = w().groupsModel();
        std::unique_ptr<QMimeData> data(dragData(dragIndex(item)));
        const QModelIndex parent = on ? model->index(row, 0) : QModelIndex();
        const int dropRow = on ? -1 : row;
        const bool accepted = model->dropMimeData(data.get(), Qt::MoveAction, dropRow, 0, parent);

        QCOMPARE(accepted, !after.isEmpty());
        QCOMPARE(dump(), accepted ? after : before);
        QCOMPARE(shownNames(), accepted ? shown.split(',') : shownBefore);
        QCOMPARE(MGUndoManager::sharedInstance().isUndoAvailable(), accepted);
        if (accepted)
            QCOMPARE(title("undoEdit"), QString(stores ? "Undo Change Item" : "Undo Move Item"));
    }

    void find_data()
    {
        QTest::addColumn<bool>("stores");
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("shown");
        QTest::addColumn<int>("selected");

        QTest::newRow("substring, any case") << false << "MILK"
                                             << "Buttermilk,Milk" << -1;
        QTest::newRow("store mode searches categories") << true << "an"
                                                        << "Bananas" << -1;
        QTest::newRow("nothing") << false << "zzz"
                                 << "" << -1;
        QTest::newRow("empty selects first") << false << ""
                                             << "Buttermilk,Cheese,Milk" << 0;
    }

    void find()
    {
        QFETCH(bool, stores);
        QFETCH(QString, text);
        QFETCH(QString, shown);
        QFETCH(int, selected);

        setStoreMode(stores);
        w().selectRow(2);
        trigger("find");
        QCOMPARE(QApplication::focusWidget(), w().searchField());
        QTest::keyClicks(w().searchField(), text.isEmpty() ? QString("x") : text);
        if (text.isEmpty())
            QTest::keyClick(w().searchField(), Qt::Key_Backspace);
        QCOMPARE(shownNames().join(','), shown);
        QCOMPARE(w().selectedRow(), qint64(selected));
        QVERIFY(!MGUndoManager::sharedInstance().isUndoAvailable());
    }

    void showCommands()
    {
        trigger("showNeedful");
        QCOMPARE(shownNames(), (QStringList{"Apples", "Milk"}));
        QCOMPARE(w().selectedRow(), -1);
        QVERIFY(!enabled("renameCategory"));
        trigger("showAll");
        QCOMPARE(shownNames().size(), 6);
        setStoreMode(true);
        QCOMPARE(shownNames(), (QStringList{"Bananas", "Milk"}));
    }

    void paste_data()
    {
        QTest::addColumn<bool>("selection");
        QTest::addColumn<QString>("after");

        const QString item = "Yogurt@Bakery Bros*";
        QTest::newRow("into the selected category")
            << true << "Dairy: Milk@Corner Shop*, Buttermilk@Bakery Bros, Cheese@Market, " + item;
        QTest::newRow("into its own category") << false << "Pantry: Flour@Bakery Bros, " + item;
    }

    void paste()
    {
        QFETCH(bool, selection);
        QFETCH(QString, after);

        QVERIFY(!enabled("paste"));
        auto *data = new QMimeData;
        data->setData("mwgroceries.item",
                      "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<item><name>Yogurt</name>"
                      "<category>2</category><store>1</store><need>1</need></item>");
        QGuiApplication::clipboard()->setMimeData(data);
        if (!selection)
            trigger("showAll");
        const QString before = dump();
        trigger("paste");
        QVERIFY(dump().contains(after));
        QVERIFY(shownNames().contains("Yogurt"));
        QCOMPARE(title("undoEdit"), QString("Undo Paste Item"));
        trigger("undoEdit");
        QCOMPARE(dump(), before);
    }

    void addGroups()
    {
        setStoreMode(true);
        trigger("addCategory");
        QVERIFY(!w().isStoreMode());
        QCOMPARE(w().selectedRow(), 3);
        QCOMPARE(GRLists::shared().categories().last()->name(), QString("New category"));
        auto *editor = qobject_cast<QLineEdit *>(QApplication::focusWidget());
        QVERIFY(editor && editor->selectedText() == "New category");
        QTest::keyClick(editor, Qt::Key_Escape);

        trigger("addStore");
        QVERIFY(w().isStoreMode());
        QCOMPARE(GRLists::shared().stores().last()->name(), QString("New store"));
        QCOMPARE(title("undoEdit"), QString("Undo Add Store"));
        trigger("undoEdit");
        QCOMPARE(GRLists::shared().stores().size(), 3);
    }

    void undoRoundTrip_data()
    {
        QTest::addColumn<std::function<void(GRWindowController &)>>("command");
        QTest::addColumn<QString>("name");

        using W = GRWindowController;
        const auto drop = [](W &w) {
            std::unique_ptr<QMimeData> data(dragData(dragIndex("Apples")));
            w.groupsModel()->dropMimeData(data.get(), Qt::MoveAction, -1, 0, w.groupsModel()->index(2, 0));
        };
        const auto renameStore = [](W &) {
            QList<GRStorePtr> stores = GRLists::shared().stores();
            stores[1] = stores[1]->copy();
            stores[1]->setName("Bob");
            GRAppController::sharedInstance().installNewStores(stores, 15);
        };
        // clang-format off
        QTest::newRow("clear checkmarks") << std::function<void(W &)>([](W &w) { w.resetChecks(); }) << "Clear All Checkmarks";
        QTest::newRow("rename category") << std::function<void(W &)>([](W &w) { w.setObjectValue("Eggs", 1); }) << "Rename Category";
        QTest::newRow("delete category") << std::function<void(W &)>([](W &w) { w.deleteCategory(1); }) << "Delete Category";
        QTest::newRow("delete store") << std::function<void(W &)>([](W &w) { w.deleteStore(2); }) << "Delete Store";
        QTest::newRow("rename store") << std::function<void(W &)>(renameStore) << "Rename Store";
        QTest::newRow("move item") << std::function<void(W &)>(drop) << "Move Item";
        QTest::newRow("add category") << std::function<void(W &)>([](W &w) { w.addCategory(); w.cancelOperation(); }) << "Add Category";
        // clang-format on
    }

    // Undo then redo gives back exactly the state after the command; undo alone the state before.
    void undoRoundTrip()
    {
        QFETCH(std::function<void(GRWindowController &)>, command);
        QFETCH(QString, name);

        MGAlert::sharedInstance().setNextAnswer(0);
        w().selectRow(1);
        w().tableViewSelectionDidChange();
        const QString before = checkState();
        command(w());
        const QString after = checkState();
        QVERIFY(after != before);
        QCOMPARE(title("undoEdit"), "Undo " + name);
        trigger("undoEdit");
        QCOMPARE(checkState(), before);
        QCOMPARE(title("redoEdit"), "Redo " + name);
        trigger("redoEdit");
        QCOMPARE(checkState(), after);
    }

    void undoRingKeeps25()
    {
        for (int i = 0; i < 26; ++i)
            trigger("resetChecks");
        int undos = 0;
        while (enabled("undoEdit") && undos < 30) {
            trigger("undoEdit");
            ++undos;
        }
        QCOMPARE(undos, 25);
        QVERIFY(w().isWindowModified()); // the oldest step, which made the change, is gone
    }

    // Random edits, undos and redos keep every record reachable and every back-reference right.
    void randomEditsKeepRecordsConsistent()
    {
        GRPrefController::sharedInstance().setConfirmDelete(false);
        QRandomGenerator random(20240611);
        GRLists &lists = GRLists::shared();
        for (int step = 0; step < 400; ++step) {
            const int rows = w().groupsModel()->rowCount();
            const int row = int(random.bounded(qMax(rows, 1)));
            switch (random.bounded(11)) {
            case 0:
                w().resetChecks();
                break;
            case 1:
                w().setObjectValue(QString("N%1").arg(random.bounded(50)), row);
                break;
            case 2:
                w().deleteGroup();
                break;
            case 3:
                w().addCategory();
                w().cancelOperation();
                break;
            case 4:
                w().addStore();
                w().cancelOperation();
                break;
            case 5: {
                std::unique_ptr<QMimeData> data(dragData(QByteArray::number(random.bounded(4))));
                w().groupsModel()->dropMimeData(data.get(), Qt::MoveAction, -1, 0,
                                                w().groupsModel()->index(row, 0));
                break;
            }
            case 6:
                setStoreMode(random.bounded(2));
                break;
            case 7:
                w().selectRow(row);
                w().tableViewSelectionDidChange();
                break;
            case 8:
                w().showAll();
                break;
            case 9:
                w().redoEdit();
                break;
            default:
                w().undoEdit();
                break;
            }
            for (const GRCategoryPtr &category : lists.categories()) {
                for (const GRItemPtr &item : category->items()) {
                    QVERIFY(item->category() == category);
                    QVERIFY(lists.indexOfStore(item->store().get()) >= 0);
                }
            }
            QVERIFY(!lists.stores().isEmpty() && !lists.categories().isEmpty());
        }
    }

    void editedMarkFollowsSaves()
    {
        trigger("resetChecks");
        QVERIFY(w().isWindowModified() && enabled("saveDocument"));
        trigger("undoEdit");
        QVERIFY(!w().isWindowModified());
        trigger("redoEdit");
        QVERIFY(w().isWindowModified());
        trigger("saveDocument");
        QVERIFY(!w().isWindowModified());
        QVERIFY(!enabled("undoEdit") && !enabled("redoEdit") && !enabled("saveDocument"));
        QVERIFY(!TS::readFile(g_databasePath).contains("<need>"));
    }

    void quitQuestion_data()
    {
        QTest::addColumn<bool>("changed");
        QTest::addColumn<int>("answer");
        QTest::addColumn<bool>("closes");
        QTest::addColumn<bool>("fileKept");

        QTest::newRow("clean: no question") << false << -1 << true << true;
        QTest::newRow("save") << true << 0 << true << false;
        QTest::newRow("cancel") << true << 1 << false << true;
        QTest::newRow("don't save") << true << 2 << true << true;
    }

    void quitQuestion()
    {
        QFETCH(bool, changed);
        QFETCH(int, answer);
        QFETCH(bool, closes);
        QFETCH(bool, fileKept);

        if (changed)
            trigger("resetChecks");
        GRPrefController::sharedInstance().setShowKeys(false);
        MGAlert &alert = MGAlert::sharedInstance();
        if (answer >= 0)
            alert.setNextAnswer(answer);
        const QByteArray file = TS::readFile(g_databasePath);

        QCOMPARE(w().close(), closes);
        QCOMPARE(alert.shownAlerts().size(), answer >= 0 ? 1 : 0);
        if (answer >= 0) {
            const MGAlert::Request &request = alert.shownAlerts().first();
            QCOMPARE(request.message, QString("Save changes to the groceries database?"));
            QCOMPARE(request.moreInfo, QString("Your changes will be lost if you don't save them."));
            QCOMPARE(request.buttonStrings, (QStringList{"Save", "Cancel", "Don't Save"}));
        }
        QCOMPARE(TS::readFile(g_databasePath) == file, fileKept);
        QCOMPARE(g_dirty, !closes);
        if (closes) {
            GRAppController::sharedInstance().applicationWillTerminate();
            QSettings settings("Marlowick", "Groceries");
            QCOMPARE(settings.value("mwgroceries.showKeys").toBool(), false);
        }
    }

    void legend()
    {
        QTableWidget *keys = w().keyList();
        QCOMPARE(keys->rowCount(), 6);
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

    void centredControl_data()
    {
        QTest::addColumn<int>("x");
        QTest::addColumn<int>("width");
        QTest::addColumn<int>("control");
        QTest::addColumn<int>("expected");

        QTest::newRow("even") << 10 << 200 << 60 << 80;
        QTest::newRow("odd rounds down") << 0 << 101 << 50 << 25;
        QTest::newRow("wider than the view") << 20 << 40 << 61 << 9;
        QTest::newRow("no view") << 0 << 0 << 30 << -15;
    }

    void centredControl()
    {
        QFETCH(int, x);
        QFETCH(int, width);
        QFETCH(int, control);
        QFETCH(int, expected);
        QCOMPARE(CenteredControlX(x, width, control), expected);
    }
};

QTEST_MAIN(TestWindowController)
#include "tst_windowcontroller.moc"
