#include "GRCategory.h"
#include "GRGroceryDatabase.h"
#include "GRItem.h"
#include "GRRecordPositions.h"
#include "GRSnapshots.h"
#include "GRStore.h"
#include "GRTagKeys.h"
#include "MGXmlDecoder.h"
#include "MGXmlEncoder.h"

#include <QTest>
#include <QUuid>

namespace {

// The record's XML without the declaration; items name positions in database.
template <typename Record> QString xmlOf(const Record &record, const GRGroceryDatabase &database)
{
    MGXmlEncoder encoder;
    if constexpr (std::is_same_v<Record, GRItem>)
        record.archiveToXml(encoder, GRRecordPositions(database));
    else
        record.archiveToXml(encoder);
    return encoder.xml().section('\n', 1);
}

// Reads the record that xml starts with; null unless the reader stops right after its end tag.
template <typename Record>
std::shared_ptr<Record> readXml(const QString &xml, const GRGroceryDatabase &database)
{
    auto decoder = MGXmlDecoder::fromString("<?xml?>" + xml + "<after/>");
    decoder->getNextTag();
    std::shared_ptr<Record> record;
    if constexpr (std::is_same_v<Record, GRItem>)
        record = Record::fromXml(*decoder, database);
    else
        record = Record::fromXml(*decoder);
    return decoder->getNextTag() && decoder->xmlTag() == "after" ? record : nullptr;
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

    GRGroceryDatabase m_lists;

private slots:
    void initTestCase()
    {
        MGXmlDecoder::setKeyDecoder(std::make_shared<MGXmlDecoder::KeyTable>());
        RegisterGroceryTags();
        QCOMPARE(MGXmlDecoder::keyDecoder(), GroceryKeyTable());
    }

    void init() // two stores and two categories
    {
        m_lists.clear();
        for (int i = 0; i < 2; ++i) {
            m_lists.stores().append(GRStore::create());
            m_lists.categories().append(GRCategory::create());
        }
    }

    void storesAndCategories()
    {
        for (const char *children :
             {"\t<print>0</print>\n", "\t<print>2</print>\n\t<color>{10, 20, 30}</color>\n",
              "\t<print>-1</print>\n\t<color>{10, 20, 30, 50}</color>\n\t<top>1</top>\n"}) {
            const QString xml = "<store>\n\t<name>A &amp; B</name>\n" + QString(children) + "</store>\n";
            // Unknown tags, including one that reads with the aisle's key, are skipped in a store.
            const GRStorePtr store = readXml<GRStore>(
                QString(xml).replace("</store>", "<shelf>7</shelf><aisle>3</aisle></store>"), m_lists);
            QVERIFY(store);
            QCOMPARE(xmlOf(*store, m_lists), xml);
            QCOMPARE(xmlOf(*store->copy(), m_lists), xml);
            QCOMPARE(store->copy()->guid(), store->guid());
        }
        // "top", like "need", is a flag in the low byte of its number.
        for (const auto &[top, set] :
             {std::pair{"256", false}, {"257", true}, {"-255", true}, {"0", false}}) {
            const GRStorePtr store =
                readXml<GRStore>(QString("<store><top>%1</top></store>").arg(top), m_lists);
            QVERIFY(store);
            QCOMPARE(store->topOfPage(), set);
        }

        const QString xml = "<category>\n\t<name>Fish &lt;fresh&gt;</name>\n</category>\n";
        const GRCategoryPtr category =
            readXml<GRCategory>(QString(xml).replace("</category>", "<item>x</item></category>"), m_lists);
        QVERIFY(category);
        addItem(category, QStringLiteral("Cod"), nullptr);
        QCOMPARE(xmlOf(*category, m_lists), xml);
        QCOMPARE(category->guid(), QUuid(category->guid()).toString(QUuid::WithoutBraces).toUpper());
    }

    void items()
    {
        // Each item is read and written again, here without the white space. A position past the end or
        // negative picks the first entry, and an unknown tag reads as the aisle.
        const QString name = "<item><name>Tom's &quot;%1&quot; &lt;b&gt;</name>";
        const QString none = "<category>-1</category><store>-1</store>";
        const QString first = "<category>0</category><store>0</store>";
        // clang-format off
        const std::pair<const char *, QString> rows[] = {
            {"", none}, {"<category>1</category><store>1</store>", "<category>1</category><store>1</store>"},
            {"<store>2</store><category>9</category>", first},
            {"<store>-1</store><category>-5</category>", first},
            {"<store>99999999999999999999</store>", "<category>-1</category><store>0</store>"},
            {"<store>one</store><category>1</category>", "<category>1</category><store>0</store>"},
            {"<shelf>7</shelf>", none + "<aisle>7</aisle>"},
            {"<print>3</print><groceries>4</groceries><top>1</top><i>2</i>", none},
            {"<aisle>4</aisle><aisle>-5</aisle>", none + "<aisle>-5</aisle>"},
            {"<aisle>5000000000</aisle><need>256</need>", none + "<aisle>5000000000</aisle>"},
            {"<need>257</need><count>1</count>", none + "<need>1</need>"},
            {"<count>5</count>", none + "<count>5</count>"}};
        // clang-format on
        const auto reread = [&](const QString &children) {
            const GRItemPtr read = readXml<GRItem>(name + children + "</item>", m_lists);
            return read ? xmlOf(*read, m_lists).remove('\n').remove('\t') : QString();
        };
        for (const auto &[children, written] : rows)
            QCOMPARE(reread(children), name + written + "</item>");
        QVERIFY(m_lists.categories().at(1)->items().isEmpty()); // reading adds nothing
        m_lists.clear();
        QCOMPARE(reread("<category>0</category><store>3</store>"), name + none + "</item>");
    }

    // Every record keeps the name a save writes and a reload reads, whichever way it came in.
    void namesAreCleaned_data()
    {
        QTest::addColumn<QString>("given");
        QTest::addColumn<QString>("kept");
        QTest::newRow("plain") << "Oat milk"
                               << "Oat milk";
        QTest::newRow("tab and line break inside") << "Oat\tmilk\r\n2%"
                                                   << "Oat milk  2%";
        QTest::newRow("around") << " \tMilk\n"
                                << "Milk";
        QTest::newRow("C0, DEL and C1") << QString("a\x01"
                                                   "b\x7f"
                                                   "c") +
                                               QChar(0x85) + "d"
                                        << "a b c d";
        QTest::newRow("lone surrogates")
            << QString("pear") + QChar(0xDC00) + QChar(0xD800) + "!" + QChar(0xDBFF)
            << QString("pear") + QChar(0xFFFD) + QChar(0xFFFD) + "!" + QChar(0xFFFD);
        QTest::newRow("pair kept") << QString::fromUtf8("Pear \xF0\x9F\x8D\x90")
                                   << QString::fromUtf8("Pear \xF0\x9F\x8D\x90");
        QTest::newRow("nothing left") << "\t\n"
                                      << "";
    }

    void namesAreCleaned()
    {
        QFETCH(QString, given);
        QFETCH(QString, kept);
        GRItem item;
        item.setName(given);
        QCOMPARE(item.name(), kept);
        GRStorePtr store = GRStore::create();
        store->setName(given);
        QCOMPARE(store->name(), kept);
        GRCategoryPtr category = GRCategory::create();
        category->setName(given);
        QCOMPARE(category->name(), kept);
        QCOMPARE(GRCleanName(kept), kept);
    }

    // The undo snapshots.
    void copies()
    {
        const GRCategoryPtr first = m_lists.categories().at(0);
        const GRItemPtr milk = addItem(first, QStringLiteral("Milk"), m_lists.stores().at(0));
        milk->setAisle(-4);
        milk->setNeeded(true);
        milk->setNeedCount(6);
        const GRItemPtr cheese = addItem(first, QStringLiteral("Cheese"), nullptr);
        const GRItemPtr apple =
            addItem(m_lists.categories().at(1), QStringLiteral("Apple"), m_lists.stores().at(0));
        apple->setNeedCount(3); // but not needed
        QCOMPARE(milk->displayName(), "(6) Milk");
        QCOMPARE(apple->displayName(), "Apple");

        QList<GRItemPtr> shown = {cheese, apple, milk};
        GRCategoryPtr copy = CopyCategory(first, shown);
        QCOMPARE(shown, QList<GRItemPtr>({copy->items().at(1), apple, copy->items().at(0)}));
        QCOMPARE(first->items(), QList<GRItemPtr>({milk, cheese}));
        QCOMPARE(copy->guid(), first->guid());
        for (qsizetype i = 0; i < 2; ++i) { // the copies write the same, bar their category's position
            QCOMPARE(copy->items().at(i)->category(), copy);
            QCOMPARE(xmlOf(*copy->items().at(i), m_lists),
                     xmlOf(*first->items().at(i), m_lists).replace("<category>0<", "<category>-1<"));
        }
        QVERIFY(!CopyCategory(nullptr, shown));
        copy.reset(); // an item's category is a back-reference and must not keep a dropped copy alive
        QVERIFY(!shown.at(0)->category());

        shown = {apple, milk};
        const QList<GRCategoryPtr> categories = CopyCategories(m_lists.categories(), shown);
        QCOMPARE(categories.size(), 2);
        QCOMPARE(categories.at(1)->guid(), m_lists.categories().at(1)->guid());
        QCOMPARE(shown, QList<GRItemPtr>({categories.at(1)->items().at(0), categories.at(0)->items().at(0)}));

        m_lists.stores().append(m_lists.stores().at(1)->copy()); // two stores with one GUID
        QHash<QString, GRStorePtr> byGuid{{QStringLiteral("stale"), GRStore::create()}};
        const QList<GRStorePtr> stores = CopyStores(m_lists.stores(), byGuid);
        QCOMPARE(stores.size(), 3);
        QCOMPARE(byGuid.size(), 2);
        QCOMPARE(byGuid.value(m_lists.stores().at(0)->guid()), stores.at(0));
        QVERIFY(stores.at(0) != m_lists.stores().at(0));
        QCOMPARE(m_lists.storeForGuid(m_lists.stores().at(1)->guid()), m_lists.stores().at(1));
        QCOMPARE(m_lists.storeForGuid(m_lists.stores().at(1)->guid().toLower()), nullptr);
        m_lists.stores().at(0)->setGuid(QString());
        QCOMPARE(m_lists.storeForGuid(QString()), nullptr);
    }
};

QTEST_GUILESS_MAIN(TestRecords)
#include "tst_records.moc"
