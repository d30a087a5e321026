#include "GRCategory.h"
#include "GRItem.h"
#include "GRLists.h"
#include "GRStore.h"
#include "GRTagKeys.h"
#include "GRTestSupport.h"
#include "MGXmlDecoder.h"
#include "MGXmlEncoder.h"

#include <QTest>

namespace {

const QString Declaration = QStringLiteral("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n");

QString body(const MGXmlEncoder &encoder)
{
    return encoder.xml().mid(Declaration.size());
}

// A decoder standing on the first start tag named tag.
std::unique_ptr<MGXmlDecoder> decoderAt(const QString &xml, const QString &tag)
{
    auto decoder = MGXmlDecoder::fromString(Declaration + xml);
    while (decoder && decoder->getNextTag()) {
        if (decoder->xmlTag() == tag && decoder->startTag())
            return decoder;
    }
    return nullptr;
}

// Two stores and two categories in the live lists.
void fillLists()
{
    GRLists &lists = GRLists::shared();
    for (int i = 0; i < 2; ++i) {
        lists.stores().append(GRStore::create());
        lists.stores().last()->setName(QStringLiteral("Store %1").arg(i));
        lists.categories().append(GRCategory::create());
        lists.categories().last()->setName(QStringLiteral("Category %1").arg(i));
    }
}

GRItemPtr addItem(const GRCategoryPtr &category, const QString &name, const GRStorePtr &store)
{
    auto item = GRItem::create();
    item->setName(name);
    item->setCategory(category);
    item->setStore(store);
    category->items().append(item);
    return item;
}

} // namespace

class TestRecords : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { GRTestSupport::initEnvironment(); }
    void init();
    void cleanup() { GRLists::shared().clear(); }

    void store_data();
    void store();
    void category();
    void itemXml_data();
    void itemXml();
    void itemRead_data();
    void itemRead();
    void itemReadWithEmptyLists();
    void readersConsumeTheirEndTag();
    void copies();
    void copyCategories();
    void copyStores();
};

void TestRecords::init()
{
    GRLists::shared().clear();
    // Another reader's table may be current; registering makes the grocery table current again.
    MGXmlDecoder::setKeyDecoder(std::make_shared<MGXmlDecoder::KeyTable>());
    RegisterGroceryTags();
    QCOMPARE(MGXmlDecoder::keyDecoder(), GroceryKeyTable());
}

void TestRecords::store_data()
{
    QTest::addColumn<quint32>("kolor");
    QTest::addColumn<int>("print");
    QTest::addColumn<bool>("top");
    QTest::addColumn<QString>("children");
    QTest::newRow("plain") << 0x64000000u << 0 << false << "";
    QTest::newRow("opaque colour") << 0x641E140Au << 2 << false << "\t<color>{10, 20, 30}</color>\n";
    QTest::newRow("translucent, top")
        << 0x321E140Au << -1 << true << "\t<color>{10, 20, 30, 50}</color>\n\t<top>1</top>\n";
    QTest::newRow("no colour") << 0xFFFFFFFFu << 0 << false << "\t<color>{255, 255, 255, 255}</color>\n";
}

void TestRecords::store()
{
    QFETCH(quint32, kolor);
    QFETCH(int, print);
    QFETCH(bool, top);
    QFETCH(QString, children);

    GRStore store;
    store.setName(QStringLiteral("A & B"));
    store.setKolor(Kolor::fromWord(kolor));
    store.setPrintOption(print);
    store.setTopOfPage(top);
    MGXmlEncoder encoder;
    store.archiveToXml(encoder);
    const QString xml = QStringLiteral("<store>\n\t<name>A &amp; B</name>\n\t<print>%1</print>\n%2</store>\n")
                            .arg(print)
                            .arg(children);
    QCOMPARE(body(encoder), xml);

    // Unknown tags, including one that reads with the aisle's key, are skipped in a store.
    auto decoder = decoderAt(QString(xml).replace("</store>", "<shelf>7</shelf><aisle>3</aisle></store>"),
                             QStringLiteral("store"));
    QVERIFY(decoder);
    const GRStorePtr read = GRStore::fromXml(*decoder);
    QCOMPARE(read->name(), store.name());
    QCOMPARE(read->kolor().word(), kolor);
    QCOMPARE(read->printOption(), print);
    QCOMPARE(read->topOfPage(), top);
    QVERIFY(read->guid() != store.guid());

    const GRStorePtr copy = store.copy();
    QCOMPARE(copy->guid(), store.guid());
    QCOMPARE(copy->kolor(), store.kolor());
    QCOMPARE(copy->topOfPage(), top);
}

