#include "GRAisles.h"
#include "GRDatabaseFile.h"
#include "GRListText.h"
#include "GRTestSupport.h"

#include <QDir>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

static const QByteArray s_database =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<groceries version=\"1\">"
    "<stores><store><name>Corner Shop</name></store><store><name>Market</name></store></stores>"
    "<categories><category><name>Dairy</name></category><category><name>Pantry</name></category>"
    "<category><name>Snacks</name></category></categories><items>"
    "<item><name>Milk</name><category>0</category><store>0</store><aisle>-2</aisle><need>1</need><count>3</"
    "count></item>"
    "<item><name>Rice</name><category>1</category><store>1</store><aisle>12</aisle></item>"
    "<item><name>Salt</name><category>1</category><store>0</store><aisle>-9</aisle><need>1</need></item>"
    "<item><name>Chips</name><category>2</category><store>0</store></item></items></groceries>\n";

class TestCommandLine : public QObject
{
    Q_OBJECT

    // Runs the program with its data and settings in dataHome; its exit status, and its output.
    int runProgram(const QStringList &arguments, const QString &dataHome, QByteArray *out, QByteArray *err)
    {
        QProcess process;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.remove(QStringLiteral("DISPLAY"));
        environment.remove(QStringLiteral("QT_QPA_PLATFORM"));
        environment.insert(QStringLiteral("XDG_DATA_HOME"), dataHome + QStringLiteral("/data"));
        environment.insert(QStringLiteral("XDG_CONFIG_HOME"), dataHome + QStringLiteral("/config"));
        process.setProcessEnvironment(environment);
        process.start(QStringLiteral(GR_APP_PATH), arguments);
        if (!process.waitForFinished(30000))
            return -1;
        *out = process.readAllStandardOutput();
        *err = process.readAllStandardError();
        return process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
    }

private slots:
    void initTestCase() { GRTestSupport::initEnvironment(); }

    void aisleNames_data()
    {
        QTest::addColumn<qint64>("aisle");
        QTest::addColumn<QString>("name");
        QTest::newRow("numbered") << qint64(7) << "Aisle 7";
        QTest::newRow("unknown") << qint64(0) << "Aisle ?";
        QTest::newRow("bakery") << qint64(-1) << "Bakery";
        QTest::newRow("wine") << qint64(-6) << "Wine";
        QTest::newRow("beyond the special aisles") << qint64(-7) << "Aisle ?";
    }
    void aisleNames()
    {
        QFETCH(qint64, aisle);
        QTEST(GRAisles::displayName(aisle), "name");
    }

    void listText_data()
    {
        QTest::addColumn<bool>("needed");
        QTest::addColumn<QString>("text");
        QTest::newRow("all")
            << false
            << "Dairy\n  [x] (3) Milk\tCorner Shop\tDairy\nPantry\n  [ ] Rice\tMarket\tAisle 12\n"
               "  [x] Salt\tCorner Shop\tAisle ?\nSnacks\n  [ ] Chips\tCorner Shop\tAisle ?\n";
        QTest::newRow("needed")
            << true
            << "Dairy\n  [x] (3) Milk\tCorner Shop\tDairy\nPantry\n  [x] Salt\tCorner Shop\tAisle ?\n";
    }
    void listText()
    {
        QFETCH(bool, needed);
        GRTestSupport::resetDatabase();
        QVERIFY(ReadModernDatabaseData(s_database));
        QTEST(GroceryListText(needed), "text");
    }

    // The program itself: prints UTF-8, needs no display and writes nothing, not even settings.
    void program()
    {
        QTemporaryDir home;
        QVERIFY(QDir().mkpath(home.filePath(QStringLiteral("data/Marlowick"))));
        const QString database = home.filePath(QStringLiteral("data/Marlowick/Groceries.xml"));
        QByteArray out, err;
        QCOMPARE(runProgram({QStringLiteral("--list")}, home.path(), &out, &err), 1);
        QVERIFY2(err.contains("no readable grocery list at " + database.toUtf8()), err);
        QVERIFY(out.isEmpty());

        QByteArray bytes = s_database;
        bytes.replace("Milk", "Crème fraîche ❄");
        QVERIFY(GRTestSupport::writeFile(database, bytes));
        QCOMPARE(runProgram({QStringLiteral("--list"), QStringLiteral("--needed")}, home.path(), &out, &err),
                 0);
        QVERIFY2(out.startsWith("Dairy\n  [x] (3) Crème fraîche ❄\tCorner Shop\tDairy\n"), out);
        QCOMPARE(GRTestSupport::readFile(database), bytes);
        QCOMPARE(QDir(home.path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot), QStringList{"data"});
        QCOMPARE(QDir(home.filePath(QStringLiteral("data/Marlowick"))).entryList(QDir::Files),
                 QStringList{"Groceries.xml"});

        QCOMPARE(runProgram({QStringLiteral("--needed")}, home.path(), &out, &err), 1);
        QCOMPARE(runProgram({QStringLiteral("--version")}, home.path(), &out, &err), 0);
        QVERIFY(out.startsWith("Groceries "));
    }
};

QTEST_MAIN(TestCommandLine)
#include "tst_commandline.moc"
