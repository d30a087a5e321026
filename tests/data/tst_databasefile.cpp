#include "GRCategory.h"
#include "GRDatabaseFile.h"
#include "GRGroceryDatabase.h"
#include "GRItem.h"
#include "GRStore.h"
#include "GRTestSupport.h"

#include <QDir>
#include <QSet>
#include <QTemporaryDir>
#include <QTest>

namespace {

using TS = GRTestSupport;

QByteArray document(const QByteArray &body, const QByteArray &root = " version=\"1\"")
{
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<groceries" + root + ">\n" + body + "</groceries>\n";
}

// The database as "stores|category:item+item,...|columns|aisles|category order", the order "-"
// while manual order is off, and "|unsound" at the end unless the rest of the program can use it:
// every item in its category with a store from the list, every order entry a category of the
// list, once, a column count from 1 to 100 and the aisle order a permutation of the seven groups.
QString describe(const GRGroceryDatabase &lists)
{
    QList<qint64> groups = lists.aisleOrder();
    std::sort(groups.begin(), groups.end());
    bool sound = groups == GRGroceryDatabase::defaultAisleOrder() && lists.columnCount() >= 1 &&
                 lists.columnCount() <= 100;
    QStringList stores, categories, order;
    for (const GRStorePtr &store : lists.stores())
        stores.append(store->name());
    for (const GRCategoryPtr &category : lists.categories()) {
        QStringList items;
        for (const GRItemPtr &item : category->items()) {
            sound = sound && item->category() == category && lists.stores().contains(item->store());
            items.append(item->name());
        }
        categories.append(category->name() + u':' + items.join(u'+'));
    }
    QString aisles;
    for (qint64 group : lists.aisleOrder())
        aisles += QString::number(group);
    QSet<GRCategory *> ordered;
    for (const GRCategoryOrderEntry &entry : lists.categoryOrder()) {
        sound = sound && entry.guid == entry.cat->guid() && lists.categories().contains(entry.cat) &&
                !ordered.contains(entry.cat.get());
        ordered.insert(entry.cat.get());
        order.append(entry.cat->name());
    }
    return QStringList{stores.join(u','), categories.join(u','), QString::number(lists.columnCount()), aisles,
                       lists.manualOrder() ? order.join(u' ') : QStringLiteral("-")}
               .join(u'|') +
           (sound ? "" : "|unsound");
}

// An existing main file and backup (empty: none), the answer to the template selector (-1: it must
// not be asked) and whether it offered the backup; the stores read and whether the compatibility
// alert showed.
// clang-format off
struct OpenRow { QByteArray main, backup; int answer; bool offered; QString stores; bool newer; };
// clang-format on

} // namespace

class TestDatabaseFile : public QObject
{
    Q_OBJECT

    std::unique_ptr<QTemporaryDir> m_dir;
    GRGroceryDatabase m_database;

private slots:
    void initTestCase() { TS::initEnvironment(); }

    void init()
    {
        TS::resetState();
        m_database.clear();
        m_dir = std::make_unique<QTemporaryDir>();
        QVERIFY(m_dir->isValid());
        g_databasePath = m_dir->filePath(QStringLiteral("Groceries.xml"));
    }

    void writesExactDocument()
    {
        // Identity aisle order and automatic category order are left out.
        QCOMPARE(GroceriesXml(m_database).toUtf8(),
                 document("\t<stores></stores>\n\t<categories></categories>\n"
                          "\t<columns>5</columns>\n\t<items></items>\n"));

        // Items are written in name order, whatever order they were read in.
        const QByteArray apple = "\t\t<item>\n\t\t\t<name>Apple</name>\n\t\t\t<category>1</category>\n"
                                 "\t\t\t<store>0</store>\n\t\t\t<aisle>-2</aisle>\n\t\t\t<need>1</need>\n"
                                 "\t\t\t<count>3</count>\n\t\t</item>\n";
        const QByteArray banana = "\t\t<item>\n\t\t\t<name>banana</name>\n\t\t\t<category>0</category>\n"
                                  "\t\t\t<store>1</store>\n\t\t</item>\n";
        const QByteArray cherry =
            "\t\t<item>\n\t\t\t<name>Cherry</name>\n\t\t\t<category>0</category>\n"
            "\t\t\t<store>1</store>\n\t\t\t<aisle>4</aisle>\n\t\t\t<count>5</count>\n\t\t</item>\n";
        const QByteArray lists =
            "\t<stores>\n\t\t<store>\n\t\t\t<name>Corner &amp; Co</name>\n\t\t\t<print>1</print>\n"
            "\t\t\t<color>{10, 20, 30}</color>\n\t\t\t<top>1</top>\n\t\t</store>\n\t\t<store>\n"
            "\t\t\t<name>Market</name>\n\t\t\t<print>0</print>\n\t\t\t<color>{1, 2, 3, 50}</color>\n"
            "\t\t</store>\n\t</stores>\n\t<categories>\n\t\t<category>\n\t\t\t<name>Fruit</name>\n"
            "\t\t</category>\n\t\t<category>\n\t\t\t<name>Dairy</name>\n\t\t</category>\n\t</categories>\n"
            "\t<columns>3</columns>\n\t<aisleOrder>\n\t\t<i>0</i>\n\t\t<i>2</i>\n\t\t<i>1</i>\n\t\t<i>3</i>\n"
            "\t\t<i>4</i>\n\t\t<i>5</i>\n\t\t<i>6</i>\n\t</aisleOrder>\n"
            "\t<categoryOrder>\n\t\t<i>1</i>\n\t\t<i>0</i>\n\t</categoryOrder>\n\t<items>\n";
        QVERIFY(
            ReadModernDatabaseData(document(lists + cherry + banana + apple + "\t</items>\n"), m_database));
        QVERIFY(SaveGroceries(m_database));
        QCOMPARE(TS::readFile(g_databasePath), document(lists + apple + banana + cherry + "\t</items>\n"));
    }

