#include "GRAisles.h"
#include "GRCommandLine.h"
#include "GRTestSupport.h"

#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

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

    std::unique_ptr<QTemporaryDir> m_home;
    QByteArray m_out, m_err;

    QString home(const char *path = "") const { return m_home->filePath(QString::fromUtf8(path)); }
    QString database() const { return home("data/Marlowick/Groceries.xml"); }
    QStringList dataFiles() const { return QDir(home("data/Marlowick")).entryList(QDir::Files); }

    // Runs the program with its data and settings in the home folder, no display and no runtime
    // folder; its exit status (-1 for a crash). Its output goes to m_out and m_err.
    int run(const QStringList &arguments, const QString &display = QString())
    {
        QProcess process;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        for (const char *name :
             {"DISPLAY", "QT_QPA_PLATFORM", "WAYLAND_DISPLAY", "XDG_SESSION_TYPE", "XDG_RUNTIME_DIR"})
            environment.remove(QString::fromLatin1(name));
        if (!display.isEmpty())
            environment.insert(QStringLiteral("DISPLAY"), display);
        environment.insert(QStringLiteral("XDG_DATA_HOME"), home("data"));
        environment.insert(QStringLiteral("XDG_CONFIG_HOME"), home("config"));
        process.setProcessEnvironment(environment);
        process.start(QStringLiteral(GR_APP_PATH), arguments);
        if (!process.waitForFinished(30000))
            return -1;
        m_out = process.readAllStandardOutput();
        m_err = process.readAllStandardError();
        return process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
    }

