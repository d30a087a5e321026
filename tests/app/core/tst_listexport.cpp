#include "GRCategory.h"
#include "GRDatabaseFile.h"
#include "GRGroceryDatabase.h"
#include "GRItem.h"
#include "GRKeyNames.h"
#include "GRListExport.h"
#include "GRTestSupport.h"

#include <QTest>

namespace {

// Names that need escaping in RTF, a category without items, and items out of order.
const QByteArray Database = R"(<?xml version="1.0" encoding="UTF-8"?><groceries version="1"><stores>
<store><name>Corner {Shop}</name></store><store><name>Épicerie</name></store></stores><categories>
<category><name>Tea \ Coffee</name></category><category><name>Empty</name></category></categories><items>
<item><name>matcha 抹茶</name><category>0</category><store>1</store><need>1</need></item>
<item><name>Earl Grey ❄</name><category>0</category><store>0</store></item>
<item><name>chai</name><category>0</category><store>0</store><need>1</need><count>2</count></item>
</items></groceries>)";

} // namespace

class TestListExport : public QObject
{
    Q_OBJECT

    GRGroceryDatabase m_db;

private slots:
    void initTestCase()
    {
        GRTestSupport::initEnvironment();
        g_customKeyNames.clear();
        BuildKeyStrings();
    }

    void init()
    {
        m_db.clear();
        QVERIFY(ReadModernDatabaseData(Database, m_db));
    }

    // Compared with a file that LibreOffice Writer was seen to open with bold headings, the
    // items and stores a tab apart, and every character intact.
    void rtf()
    {
        const QByteArray rtf = GRListExport::exportRtf(m_db);
        QCOMPARE(rtf, GRTestSupport::readFile(GRTestSupport::dataPath("data/export/Groceries.rtf")));
        QCOMPARE(m_db.categories().first()->items().first()->name(), "chai"); // sorted in place
    }

    void mailto_data()
    {
        QTest::addColumn<QStringList>("needed"); // name or name*count
        QTest::addColumn<QString>("address");
        QTest::addColumn<QString>("body"); // empty: no link
        // clang-format off
        QTest::newRow("the same name once") << QStringList{"Milk", "Bread", "Milk"} << "" << "Bread%0AMilk%0A";
        QTest::newRow("case matters, capitals first") << QStringList{"milk", "Milk"} << "" << "Milk%0Amilk%0A";
        QTest::newRow("count and reserved characters") << QStringList{"Salt & pepper*3"} << "" << "%283%29%20Salt%20%26%20pepper%0A";
        QTest::newRow("empty name at the head") << QStringList{"", "Eggs"} << "" << "Eggs%0A";
        QTest::newRow("nothing needed") << QStringList() << "" << "";
        QTest::newRow("address that makes no link") << QStringList{"Eggs"} << "a b@c d" << "";
        // clang-format on
    }
    void mailto()
    {
        QFETCH(QStringList, needed);
        QFETCH(QString, address);
        QFETCH(QString, body);
        const GRCategoryPtr category = m_db.categories().last();
        for (const QString &entry : needed) {
            const GRItemPtr item = GRItem::create();
            item->setName(entry.section('*', 0, 0));
            item->setNeedCount(entry.section('*', 1).toULongLong());
            item->setNeeded(true);
            item->setCategory(category);
            category->items() << item;
        }
        for (const GRItemPtr &item : m_db.categories().first()->items())
            item->setNeeded(false);
        QCOMPARE(GRListExport::mailtoLink(m_db, address),
                 body.isEmpty() ? QString() : "mailto:" + address + "?subject=Grocery%20list&body=" + body);
    }
};

QTEST_MAIN(TestListExport)
#include "tst_listexport.moc"