void TestRecords::category()
{
    const GRCategoryPtr category = GRCategory::create();
    category->setName(QStringLiteral("Fish <fresh>"));
    addItem(category, QStringLiteral("Cod"), nullptr);
    MGXmlEncoder encoder;
    category->archiveToXml(encoder);
    QCOMPARE(body(encoder), QStringLiteral("<category>\n\t<name>Fish &lt;fresh&gt;</name>\n</category>\n"));

    auto decoder = decoderAt(body(encoder).replace("</category>", "<item>x</item></category>"),
                             QStringLiteral("category"));
    QVERIFY(decoder);
    const GRCategoryPtr read = GRCategory::fromXml(*decoder);
    QCOMPARE(read->name(), category->name());
    QVERIFY(read->items().isEmpty());
    QVERIFY(read->guid() != category->guid());
    QCOMPARE(read->guid().size(), 36);
    QCOMPARE(read->guid(), read->guid().toUpper());
}

void TestRecords::itemXml_data()
{
    QTest::addColumn<qint64>("aisle");
    QTest::addColumn<bool>("needed");
    QTest::addColumn<quint64>("count");
    QTest::addColumn<QString>("tail");
    QTest::addColumn<QString>("shown");
    QTest::newRow("bare") << qint64(0) << false << quint64(0) << ""
                          << "";
    QTest::newRow("count 1 not written") << qint64(0) << true << quint64(1) << "\t<need>1</need>\n"
                                         << "";
    QTest::newRow("special aisle, needed, count")
        << qint64(-3) << true << quint64(4) << "\t<aisle>-3</aisle>\n\t<need>1</need>\n\t<count>4</count>\n"
        << "(4) ";
    QTest::newRow("count without need") << qint64(0) << false << quint64(5) << "\t<count>5</count>\n"
                                        << "";
    QTest::newRow("64-bit aisle") << qint64(5000000000) << false << quint64(0)
                                  << "\t<aisle>5000000000</aisle>\n"
                                  << "";
}

void TestRecords::itemXml()
{
    QFETCH(qint64, aisle);
    QFETCH(bool, needed);
    QFETCH(quint64, count);
    QFETCH(QString, tail);
    QFETCH(QString, shown);

    fillLists();
    GRLists &lists = GRLists::shared();
    const GRItemPtr item =
        addItem(lists.categories().at(1), QStringLiteral("Pears \"%1\""), lists.stores().at(1));
    item->setAisle(aisle);
    item->setNeeded(needed);
    item->setNeedCount(count);
    QCOMPARE(item->displayName(), shown + item->name());

    MGXmlEncoder encoder;
    item->archiveToXml(encoder);
    QCOMPARE(body(encoder), "<item>\n\t<name>Pears &quot;%1&quot;</name>\n\t<category>1</category>\n"
                            "\t<store>1</store>\n" +
                                tail + "</item>\n");

    auto decoder = decoderAt(body(encoder), QStringLiteral("item"));
    QVERIFY(decoder);
    const GRItemPtr read = GRItem::fromXml(*decoder);
    QCOMPARE(read->name(), item->name());
    QCOMPARE(read->category(), item->category());
    QCOMPARE(read->store(), item->store());
    QCOMPARE(read->aisle(), aisle);
    QCOMPARE(read->isNeeded(), needed);
    QCOMPARE(read->needCount(), count < 2 ? quint64(0) : count);
    QCOMPARE(lists.categories().at(1)->items().size(), 1);
}

