#include "GRCategory.h"
#include "GRDatabaseFile.h"
#include "GRGroceryDatabase.h"
#include "GRGroceryEdits.h"
#include "GRGroceryQueries.h"
#include "GRItem.h"
#include "GRItemFields.h"
#include "GRPrefController.h"
#include "GRSnapshotUndo.h"
#include "GRStore.h"
#include "GRTestSupport.h"
#include "GRTestWindow.h"
#include "GRUndoKinds.h"
#include "MGUndoManager.h"

#include <QTest>

#include <functional>

namespace {

// A needed Yogurt of Bakery Bros in Pantry, as the pasteboard carries it.
const QByteArray Yogurt = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<item><name>Yogurt</name>"
                          "<category>2</category><store>1</store><need>1</need></item>";

QString names(const QList<GRItemPtr> &items)
{
    QStringList list;
    for (const GRItemPtr &item : items)
        list << item->name();
    return list.join(',');
}

struct Fixture
{
    GRGroceryDatabase db;
    QList<GRItemPtr> shown;
    GRTestWindow window{db, shown};
    GRSnapshotUndo undo{db, shown};

    GRItemPtr item(const QString &name) const
    {
        for (const GRItemPtr &entry : GRGroceryQueries::allItems(db))
            if (entry->name() == name)
                return entry;
        return nullptr;
    }
    GRCategoryPtr category(int row) const { return db.categories().value(row); }
    QString dump() const { return GRTestSupport::dump(db); }
};

// A command as the window runs it: record the step, then change the data.
using Command = std::function<bool(Fixture &)>;

// clang-format off
using A = GRUndoAction;
using D = GRUndoDescriptor;
using E = GRGroceryEdits;
// The row name of a command is its undo title.
const std::pair<const char *, Command> Commands[] = {
    {"Clear All Checkmarks", [](Fixture &f) { return RecordUndo(A::Categories, D::ClearAllCheckmarks) && (E::clearChecks(f.db), true); }},
    {"Rename Category", [](Fixture &f) { const GRCategoryPtr fruit = f.category(1); return RecordUndo(A::Category, D::RenameCategory, fruit) && (f.window.reloadCategoriesCore(E::renameCategory(f.db, fruit, "Apricots")), true); }},
    {"Rename Store", [](Fixture &f) { return RecordUndo(A::CategoriesAndStores, D::RenameStore) && E::installNewStores(f.db, E::storesRenaming(f.db, 2, "Aldo")); }},
    {"Delete Category", [](Fixture &f) {
        const GRCategoryPtr fruit = f.category(1), heir = E::categoryHeir(f.db, 1);
        return heir && RecordUndo(A::Categories, D::DeleteCategory) && (E::mergeCategory(f.db, fruit, heir), f.window.reloadCategoriesCore(0), true); }},
    {"Delete Store", [](Fixture &f) { return RecordUndo(A::CategoriesAndStores, D::DeleteStore) && E::installNewStores(f.db, E::storesWithout(f.db, 2)); }},
    {"Move Item", [](Fixture &f) { const GRItemPtr apples = f.item("Apples"); return RecordUndo(A::Categories, D::MoveItem) && E::moveItem(apples, f.category(2)) && f.shown.removeAll(apples); }},
    {"Change Item", [](Fixture &f) { const GRItemPtr bananas = f.item("Bananas"); return RecordUndo(A::Category, D::ChangeItem, bananas->category()) && E::reassignStore(bananas, f.db.stores().value(2)); }},
    {"Add Category", [](Fixture &f) { return RecordUndo(A::Categories, D::AddCategory) && E::addCategory(f.db); }},
    {"Add Store", [](Fixture &f) { return RecordUndo(A::CategoriesAndStores, D::AddStore) && E::addStore(f.db); }},
    {"Paste Item", [](Fixture &f) {
        const GRItemPtr yogurt = E::itemFromPasteboardText(f.db, Yogurt);
        const GRCategoryPtr fruit = f.category(1);
        return yogurt && RecordUndo(A::Category, D::PasteItem, fruit) && (E::insertItem(fruit, yogurt), f.shown.append(yogurt), true); }},
    {"Check Item", [](Fixture &f) { const GRItemPtr bananas = f.item("Bananas"); return RecordUndo(A::Category, D::CheckItem, bananas->category()) && (bananas->setNeeded(true), true); }},
    {"Delete Item", [](Fixture &f) { const GRItemPtr apples = f.item("Apples"); return RecordUndo(A::Category, D::DeleteItem, apples->category()) && (apples->setNeeded(false), E::removeItem(f.shown, apples)); }},
    {"Duplicate", [](Fixture &f) { const GRItemPtr apples = f.item("Apples"); return RecordUndo(A::Category, D::Duplicate, apples->category()) && E::duplicateItem(f.shown, apples); }},
    {"Add Item", [](Fixture &f) {
        GRItemFields fields = GRItemFields::forNewItem(f.window.row, 2);
        fields.name = "Kale";
        return RecordUndo(fields.undoAction(f.db, nullptr), D::AddItem, fields.category(f.db)) && fields.apply(f.db, f.shown, nullptr); }},
};
// clang-format on

} // namespace

