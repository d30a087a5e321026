#include "GRCategory.h"
#include "GRDatabaseFile.h"
#include "GRGroceryDatabase.h"
#include "GRGroceryEdits.h"
#include "GRGroceryQueries.h"
#include "GRItem.h"
#include "GRItemFields.h"
#include "GRSnapshotUndo.h"
#include "GRStore.h"
#include "GRTestSupport.h"
#include "GRTestWindow.h"
#include "GRUndoKinds.h"
#include "MGUndoManager.h"

#include <QTest>

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

    GRItemPtr item(const QString &name) const { return GRTestSupport::item(db, name); }
    GRCategoryPtr category(int row) const { return db.categories().value(row); }
    QString dump() const { return GRTestSupport::dump(db); }
};

using A = GRUndoAction;
using D = GRUndoDescriptor;
using E = GRGroceryEdits;

} // namespace

class TestGroceryEdits : public QObject
{
    Q_OBJECT

    std::unique_ptr<Fixture> m_f;
    MGUndoManager &m_undo = MGUndoManager::sharedInstance();

    Fixture &f() { return *m_f; }

private slots:
    void initTestCase()
    {
        GRTestSupport::initEnvironment();
        GRTestSupport::quietUndo();
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
};

QTEST_MAIN(TestGroceryEdits)
#include "tst_groceryedits.moc"