void TestRecords::itemRead_data()
{
    QTest::addColumn<QString>("children");
    QTest::addColumn<int>("category"); // -1: none
    QTest::addColumn<int>("store");
    QTest::addColumn<qint64>("aisle");
    QTest::addColumn<bool>("needed");
    QTest::newRow("no children") << "" << -1 << -1 << qint64(0) << false;
    QTest::newRow("past the end") << "<store>2</store><category>9</category>" << 0 << 0 << qint64(0) << false;
    QTest::newRow("negative") << "<store>-1</store><category>-5</category>" << 0 << 0 << qint64(0) << false;
    QTest::newRow("huge") << "<store>99999999999999999999</store>" << -1 << 0 << qint64(0) << false;
    QTest::newRow("text index") << "<store>one</store><category>1</category>" << 1 << 0 << qint64(0) << false;
    QTest::newRow("unknown tag sets aisle") << "<shelf>7</shelf>" << -1 << -1 << qint64(7) << false;
    QTest::newRow("other registered tags ignored")
        << "<print>3</print><groceries>4</groceries><top>1</top><i>2</i>" << -1 << -1 << qint64(0) << false;
    QTest::newRow("need low byte") << "<need>256</need>" << -1 << -1 << qint64(0) << false;
    QTest::newRow("need 257") << "<need>257</need>" << -1 << -1 << qint64(0) << true;
    QTest::newRow("later tag wins") << "<aisle>4</aisle><aisle>-5</aisle>" << -1 << -1 << qint64(-5) << false;
}

void TestRecords::itemRead()
{
    QFETCH(QString, children);
    QFETCH(int, category);
    QFETCH(int, store);
    QFETCH(qint64, aisle);
    QFETCH(bool, needed);

    fillLists();
    GRLists &lists = GRLists::shared();
    auto decoder =
        decoderAt("<item><name>Tom's &lt;b&gt;</name>" + children + "</item>", QStringLiteral("item"));
    QVERIFY(decoder);
    const GRItemPtr item = GRItem::fromXml(*decoder);
    QCOMPARE(item->name(), QStringLiteral("Tom's <b>"));
    QCOMPARE(item->category(), category < 0 ? nullptr : lists.categories().at(category));
    QCOMPARE(item->store(), store < 0 ? nullptr : lists.stores().at(store));
    QCOMPARE(item->aisle(), aisle);
    QCOMPARE(item->isNeeded(), needed);
}

void TestRecords::itemReadWithEmptyLists()
{
    auto decoder = decoderAt(QStringLiteral("<item><name>Salt</name><category>0</category><store>3</store>"
                                            "<aisle>2</aisle></item>"),
                             QStringLiteral("item"));
    QVERIFY(decoder);
    const GRItemPtr item = GRItem::fromXml(*decoder);
    QVERIFY(!item->category());
    QVERIFY(!item->store());
    QCOMPARE(item->aisle(), qint64(2));

    MGXmlEncoder encoder;
    item->archiveToXml(encoder);
    QVERIFY(body(encoder).contains(QStringLiteral("\t<category>-1</category>\n\t<store>-1</store>\n")));
}

void TestRecords::readersConsumeTheirEndTag()
{
    auto decoder =
        decoderAt(QStringLiteral("<items>\n\t<item>\n\t\t<name>A</name>\n\t</item>\n"
                                 "\t<item>\n\t\t<name>B</name>\n\t</item>\n</items>\n<name>after</name>\n"),
                  QStringLiteral("items"));
    QVERIFY(decoder);
    QStringList names;
    while (decoder->getNextTag() && decoder->key() == GRTagItem && !decoder->endTag())
        names.append(GRItem::fromXml(*decoder)->name());
    QCOMPARE(names, QStringList({"A", "B"}));
    QCOMPARE(decoder->key(), quint32(GRTagItems));
    QVERIFY(decoder->endTag());
}

