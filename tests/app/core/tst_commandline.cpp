#include "GRAisles.h"
#include "GRCommandLine.h"
#include "GRDatabaseFile.h"
#include "GRGroceryDatabase.h"
#include "GRListText.h"
#include "GRTestSupport.h"

#include <QDir>
#include <QFileInfo>
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

    // Runs the program with its data and settings in dataHome, no display and no runtime folder;
    // its exit status (-1 for a crash), and its output.
    int runProgram(const QStringList &arguments, const QString &dataHome, QByteArray *out, QByteArray *err,
                   const QString &display = QString())
    {
        QProcess process;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.remove(QStringLiteral("DISPLAY"));
        if (!display.isEmpty())
            environment.insert(QStringLiteral("DISPLAY"), display);
        environment.remove(QStringLiteral("QT_QPA_PLATFORM"));
        environment.remove(QStringLiteral("WAYLAND_DISPLAY"));
        environment.remove(QStringLiteral("XDG_SESSION_TYPE"));
        environment.remove(QStringLiteral("XDG_RUNTIME_DIR"));
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
        GRGroceryDatabase database;
        QVERIFY(ReadModernDatabaseData(s_database, database));
        QTEST(GroceryListText(database, needed), "text");
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
        QVERIFY2(err.isEmpty(), err);
        QCOMPARE(GRTestSupport::readFile(database), bytes);
        QCOMPARE(QDir(home.path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot), QStringList{"data"});
        QCOMPARE(QDir(home.filePath(QStringLiteral("data/Marlowick"))).entryList(QDir::Files),
                 QStringList{"Groceries.xml"});

        QCOMPARE(runProgram({QStringLiteral("--version")}, home.path(), &out, &err), 0);
        QVERIFY(out.startsWith("Groceries ") && err.isEmpty());

        // Damaged part-way: what was read is printed, the damage reported, nothing written.
        bytes.replace("<item><name>Chips", "<!-- torn off <item><name>Chips");
        QVERIFY(GRTestSupport::writeFile(database, bytes));
        QCOMPARE(runProgram({QStringLiteral("--list")}, home.path(), &out, &err), 0);
        QVERIFY2(out.endsWith("  [x] Salt\tCorner Shop\tAisle ?\nSnacks\n") && !out.contains("Chips"), out);
        QVERIFY2(err.startsWith("groceries: " + database.toUtf8() + " is damaged; only the 3 items before"),
                 err);
        QCOMPARE(err.count('\n'), 1);
        QCOMPARE(GRTestSupport::readFile(database), bytes);
        QCOMPARE(QDir(home.filePath(QStringLiteral("data/Marlowick"))).entryList(QDir::Files),
                 QStringList{"Groceries.xml"});
    }

    // The export and the e-mail link from the command line: the same bytes the commands make,
    // nothing on standard error when they succeed, status 1 with one line when they can't.
    void exportAndMailto()
    {
        QTemporaryDir home;
        QVERIFY(QDir().mkpath(home.filePath(QStringLiteral("data/Marlowick"))));
        const QString database = home.filePath(QStringLiteral("data/Marlowick/Groceries.xml"));
        QVERIFY(GRTestSupport::writeFile(database, s_database));
        const QString folder = home.filePath(QStringLiteral("out"));
        QVERIFY(QDir().mkpath(folder));
        QVERIFY(GRTestSupport::writeFile(folder + QStringLiteral("/Groceries.rtf"), "old"));
        QByteArray out, err;
        QCOMPARE(runProgram({QStringLiteral("--export-rtf"), folder}, home.path(), &out, &err), 0);
        QVERIFY2(out.isEmpty() && err.isEmpty(), err);
        const QByteArray rtf = GRTestSupport::readFile(folder + QStringLiteral("/Groceries.rtf"));
        QVERIFY2(rtf.startsWith("{\\rtf1") && rtf.contains("Rice\\tab Market\\par") &&
                     rtf.contains("\\u12316?\\tab Beverage\\par"),
                 rtf);
        QCOMPARE(GRTestSupport::readFile(database), s_database);

        QCOMPARE(runProgram({QStringLiteral("--export-rtf"), home.filePath(QStringLiteral("none"))},
                            home.path(), &out, &err),
                 1);
        QVERIFY2(err.startsWith("groceries: Export failed.") && err.count('\n') == 1, err);

        QCOMPARE(runProgram({QStringLiteral("--mailto")}, home.path(), &out, &err), 0);
        QCOMPARE(out, "mailto:?subject=Grocery%20list&body=%283%29%20Milk%0ASalt%0A\n");
        QVERIFY(err.isEmpty());
        QByteArray none = s_database;
        none.replace("<need>1</need>", "");
        QVERIFY(GRTestSupport::writeFile(database, none));
        QCOMPARE(runProgram({QStringLiteral("--mailto")}, home.path(), &out, &err), 1);
        QCOMPARE(err, "groceries: No needed items.\n");
        QCOMPARE(QDir(home.filePath(QStringLiteral("data/Marlowick"))).entryList(QDir::Files),
                 QStringList{"Groceries.xml"});
        QVERIFY(!QFileInfo::exists(home.filePath(QStringLiteral("config"))));
    }

    void displays_data()
    {
        QTest::addColumn<QString>("platforms");
        QTest::addColumn<QString>("display");
        QTest::addColumn<QString>("wayland");
        QTest::addColumn<bool>("reachable");
        QTest::newRow("x11 without DISPLAY") << "xcb"
                                             << ""
                                             << "" << false;
        QTest::newRow("x11") << "xcb"
                             << ":0"
                             << "" << true;
        QTest::newRow("wayland, else x11") << "wayland;xcb"
                                           << ""
                                           << "wayland-0" << true;
        QTest::newRow("wayland without a display") << "wayland"
                                                   << ":0"
                                                   << "" << false;
        QTest::newRow("offscreen needs none") << "offscreen"
                                              << ""
                                              << "" << true;
        QTest::newRow("options after the name") << "xcb:nomitshm"
                                                << ":1"
                                                << "" << true;
    }
    void displays()
    {
        QFETCH(QString, platforms);
        QFETCH(QString, display);
        QFETCH(QString, wayland);
        QString why;
        QTEST(GRCommandLine::displayReachable(platforms.split(';'), display, wayland, &why), "reachable");
    }

    // Usage errors and a window without a display end cleanly, with one line and no window.
    void programRefuses_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QString>("display");
        QTest::addColumn<int>("status");
        QTest::addColumn<QByteArray>("first");
        QTest::newRow("unknown option")
            << QStringList{"--bogus"} << "" << 2 << QByteArray("groceries: unknown option '--bogus'");
        QTest::newRow("stray argument")
            << QStringList{"extra"} << "" << 2 << QByteArray("groceries: unexpected argument 'extra'");
        QTest::newRow("needed alone")
            << QStringList{"--needed"} << "" << 2 << QByteArray("groceries: --needed goes with --list");
        QTest::newRow("export without a folder")
            << QStringList{"--export-rtf"} << "" << 2 << QByteArray("groceries: --export-rtf needs a folder");
        QTest::newRow("two commands")
            << QStringList{"--mailto", "--list"} << "" << 2 << QByteArray("groceries: one command at a time");
        QTest::newRow("no display") << QStringList() << "" << 1
                                    << QByteArray(
                                           "groceries: can't open a window: no display (DISPLAY is not set)");
        QTest::newRow("display refuses")
            << QStringList() << ":97" << 1
            << QByteArray("groceries: can't open a window: no connection to display :97");
    }
    void programRefuses()
    {
        QFETCH(QStringList, arguments);
        QFETCH(QString, display);
        QFETCH(int, status);
        QFETCH(QByteArray, first);
        QTemporaryDir home;
        QByteArray out, err;
        QCOMPARE(runProgram(arguments, home.path(), &out, &err, display), status);
        QVERIFY(out.isEmpty());
        QCOMPARE(err.split('\n').first(), first);
        if (status == 2)
            QVERIFY2(
                err.contains("\nUsage: groceries [--list [--needed] | --export-rtf FOLDER | --mailto]\n"),
                err);
        else
            QCOMPARE(err.count('\n'), 1);
        QCOMPARE(QDir(home.path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot), QStringList());
    }

    void help()
    {
        QTemporaryDir home;
        QByteArray out, err;
        QCOMPARE(runProgram({QStringLiteral("--help")}, home.path(), &out, &err), 0);
        QCOMPARE(QString::fromUtf8(out), GRCommandLine::usage());
        QVERIFY(err.isEmpty());
    }
};

QTEST_MAIN(TestCommandLine)
#include "tst_commandline.moc"
