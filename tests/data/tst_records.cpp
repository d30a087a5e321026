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

static GRItemPtr addItem(const GRCategoryPtr &category, const QString &name)
{
    auto item = GRItem::create();
    item->setName(name);
    item->setCategory(category);
    category->items().append(item);
    return item;
}

class TestRecords : public QObject
{
    Q_OBJECT

    GRGroceryDatabase m_lists;

    // Reads the record that xml holds and writes it again without the white space; empty unless the
    // reader stops right after its end tag. Items name positions in m_lists.
    QString reread(const QString &xml)
    {
        auto decoder = MGXmlDecoder::fromString("<?xml?>" + xml + "<after/>");
        decoder->getNextTag();
        MGXmlEncoder encoder;
        if (decoder->xmlTag() == "item")
            GRItem::fromXml(*decoder, m_lists)->archiveToXml(encoder, GRRecordPositions(m_lists));
        else if (decoder->xmlTag() == "store")
            GRStore::fromXml(*decoder)->archiveToXml(encoder);
        else
            GRCategory::fromXml(*decoder)->archiveToXml(encoder);
        if (!decoder->getNextTag() || decoder->xmlTag() != "after")
            return QString();
        return encoder.xml().section('\n', 1).remove('\n').remove('\t');
    }

private slots:
    void initTestCase() { RegisterGroceryTags(); }

    void init() // two stores and two categories
    {
        m_lists.clear();
        for (int i = 0; i < 2; ++i) {
            m_lists.stores().append(GRStore::create());
            m_lists.categories().append(GRCategory::create());
        }
    }

    // Unknown tags are skipped, in a store even one that reads with the aisle's key, but in an item an
    // unknown tag reads as the aisle. A position past the end picks the first entry.
    // "top" and "need" are flags in the low byte of their numbers.
    void readAndWrite()
    {
        const QString name = "<name>Tom's &quot;A&quot; &lt;b&gt;</name>";
        const auto item = [&](const QString &children) { return "<item>" + name + children + "</item>"; };
        const QString none = "<category>-1</category><store>-1</store>";
        const QString fields = "<print>-1</print><color>{10, 20, 30, 50}</color><top>1</top>";
        // clang-format off
        const std::pair<QString, QString> rows[] = {
            {"<store>" + name + fields + "<shelf>7</shelf><aisle>3</aisle></store>", "<store>" + name + fields + "</store>"},
            {"<store><top>256</top></store>", "<store><print>0</print></store>"},
            {"<store><top>257</top></store>", "<store><print>0</print><top>1</top></store>"},
            {"<category>" + name + "<item>x</item></category>", "<category>" + name + "</category>"},
            {item(""), item(none)}, {item("<store>2</store><category>9</category>"), item("<category>0</category><store>0</store>")},
            {item("<store>99999999999999999999</store>"), item("<category>-1</category><store>0</store>")},
            {item("<store>one</store><category>1</category>"), item("<category>1</category><store>0</store>")},
            {item("<shelf>7</shelf>"), item(none + "<aisle>7</aisle>")},
            {item("<print>3</print><groceries>4</groceries><top>1</top><i>2</i>"), item(none)},
            {item("<aisle>4</aisle><aisle>-5</aisle>"), item(none + "<aisle>-5</aisle>")},
            {item("<aisle>5000000000</aisle><need>256</need>"), item(none + "<aisle>5000000000</aisle>")},
            {item("<need>257</need><count>1</count>"), item(none + "<need>1</need>")},
            {item("<count>5</count>"), item(none + "<count>5</count>")}};
        // clang-format on
        for (const auto &[xml, written] : rows)
            QCOMPARE(reread(xml), written);
        QVERIFY(m_lists.categories().at(1)->items().isEmpty()); // reading adds nothing
        m_lists.clear();
        QCOMPARE(reread(item("<category>0</category><store>3</store>")), item(none));
    }

    // Every record keeps the name a save writes and a reload reads, whichever way it came in. A lone
    // high surrogate before a pair goes; the pair stays.
    void namesAreCleaned()
    {
        const QString pear = QString::fromUtf8("\xF0\x9F\x8D\x90!");
        const std::pair<QString, QString> rows[] = {
            {QString("a\tb\r\n") + QChar(1) + "c" + QChar(0x7f) + "d" + QChar(0x85) + "e", "a b   c d e"},
            {" \tMilk\n", "Milk"},
            {"\t\n", ""},
            {QString("pear") + QChar(0xDC00) + QChar(0xD800) + pear + QChar(0xDBFF),
             QString("pear") + QChar(0xFFFD) + QChar(0xFFFD) + pear + QChar(0xFFFD)}};
        for (const auto &[given, kept] : rows) {
            GRItem item;
            item.setName(given);
            const GRStorePtr store = GRStore::create();
            store->setName(given);
            const GRCategoryPtr category = GRCategory::create();
            category->setName(given);
            QCOMPARE(QStringList({item.name(), store->name(), category->name(), GRCleanName(kept)}),
                     QStringList(4, kept));
        }
    }

    // The undo snapshots. An item shows its count only while it is needed.
    void copies()
    {
        const GRItemPtr milk = addItem(m_lists.categories().at(0), QStringLiteral("Milk"));
        milk->setNeeded(true);
        milk->setNeedCount(6);
        const GRItemPtr apple = addItem(m_lists.categories().at(1), QStringLiteral("Apple"));
        apple->setNeedCount(3);
        QCOMPARE(milk->displayName(), "(6) Milk");
        QCOMPARE(apple->displayName(), "Apple");

        QList<GRItemPtr> shown = {milk};
        GRCategoryPtr copy = CopyCategory(m_lists.categories().at(0), shown);
        copy.reset(); // an item's category is a back-reference and must not keep a dropped copy alive
        QVERIFY(!shown.at(0)->category());

        m_lists.stores().append(m_lists.stores().at(1)->copy()); // two stores with one GUID
        QHash<QString, GRStorePtr> byGuid;
        const QList<GRStorePtr> stores = CopyStores(m_lists.stores(), byGuid);
        QCOMPARE(stores.size(), 3);
        QCOMPARE(byGuid.size(), 2);
        QCOMPARE(byGuid.value(m_lists.stores().at(0)->guid()), stores.at(0));
        QVERIFY(stores.at(0) != m_lists.stores().at(0));
        m_lists.stores().at(0)->setGuid(QString()); // a missing GUID names no store
        QCOMPARE(m_lists.storeForGuid(QString()), nullptr);
    }
};

QTEST_GUILESS_MAIN(TestRecords)
#include "tst_records.moc"