void TestRecords::copies()
{
    auto shop = GRStore::create();
    auto category = GRCategory::create();
    const GRItemPtr apples = addItem(category, QStringLiteral("Apples"), shop);
    apples->setAisle(-4);
    apples->setNeeded(true);
    apples->setNeedCount(6);
    addItem(category, QStringLiteral("Pears"), nullptr);

    GRCategoryPtr copy = category->copy();
    QCOMPARE(copy->guid(), category->guid());
    QCOMPARE(copy->items().size(), 2);
    for (qsizetype i = 0; i < 2; ++i) {
        QVERIFY(copy->items().at(i) != category->items().at(i));
        QCOMPARE(copy->items().at(i)->displayName(), category->items().at(i)->displayName());
        QCOMPARE(copy->items().at(i)->aisle(), category->items().at(i)->aisle());
        QCOMPARE(copy->items().at(i)->category(), copy);
        QCOMPARE(copy->items().at(i)->store(), category->items().at(i)->store());
    }
    QCOMPARE(apples->category(), category);

    // An item's category is a back-reference: it must not keep a dropped copy alive.
    const GRItemPtr survivor = copy->items().at(0);
    copy.reset();
    QVERIFY(!survivor->category());
    QCOMPARE(survivor->store(), shop);
}

void TestRecords::copyCategories()
{
    fillLists();
    GRLists &lists = GRLists::shared();
    const GRCategoryPtr first = lists.categories().at(0);
    const GRItemPtr milk = addItem(first, QStringLiteral("Milk"), lists.stores().at(0));
    const GRItemPtr cheese = addItem(first, QStringLiteral("Cheese"), lists.stores().at(1));
    const GRItemPtr apple = addItem(lists.categories().at(1), QStringLiteral("Apple"), lists.stores().at(0));

    QList<GRItemPtr> shown = {cheese, apple, milk};
    const GRCategoryPtr copy = CopyCategory(first, shown);
    QCOMPARE(shown, QList<GRItemPtr>({copy->items().at(1), apple, copy->items().at(0)}));
    QCOMPARE(first->items(), QList<GRItemPtr>({milk, cheese}));
    QVERIFY(!CopyCategory(nullptr, shown));

    shown = {apple, milk};
    const QList<GRCategoryPtr> copies = CopyCategories(shown);
    QCOMPARE(copies.size(), 2);
    QCOMPARE(copies.at(1)->guid(), lists.categories().at(1)->guid());
    QVERIFY(copies.at(1) != lists.categories().at(1));
    QCOMPARE(shown, QList<GRItemPtr>({copies.at(1)->items().at(0), copies.at(0)->items().at(0)}));
}

void TestRecords::copyStores()
{
    fillLists();
    GRLists &lists = GRLists::shared();
    lists.stores().append(lists.stores().at(1)->copy()); // two stores with one GUID
    QHash<QString, GRStorePtr> byGuid{{QStringLiteral("stale"), GRStore::create()}};
    const QList<GRStorePtr> copies = CopyStores(byGuid);
    QCOMPARE(copies.size(), 3);
    QCOMPARE(byGuid.size(), 2);
    QCOMPARE(byGuid.value(lists.stores().at(0)->guid()), copies.at(0));
    QVERIFY(copies.at(0) != lists.stores().at(0));
    QCOMPARE(copies.at(0)->name(), lists.stores().at(0)->name());

    QCOMPARE(GRStore::storeForGuid(lists.stores().at(1)->guid()), lists.stores().at(1));
    QCOMPARE(GRStore::storeForGuid(lists.stores().at(1)->guid().toLower()), nullptr);
    lists.stores().at(0)->setGuid(QString());
    QCOMPARE(GRStore::storeForGuid(QString()), nullptr);
}

QTEST_GUILESS_MAIN(TestRecords)
#include "tst_records.moc"