private slots:
    void initTestCase() { GRTestSupport::initEnvironment(); }
    void init()
    {
        m_home = std::make_unique<QTemporaryDir>();
        QVERIFY(QDir().mkpath(home("data/Marlowick")));
    }

    void aisleNames()
    {
        const std::pair<qint64, const char *> rows[] = {
            {7, "Aisle 7"}, {0, "Aisle ?"}, {-1, "Bakery"}, {-6, "Wine"}, {-7, "Aisle ?"}};
        for (const auto &[aisle, name] : rows)
            QCOMPARE(GRAisles::displayName(aisle), QString::fromUtf8(name));
    }

    // The program itself: prints UTF-8, needs no display and writes nothing, not even settings.
    void program()
    {
        QCOMPARE(run({"--list"}), 1);
        QVERIFY2(m_err.contains("no readable grocery list at " + database().toUtf8()), m_err);
        QVERIFY(m_out.isEmpty());

        QByteArray bytes = s_database;
        bytes.replace("Milk", "Crème fraîche ❄");
        QVERIFY(GRTestSupport::writeFile(database(), bytes));
        const QByteArray dairy = "Dairy\n  [x] (3) Crème fraîche ❄\tCorner Shop\tDairy\nPantry\n",
                         pantry = "  [ ] Rice\tMarket\tAisle 12\n  [x] Salt\tCorner Shop\tAisle ?\nSnacks\n";
        QCOMPARE(run({"--list"}), 0);
        QCOMPARE(m_out, dairy + pantry + "  [ ] Chips\tCorner Shop\tAisle ?\n");
        QCOMPARE(run({"--list", "--needed"}), 0);
        QCOMPARE(m_out, dairy + "  [x] Salt\tCorner Shop\tAisle ?\n");
        QVERIFY2(m_err.isEmpty(), m_err);
        QCOMPARE(GRTestSupport::readFile(database()), bytes);
        QCOMPARE(QDir(home()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot), QStringList{"data"});
        QCOMPARE(dataFiles(), QStringList{"Groceries.xml"});

        QCOMPARE(run({"--version"}), 0);
        QVERIFY(m_out.startsWith("Groceries ") && m_err.isEmpty());
        QCOMPARE(run({"--help"}), 0);
        QCOMPARE(QString::fromUtf8(m_out), GRCommandLine::usage());
        QVERIFY(m_err.isEmpty());

        // Damaged part-way: what was read is printed, the damage reported, nothing written.
        bytes.replace("<item><name>Chips", "<!-- torn off <item><name>Chips");
        QVERIFY(GRTestSupport::writeFile(database(), bytes));
        QCOMPARE(run({"--list"}), 0);
        QCOMPARE(m_out, dairy + pantry);
        QVERIFY2(
            m_err.startsWith("groceries: " + database().toUtf8() + " is damaged; only the 3 items before"),
            m_err);
        QCOMPARE(m_err.count('\n'), 1);
        QCOMPARE(GRTestSupport::readFile(database()), bytes);
        QCOMPARE(dataFiles(), QStringList{"Groceries.xml"});
    }

    // The export and the e-mail link from the command line: the same bytes the commands make,
    // nothing on standard error when they succeed, status 1 with one line when they can't.
    void exportAndMailto()
    {
        QVERIFY(GRTestSupport::writeFile(database(), s_database));
        QVERIFY(QDir().mkpath(home("out")));
        QVERIFY(GRTestSupport::writeFile(home("out/Groceries.rtf"), "old"));
        QCOMPARE(run({"--export-rtf", home("out")}), 0);
        QVERIFY2(m_out.isEmpty() && m_err.isEmpty(), m_err);
        const QByteArray rtf = GRTestSupport::readFile(home("out/Groceries.rtf"));
        QVERIFY2(rtf.startsWith("{\\rtf1") && rtf.contains("Rice\\tab Market\\par") &&
                     rtf.contains("\\u12316?\\tab Beverage\\par"),
                 rtf);
        QCOMPARE(GRTestSupport::readFile(database()), s_database);
        QCOMPARE(run({"--export-rtf", home("none")}), 1);
        QVERIFY2(m_err.startsWith("groceries: Export failed.") && m_err.count('\n') == 1, m_err);

        QCOMPARE(run({"--mailto"}), 0);
        QCOMPARE(m_out, "mailto:?subject=Grocery%20list&body=%283%29%20Milk%0ASalt%0A\n");
        QVERIFY(m_err.isEmpty());
        QVERIFY(GRTestSupport::writeFile(database(), QByteArray(s_database).replace("<need>1</need>", "")));
        QCOMPARE(run({"--mailto"}), 1);
        QCOMPARE(m_err, "groceries: No needed items.\n");
        QCOMPARE(dataFiles(), QStringList{"Groceries.xml"});
        QVERIFY(!QFileInfo::exists(home("config")));
    }

    // The printed pages as PDF: nothing else written, and no file at all when it can't be made.
    void printPdf()
    {
        QVERIFY(GRTestSupport::writeFile(database(), s_database));
        const std::pair<QStringList, int> rows[] = {
            {{}, 0}, {{"--scope", "needed", "--ignore-page-starts"}, 0}, {{"--scope", "store=Market"}, 0},
            {{"--scope", "store=Nowhere"}, 1}};
        for (const auto &[options, status] : rows) {
            const QString pdf = home("list.pdf");
            QFile::remove(pdf);
            QCOMPARE(run(QStringList{"--print-pdf", pdf} + options), status);
            QVERIFY(m_out.isEmpty());
            QCOMPARE(m_err, status ? QByteArray("groceries: there is no store named \"Nowhere\"\n") : QByteArray());
            QCOMPARE(GRTestSupport::readFile(pdf).startsWith("%PDF-"), status == 0);
        }
        QCOMPARE(run({"--print-pdf", home("no/folder/list.pdf")}), 1);
        QVERIFY2(m_err.startsWith("groceries: could not write ") && m_err.count('\n') == 1, m_err);
        QVERIFY(!QFileInfo::exists(home("no")));
        QCOMPARE(GRTestSupport::readFile(database()), s_database);
        QCOMPARE(dataFiles(), QStringList{"Groceries.xml"});
        QVERIFY(!QFileInfo::exists(home("config")));
    }

    void displays_data()
    {
        QTest::addColumn<QString>("platforms");
        QTest::addColumn<QString>("display");
        QTest::addColumn<QString>("wayland");
        QTest::addColumn<bool>("reachable");
        // clang-format off
        QTest::newRow("x11 without DISPLAY") << "xcb" << "" << "" << false;
        QTest::newRow("x11") << "xcb" << ":0" << "" << true;
        QTest::newRow("wayland, else x11") << "wayland;xcb" << "" << "wayland-0" << true;
        QTest::newRow("wayland without a display") << "wayland" << ":0" << "" << false;
        QTest::newRow("offscreen needs none") << "offscreen" << "" << "" << true;
        QTest::newRow("options after the name") << "xcb:nomitshm" << ":1" << "" << true;
        // clang-format on
    }
    void displays()
    {
        QFETCH(QString, platforms);
        QFETCH(QString, display);
        QFETCH(QString, wayland);
        QString why;
        QTEST(GRCommandLine::displayReachable(platforms.split(';'), display, wayland, &why), "reachable");
    }

    // Usage errors end with the usage, and a window without a display with one line; neither opens a
    // window or writes a file.
    void programRefuses_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QString>("display");
        QTest::addColumn<int>("status");
        QTest::addColumn<QByteArray>("first");
        const QStringList none;
        // clang-format off
        QTest::newRow("unknown option") << QStringList{"--bogus"} << "" << 2 << QByteArray("unknown option '--bogus'");
        QTest::newRow("stray argument") << QStringList{"extra"} << "" << 2 << QByteArray("unexpected argument 'extra'");
        QTest::newRow("needed alone") << QStringList{"--needed"} << "" << 2 << QByteArray("--needed goes with --list");
        QTest::newRow("export without a folder") << QStringList{"--export-rtf"} << "" << 2 << QByteArray("--export-rtf needs a folder");
        QTest::newRow("pdf without a file") << QStringList{"--print-pdf"} << "" << 2 << QByteArray("--print-pdf needs a file");
        QTest::newRow("scope alone") << QStringList{"--scope", "needed"} << "" << 2 << QByteArray("--scope and --ignore-page-starts go with --print-pdf");
        QTest::newRow("unknown scope") << QStringList{"--print-pdf", "x.pdf", "--scope", "all"} << "" << 2 << QByteArray("--scope takes entire, needed or store=NAME");
        QTest::newRow("two commands") << QStringList{"--mailto", "--list"} << "" << 2 << QByteArray("one command at a time");
        QTest::newRow("no display") << none << "" << 1 << QByteArray("can't open a window: no display (DISPLAY is not set)");
        QTest::newRow("display refuses") << none << ":97" << 1 << QByteArray("can't open a window: no connection to display :97");
        // clang-format on
    }
    void programRefuses()
    {
        QFETCH(QStringList, arguments);
        QFETCH(QString, display);
        QFETCH(int, status);
        QFETCH(QByteArray, first);
        QVERIFY(QDir(home("data")).removeRecursively());
        QCOMPARE(run(arguments, display), status);
        QVERIFY(m_out.isEmpty());
        QCOMPARE(m_err,
                 "groceries: " + first + (status == 2 ? "\n\n" + GRCommandLine::usage().toUtf8() : "\n"));
        QCOMPARE(QDir(home()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot), QStringList());
    }
};

QTEST_MAIN(TestCommandLine)
#include "tst_commandline.moc"