class TestGroceryEdits : public QObject
{
    Q_OBJECT

    std::unique_ptr<Fixture> m_f;
    MGUndoManager &m_undo = MGUndoManager::sharedInstance();

    Fixture &f() { return *m_f; }

    // Everything undo and redo must bring back, and the menu titles.
    QString checkState()
    {
        QStringList shown = names(f().shown).split(',', Qt::SkipEmptyParts);
        shown.sort();
        QString undoTitle, redoTitle;
        m_undo.validateState(true, &undoTitle);
        m_undo.validateState(false, &redoTitle);
        return QStringLiteral("%1 / shown %2 / row %3 / %4 / %5, %6")
            .arg(f().dump(), shown.join(','))
            .arg(f().window.row)
            .arg(f().window.edited ? "edited" : "clean", undoTitle, redoTitle);
    }

private slots:
    void initTestCase()
    {
        GRTestSupport::initEnvironment();
        MGUndoManager::setBeepHandler([] {});
        MGUndoManager::setModalCheck([] { return false; });
    }

    void init()
    {
        GRTestSupport::resetState();
        m_f = std::make_unique<Fixture>();
        QVERIFY(ReadModernDatabaseData(GRTestSupport::sampleDatabase(), f().db));
        f().undo.setView(&f().window);
        f().undo.install();
        f().window.reloadCategoriesCore(1);
    }

    void cleanup() { m_f.reset(); }

    void queries_data()
    {
        QTest::addColumn<QString>("query");
        QTest::addColumn<QString>("found");
        // clang-format off
        QTest::newRow("category in its order") << "category 0" << "Milk,Buttermilk,Cheese";
        QTest::newRow("store: categories and items backwards") << "store 2" << "Apples,Cheese";
        QTest::newRow("row past the list") << "store 3" << "";
        QTest::newRow("all") << "all" << "Milk,Buttermilk,Cheese,Apples,Bananas,Flour";
        QTest::newRow("needed") << "needed" << "Milk,Apples";
        QTest::newRow("find, any case") << "find MILK" << "Milk,Buttermilk";
        QTest::newRow("find nothing") << "find xyz" << "";
        // clang-format on
    }
    void queries()
    {
        QFETCH(QString, query);
        const QString argument = query.section(' ', 1);
        QList<GRItemPtr> found;
        if (query.startsWith("category") || query.startsWith("store"))
            found = GRGroceryQueries::itemsOfGroup(f().db, query.startsWith("store"), argument.toLongLong());
        else if (query == "all")
            found = GRGroceryQueries::allItems(f().db);
        else if (query == "needed")
            found = GRGroceryQueries::neededItems(f().db);
        else
            found = GRGroceryQueries::findItems(f().db, argument);
        QTEST(names(found), "found");
        QCOMPARE(GRGroceryQueries::groupRowOfItem(f().db, true, f().item("Cheese")), 2);
        QCOMPARE(GRGroceryQueries::groupRowOfItem(f().db, false, GRItem::create()), -1);
    }