    void readsSections_data()
    {
        QTest::addColumn<QByteArray>("body");
        QTest::addColumn<QString>("read"); // as described; 7 columns and aisles 6543210 before reading

        // clang-format off
        const QByteArray stores = "<stores><store><name>S0</name></store><store><name>S1</name></store></stores>";
        const QByteArray categories = "<categories><category><name>C0</name></category><category><name>C1</name></category></categories>";
        const QByteArray both = stores + categories;
        QTest::newRow("empty sections") << QByteArray("<stores></stores><categories/><items></items>") << "||7|6543210|-";
        QTest::newRow("items in file order, first store and category as fallback")
            << both + "<items><item><name>b</name><category>1</category><store>1</store></item>"
                      "<item><name>a</name><category>9</category><store>-4</store></item>"
                      "<item><name>c</name><category>1</category></item></items>" << "S0,S1|C0:a,C1:b+c|7|6543210|-";
        QTest::newRow("items before stores and categories are dropped")
            << "<items><item><name>lost</name><category>0</category><store>0</store></item></items>" + both << "S0,S1|C0:,C1:|7|6543210|-";
        QTest::newRow("self-closing records")
            << QByteArray("<stores><store/><store><name>S1</name></store></stores><categories><category/></categories>"
                          "<items><item/><item><name>x</name></item></items>") << ",S1|:x|7|6543210|-";
        QTest::newRow("category order drops bad, repeated and early indices")
            << "<categoryOrder><i>0</i></categoryOrder>" + both + "<categoryOrder><i>1</i><i>5</i><i>-1</i><i>1</i><i>0</i></categoryOrder>"
            << "S0,S1|C0:,C1:|7|6543210|C1 C0";
        QTest::newRow("empty category order turns manual order on") << categories + "<categoryOrder></categoryOrder>" << "|C0:,C1:|7|6543210|";
        QTest::newRow("aisle order with a repeat") << QByteArray("<aisleOrder><i>0</i><i>0</i><i>1</i><i>2</i><i>3</i><i>4</i><i>5</i></aisleOrder>") << "||7|0123456|-";
        QTest::newRow("aisle order too long") << QByteArray("<aisleOrder><i>3</i><i>0</i><i>1</i><i>2</i><i>6</i><i>5</i><i>4</i><i>0</i></aisleOrder>") << "||7|0123456|-";
        QTest::newRow("empty aisle order") << QByteArray("<aisleOrder/>") << "||7|0123456|-";
        QTest::newRow("columns zero") << QByteArray("<columns>0</columns>") << "||1|6543210|-";
        QTest::newRow("columns beyond 2^64") << QByteArray("<columns>99999999999999999999999</columns>") << "||100|6543210|-";
        QTest::newRow("unknown sections ignored") << "<notes><store><name>N</name></store></notes>" + stores << "S0,S1||7|6543210|-";
        // clang-format on
    }

    void readsSections()
    {
        QFETCH(QByteArray, body);
        QFETCH(QString, read);

        m_database.setColumnCount(7);
        m_database.aisleOrder() = {6, 5, 4, 3, 2, 1, 0};
        QVERIFY(TS::writeFile(g_databasePath, document(body)));
        QVERIFY(ReadModernDatabase(g_databasePath, m_database));
        QCOMPARE(describe(m_database), read);
    }