    void pastedItems_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<QString>("item"); // empty: refused
        QTest::newRow("item") << Yogurt << "Yogurt@Bakery Bros* in Pantry";
        QTest::newRow("positions past the lists")
            << QByteArray("<?xml?><item><name>X</name><category>7</category>"
                          "<store>9</store></item>")
            << "X@Corner Shop in Dairy";
        QTest::newRow("not an item") << QByteArray("<?xml?><store><name>S</name></store>") << "";
        QTest::newRow("not XML") << QByteArray("Yogurt") << "";
        QTest::newRow("not UTF-8") << QByteArray("<?xml?><item><name>\xff</name></item>") << "";
        QTest::newRow("empty") << QByteArray() << "";
    }
    // The reader makes the grocery tag table current itself: another table is current here.
    void pastedItems()
    {
        QFETCH(QByteArray, text);
        const GRItemPtr item = GRGroceryEdits::itemFromPasteboardText(f().db, text);
        QTEST(item ? QStringLiteral("%1@%2%3 in %4")
                         .arg(item->name(), item->store()->name(), item->isNeeded() ? "*" : "",
                              item->category()->name())
                   : QString(),
              "item");
        QVERIFY(GRGroceryQueries::findItems(f().db, "Yogurt").isEmpty()); // reading adds nothing
    }

    void storeInstallation()
    {
        // The first store stays first, the others sort by name; a renamed copy keeps its items and
        // the items of a store that is gone go to the first store.
        QList<GRStorePtr> stores = GRGroceryEdits::storesRenaming(f().db, 2, "Aldo");
        stores.removeAt(1);
        stores.append(GRStore::create());
        stores.last()->setName("Zed");
        QVERIFY(GRGroceryEdits::installNewStores(f().db, stores));
        QCOMPARE(f().dump(),
                 "Dairy: Milk@Corner Shop*, Buttermilk@Corner Shop, Cheese@Aldo | Fruit: Apples@Aldo*,"
                 " Bananas@Corner Shop | Pantry: Flour@Corner Shop / Corner Shop, Aldo, Zed");
        QVERIFY(!GRGroceryEdits::installNewStores(f().db, {}));
        QCOMPARE(f().db.stores().size(), 3);

        // Items of stores that are only copies come back to the live store with their GUID.
        f().item("Flour")->setStore(f().db.stores().at(1)->copy());
        f().item("Milk")->setStore(GRStore::create());
        GRGroceryEdits::repointItemStores(f().db);
        QCOMPARE(f().item("Flour")->store(), f().db.stores().at(1));
        QCOMPARE(f().item("Milk")->store(), f().db.stores().at(0));
    }

    void categoryHeirs()
    {
        // Out of range, or with one category left, there is no heir (the window's deletions show the
        // ordinary ones).
        QVERIFY(!GRGroceryEdits::categoryHeir(f().db, 3) && !GRGroceryEdits::categoryHeir(f().db, -1));
        f().db.categories().resize(1);
        QVERIFY(!GRGroceryEdits::categoryHeir(f().db, 0));
    }

    void undoRoundTrip_data()
    {
        QTest::addColumn<int>("command");
        for (int i = 0; i < int(std::size(Commands)); ++i)
            QTest::newRow(Commands[i].first) << i;
    }
    // Undo gives back exactly the state before the command, redo exactly the state after it, as
    // often as asked.
    void undoRoundTrip()
    {
        QFETCH(int, command);
        const QString before = checkState();
        QVERIFY(Commands[command].second(f()));
        const QString after = checkState();
        QVERIFY(after != before);
        QVERIFY2(after.endsWith(QString("/ Undo %1, Redo").arg(QTest::currentDataTag())), qPrintable(after));
        for (int round = 0; round < 2; ++round) {
            m_undo.undo();
            QCOMPARE(checkState(),
                     QString(before).replace("/ Undo, Redo",
                                             QString("/ Undo, Redo %1").arg(QTest::currentDataTag())));
            m_undo.redo();
            QCOMPARE(checkState(), after);
        }
    }

    void removeItemSelectsNext_data()
    {
        QTest::addColumn<QString>("shown");
        QTest::addColumn<QString>("removed");
        QTest::addColumn<QString>("next");
        QTest::newRow("middle") << "Milk,Buttermilk,Cheese"
                                << "Buttermilk"
                                << "Cheese";
        QTest::newRow("last") << "Milk,Buttermilk,Cheese"
                              << "Cheese"
                              << "Buttermilk";
        QTest::newRow("only") << "Flour"
                              << "Flour"
                              << "";
    }
    void removeItemSelectsNext()
    {
        QFETCH(QString, shown);
        QFETCH(QString, removed);
        QList<GRItemPtr> items;
        for (const QString &name : shown.split(','))
            items << f().item(name);
        const GRItemPtr item = f().item(removed);
        const GRCategoryPtr category = item->category();
        const GRItemPtr next = E::removeItem(items, item);
        QTEST(next ? next->name() : QString(), "next");
        QVERIFY(!items.contains(item) && !category->items().contains(item));
    }

    // The third category and the second store travel as positions 2 and 1; an item whose store
    // is not in the list can't be copied.
    void pasteboardText()
    {
        const GRItemPtr flour = f().item("Flour");
        flour->setNeedCount(3);
        flour->setAisle(-4);
        QCOMPARE(E::itemPasteboardText(f().db, flour), "<?xml version=\"1.0\" "
                                                       "encoding=\"UTF-8\"?>\n<item>\n\t<name>Flour</"
                                                       "name>\n\t<category>2</category>\n\t<store>1</store>\n"
                                                       "\t<aisle>-4</aisle>\n\t<count>3</count>\n</item>\n");
        const GRItemPtr copy =
            E::itemFromPasteboardText(f().db, E::itemPasteboardText(f().db, flour).toUtf8());
        QVERIFY(copy && copy->category() == flour->category() && copy->store() == flour->store());
        QCOMPARE(copy->aisle(), -4);
        flour->setStore(GRStore::create());
        QVERIFY(E::itemPasteboardText(f().db, flour).isEmpty());
    }

    void itemFields_data()
    {
        QTest::addColumn<QString>("typed"); // into the aisle field
        QTest::addColumn<qint64>("stored");
        QTest::newRow("leading digits") << "12b4" << qint64(12);
        QTest::newRow("no digits") << "x" << qint64(0);
        QTest::newRow("saturates") << "99999999999" << qint64(2147483647);
    }
    // What the sheet makes of a typed aisle. (The sheet keeps a typed number and a special aisle
    // from standing together.)
    void itemFields()
    {
        QFETCH(QString, typed);
        GRItemFields fields = GRItemFields::fromItem(f().db, f().item("Cheese"));
        QCOMPARE(fields.storeIndex, 2);
        fields.aisle = typed;
        QTEST(fields.aisleValue(), "stored");
    }

    // Changing only the name keeps the item's place and needs only its category's snapshot; another
    // category needs every category's.
    void itemFieldsMove()
    {
        const GRItemPtr buttermilk = f().item("Buttermilk");
        GRItemFields fields = GRItemFields::fromItem(f().db, buttermilk);
        fields.name = "Kefir";
        QCOMPARE(fields.undoAction(f().db, buttermilk), A::Category);
        fields.apply(f().db, f().shown, buttermilk);
        QVERIFY(f().dump().startsWith("Dairy: Milk@Corner Shop*, Kefir@Bakery Bros, Cheese@Market |"));
        fields.categoryIndex = 1;
        QCOMPARE(fields.undoAction(f().db, buttermilk), A::Categories);
        fields.categoryIndex = 9;
        QVERIFY(!fields.apply(f().db, f().shown, nullptr));
    }

    void categoryStepOfAGoneCategory()
    {
        // A step whose category is gone can't be applied: the history empties, the data stays.
        QVERIFY(!RecordUndo(A::Category, D::RenameCategory)); // no category to copy
        QVERIFY(RecordUndo(A::Category, D::CheckItem, f().category(2)));
        f().db.categories().removeLast();
        const QString before = f().dump();
        m_undo.undo();
        QCOMPARE(f().dump(), before);
        QVERIFY(!m_undo.isUndoAvailable() && !m_undo.isRedoAvailable());
    }

    // The ring keeps 25 steps: the 26th drops the oldest, and undoing all that are left ends in
    // the state after the first command, still edited.
    void ringDropsTheOldest()
    {
        for (int i = 1; i <= 26; ++i) {
            const GRCategoryPtr fruit = f().db.categoryForGuid(f().category(1)->guid());
            QVERIFY(RecordUndo(A::Category, D::RenameCategory, fruit));
            f().window.reloadCategoriesCore(
                E::renameCategory(f().db, fruit, QString("F%1").arg(i, 2, 10, QChar('0'))));
        }
        int undos = 0;
        for (; m_undo.isUndoAvailable() && undos < 30; ++undos)
            m_undo.undo();
        QCOMPARE(undos, 25);
        QCOMPARE(f().category(1)->name(), "F01");
        QVERIFY(f().window.edited);
        for (int i = 0; i < 25; ++i)
            m_undo.redo();
        QCOMPARE(f().category(1)->name(), "F26");
    }
};

QTEST_MAIN(TestGroceryEdits)
#include "tst_groceryedits.moc"