    // One row for every file in data/broken and every line of its EXPECTED list, which says whether
    // the reader accepts the file ("ok") or refuses it ("refused").
    void brokenFiles_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<QString>("expected");

        const QString folder = TS::dataPath(QStringLiteral("data/broken/"));
        QMap<QString, QString> rows;
        for (const QString &name : QDir(folder).entryList(QDir::Files))
            rows.insert(name, QString());
        rows.remove(QStringLiteral("EXPECTED"));
        for (const QByteArray &line : TS::readFile(folder + QLatin1String("EXPECTED")).split('\n')) {
            const QList<QByteArray> parts = line.simplified().split(' ');
            if (parts.size() == 2 && !line.startsWith('#'))
                rows.insert(QString::fromUtf8(parts[0]), QString::fromUtf8(parts[1]));
        }
        for (auto it = rows.cbegin(); it != rows.cend(); ++it)
            QTest::newRow(qPrintable(it.key())) << folder + it.key() << it.value();
    }

    // Whatever the file held, what was read is a database the rest of the program can use, and it
    // saves and reads back to the same document.
    void brokenFiles()
    {
        QFETCH(QString, path);
        QFETCH(QString, expected);

        QVERIFY2(expected == QLatin1String("ok") || expected == QLatin1String("refused"), "not in EXPECTED");
        QVERIFY2(QFile::exists(path), "listed in EXPECTED, but missing");
        const bool accepted = expected == QLatin1String("ok");
        QCOMPARE(ReadModernDatabase(path, m_database), accepted);
        QVERIFY(accepted || !IsReadableDatabase(path));
        const QString read = describe(m_database);
        QVERIFY2(!read.endsWith(QLatin1String("|unsound")), qPrintable(read));
        QVERIFY(accepted || read.startsWith(QLatin1String("||")));
        const QString saved = GroceriesXml(m_database);
        GRGroceryDatabase again;
        QVERIFY(ReadModernDatabaseData(saved.toUtf8(), again));
        QCOMPARE(GroceriesXml(again), saved);
    }

    void opening_data()
    {
        QTest::addColumn<OpenRow>("r");
        const QByteArray cat = "<categories><category><name>Cat</name></category></categories>";
        const QByteArray good = document("<stores><store><name>Main</name></store></stores>" + cat);
        const QByteArray saved = document("<stores><store><name>Saved</name></store></stores>" + cat);
        const QByteArray newer = document("<stores/>", " version=\"2\"");
        const QByteArray truncated = saved.left(saved.indexOf("<categories>") + 5);
        const QByteArray none, garbage = "garbage";
        // clang-format off
        QTest::newRow("main reads") << OpenRow{good, saved, -1, false, "Main", false};
        QTest::newRow("main without a version") << OpenRow{document(cat, ""), none, -1, false, "Grocery Store", false};
        QTest::newRow("main version not a number") << OpenRow{document(cat, " version=\"one\""), none, -1, false, "Grocery Store", false};
        QTest::newRow("nothing, cancelled") << OpenRow{none, none, 4, false, "", false};
        QTest::newRow("nothing, minimal") << OpenRow{none, none, 0, false, "Grocery Store", false};
        QTest::newRow("nothing, template") << OpenRow{none, none, 3, false, "Grocery Store,Farmers Market,Health Food Store,Warehouse Club,Pharmacy", false};
        QTest::newRow("broken main, restore") << OpenRow{garbage, saved, 5, true, "Saved", false};
        QTest::newRow("broken main, minimal instead") << OpenRow{garbage, saved, 0, true, "Grocery Store", false};
        QTest::newRow("newer main, restore") << OpenRow{newer, saved, 5, true, "Saved", true};
        QTest::newRow("newer main after another attribute") << OpenRow{document(cat, " lang=\"en\" version=\"2\""), none, 0, false, "Grocery Store", true};
        QTest::newRow("main version beyond 2^64") << OpenRow{document(cat, " version=\"18446744073709551617\""), none, 0, false, "Grocery Store", true};
        QTest::newRow("truncated backup not offered") << OpenRow{none, truncated, 5, false, "Grocery Store", false};
        QTest::newRow("newer backup not offered, silently") << OpenRow{none, newer, 0, false, "Grocery Store", false};
        // clang-format on
    }

    void opening()
    {
        QFETCH(OpenRow, r);
        const QString folder = DatabaseFolder();
        QVERIFY(folder.endsWith(QLatin1String("/Marlowick")));
        QDir(folder).removeRecursively();
        QVERIFY(QDir().mkpath(folder));
        QVERIFY(r.main.isEmpty() || TS::writeFile(folder + QLatin1String("/Groceries.xml"), r.main));
        QVERIFY(r.backup.isEmpty() || TS::writeFile(folder + QLatin1String("/Groceries~.xml"), r.backup));

        int asked = -1; // then whether restoring was offered
        using R = GROpenResult;
        const R opened =
            OpenGroceryDatabase(m_database, folder, [&](bool offer) { return (asked = offer), r.answer; });
        QCOMPARE(opened, r.answer < 0 ? R::Loaded : r.answer == 4 ? R::Quit : R::Created);
        QCOMPARE(asked, r.answer < 0 ? -1 : int(r.offered));
        QCOMPARE(g_databasePath, folder + QLatin1String("/Groceries.xml"));
        QCOMPARE(g_dirty, opened == R::Created);
        QCOMPARE(describe(m_database).section(u'|', 0, 0), r.stores);
        QCOMPARE(m_database.categories().isEmpty(), opened == R::Quit);
        QCOMPARE(QFile::exists(g_databasePath), !r.main.isEmpty());
        QCOMPARE(TS::alerts(), r.newer
                                   ? QStringList{"Groceries compatibility problem.|The groceries database is "
                                                 "newer than this version of Groceries. You need to upgrade "
                                                 "to the latest version."}
                                   : QStringList());
    }

    void noDataFolder()
    {
        GRLogCapture log;
        bool asked = false;
        QCOMPARE(OpenGroceryDatabase(m_database, QString(), [&](bool) { return (asked = true), 1; }),
                 GROpenResult::StartupFailed);
        QVERIFY(!asked && m_database.stores().isEmpty());
        QVERIFY(log.contains(QStringLiteral("Can't find ~/Library/Application Support")));
        const QStringList alerts = TS::alerts();
        QVERIFY2(alerts.size() == 1 &&
                     alerts.first().startsWith("Startup failed.|I couldn't open the grocery list or "
                                               "create a new one. Please contact us for help at ") &&
                     alerts.first().endsWith(u'.'),
                 qPrintable(alerts.join(u'\n')));
    }

    void damagedFileIsKept_data()
    {
        QTest::addColumn<QStringList>("earlier"); // copies kept by earlier starts
        QTest::addColumn<bool>("cut");            // cut off between two tags, or unreadable from a point
        QTest::addColumn<QString>("kept");
        QTest::newRow("first") << QStringList() << false << "Groceries (damaged).xml";
        QTest::newRow("cut short") << QStringList() << true << "Groceries (damaged).xml";
        QTest::newRow("earlier copies stay")
            << QStringList{"Groceries (damaged).xml", "Groceries (damaged 2).xml"} << false
            << "Groceries (damaged 3).xml";
    }

    // What reads before the damage is kept and marked changed; the file as it was stays beside it.
    void damagedFileIsKept()
    {
        QFETCH(QStringList, earlier);
        QFETCH(bool, cut);
        QFETCH(QString, kept);

        const QString folder = m_dir->path();
        QByteArray damaged =
            document("<stores><store><name>Shop</name></store></stores><categories><category><name>Fruit"
                     "</name></category></categories><items><item><name>Apples</name><category>0</category>"
                     "<store>0</store></item><item><name>Pears</name><category>0</category><store>0</store>"
                     "</item><!-- the rest is lost <item><name>Plums</name></item></items>");
        if (cut)
            damaged.truncate(damaged.indexOf("<!--"));
        QVERIFY(TS::writeFile(folder + "/Groceries.xml", damaged));
        for (const QString &name : earlier)
            QVERIFY(TS::writeFile(folder + u'/' + name, name.toUtf8()));

        QCOMPARE(OpenGroceryDatabase(m_database, folder, [](bool) { return 4; }), GROpenResult::Loaded);
        QCOMPARE(describe(m_database), QStringLiteral("Shop|Fruit:Apples+Pears|5|0123456|-"));
        QVERIFY(g_dirty);
        QCOMPARE(TS::readFile(folder + u'/' + kept), damaged);
        QCOMPARE(TS::readFile(g_databasePath), damaged);
        for (const QString &name : earlier)
            QCOMPARE(TS::readFile(folder + u'/' + name), name.toUtf8());
        QCOMPARE(TS::alerts(),
                 QStringList{QStringLiteral("The groceries database is damaged.|I could read only 2 "
                                            "items of it. The file as it was is kept unchanged as \"%1\".")
                                 .arg(folder + u'/' + kept)});

        // The next save replaces the damaged file; the copy stays.
        QVERIFY(SaveGroceries(m_database));
        QCOMPARE(TS::readFile(folder + u'/' + kept), damaged);
    }
};

QTEST_MAIN(TestDatabaseFile)
#include "tst_databasefile.moc"
