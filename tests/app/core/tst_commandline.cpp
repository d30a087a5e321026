#include "GRCommandLine.h"
#include "GRTestSupport.h"

#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <tuple>

static const QByteArray s_database =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<groceries version=\"1\">"
    "<stores><store><name>Corner Shop</name></store><store><name>Market</name></store></stores>"
    "<categories><category><name>Dairy</name></category><category><name>Pantry</name></category>"
    "<category><name>Snacks</name></category></categories><items>"
    "<item><name>Milk</name><category>0</category><store>0</store><aisle>-2</aisle><need>1</need><count>3</"
    "count></item>"
    "<item><name>Crème fraîche ❄</name><category>1</category><store>1</store><aisle>12</aisle></item>"
    "<item><name>Salt</name><category>1</category><store>0</store><aisle>-7</aisle><need>1</need></item>"
    "<item><name>Chips</name><category>2</category><store>0</store><aisle>-6</aisle></item></items></"
    "groceries>\n";

class TestCommandLine : public QObject
{
    Q_OBJECT

    QTemporaryDir m_home;
    QByteArray m_out, m_err;

    QString home(const QString &path = QString()) const { return m_home.filePath(path); }
    QString database() const { return home("data/Marlowick/Groceries.xml"); }

    // Runs the program in the home folder with its data and settings there, no display and no
    // runtime folder; its exit status (-1 for a crash). Its output goes to m_out and m_err.
    int run(const QStringList &arguments, const QString &display)
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
        process.setWorkingDirectory(home());
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
        QVERIFY(QDir(home()).removeRecursively() && QDir().mkpath(home("out")));
        QVERIFY(GRTestSupport::writeFile(home("out/Groceries.rtf"), "old"));
    }

    // The program itself, whose output is read by other programs. Usage errors end with the usage
    // and status 2, a window without a display gets one line.
    void program_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QString>("display");
        QTest::addColumn<QByteArray>("list"); // the database file; none when empty
        QTest::addColumn<int>("status");
        QTest::addColumn<QString>("out");
        QTest::addColumn<QString>("err");     // all of it, or without a newline the start of its one line
        QTest::addColumn<QString>("file");    // under the home folder
        QTest::addColumn<QString>("content"); // part of that file; empty: there is no such file
        const QByteArray none,
            damaged = QByteArray(s_database).replace("<item><name>Chips", "<!-- torn off <item><name>Chips"),
            unneeded = QByteArray(s_database).replace("<need>1</need>", "");
        const QString
            dairy = "Dairy\n  [x] (3) Milk\tCorner Shop\tDairy\n",
            pantry =
                "Pantry\n  [ ] Crème fraîche ❄\tMarket\tAisle 12\n  [x] Salt\tCorner Shop\tAisle ?\nSnacks\n",
            usage = "\n\n" + GRCommandLine::usage(), db = database();
        const QStringList pdf{"--print-pdf", "out/list.pdf"};
        // clang-format off
        QTest::newRow("list") << QStringList{"--list"} << "" << s_database << 0 << dairy + pantry + "  [ ] Chips\tCorner Shop\tWine\n" << "" << "" << "";
        QTest::newRow("needed") << QStringList{"--list", "--needed"} << "" << s_database << 0 << dairy + "Pantry\n  [x] Salt\tCorner Shop\tAisle ?\n" << "" << "" << "";
        QTest::newRow("damaged part-way") << QStringList{"--list"} << "" << damaged << 0 << dairy + pantry << "groceries: " + db + " is damaged; only the 3 items before" << "" << "";
        QTest::newRow("no list") << QStringList{"--list"} << "" << none << 1 << "" << "groceries: no readable grocery list at " + db + "\n" << "" << "";
        QTest::newRow("version") << QStringList{"--version"} << "" << none << 0 << "Groceries " GR_VERSION "\n" << "" << "" << "";
        QTest::newRow("help") << QStringList{"--help"} << "" << none << 0 << GRCommandLine::usage() << "" << "" << "";
        QTest::newRow("export") << QStringList{"--export-rtf", "out"} << "" << s_database << 0 << "" << "" << "out/Groceries.rtf" << "\\u12316?\\tab Beverage\\par";
        QTest::newRow("export to no folder") << QStringList{"--export-rtf", "none"} << "" << s_database << 1 << "" << "groceries: Export failed." << "none/Groceries.rtf" << "";
        QTest::newRow("mailto") << QStringList{"--mailto"} << "" << s_database << 0 << "mailto:?subject=Grocery%20list&body=%283%29%20Milk%0ASalt%0A\n" << "" << "" << "";
        QTest::newRow("mailto, nothing needed") << QStringList{"--mailto"} << "" << unneeded << 1 << "" << "groceries: No needed items.\n" << "" << "";
        QTest::newRow("pdf of the needed") << pdf + QStringList{"--scope", "needed", "--ignore-page-starts"} << "" << s_database << 0 << "" << "" << "out/list.pdf" << "%PDF-";
        QTest::newRow("pdf of a store") << pdf + QStringList{"--scope", "store=Market"} << "" << s_database << 0 << "" << "" << "out/list.pdf" << "%PDF-";
        QTest::newRow("pdf of no store") << pdf + QStringList{"--scope", "store=Nowhere"} << "" << s_database << 1 << "" << "groceries: there is no store named \"Nowhere\"\n" << "out/list.pdf" << "";
        QTest::newRow("pdf into no folder") << QStringList{"--print-pdf", "no/folder/list.pdf"} << "" << s_database << 1 << "" << "groceries: could not write " << "no/folder/list.pdf" << "";
        QTest::newRow("unknown option") << QStringList{"--bogus"} << "" << none << 2 << "" << "groceries: unknown option '--bogus'" + usage << "" << "";
        QTest::newRow("stray argument") << QStringList{"extra"} << "" << none << 2 << "" << "groceries: unexpected argument 'extra'" + usage << "" << "";
        QTest::newRow("needed alone") << QStringList{"--needed"} << "" << none << 2 << "" << "groceries: --needed goes with --list" + usage << "" << "";
        QTest::newRow("export without a folder") << QStringList{"--export-rtf"} << "" << none << 2 << "" << "groceries: --export-rtf needs a folder" + usage << "" << "";
        QTest::newRow("pdf without a file") << QStringList{"--print-pdf"} << "" << none << 2 << "" << "groceries: --print-pdf needs a file" + usage << "" << "";
        QTest::newRow("scope alone") << QStringList{"--scope", "needed"} << "" << none << 2 << "" << "groceries: --scope and --ignore-page-starts go with --print-pdf" + usage << "" << "";
        QTest::newRow("unknown scope") << QStringList{"--print-pdf", "x.pdf", "--scope", "all"} << "" << none << 2 << "" << "groceries: --scope takes entire, needed or store=NAME" + usage << "" << "";
        QTest::newRow("two commands") << QStringList{"--mailto", "--list"} << "" << none << 2 << "" << "groceries: one command at a time" + usage << "" << "";
        QTest::newRow("no display") << QStringList() << "" << none << 1 << "" << "groceries: can't open a window: no display (DISPLAY is not set)\n" << "" << "";
        QTest::newRow("display refuses") << QStringList() << ":97" << none << 1 << "" << "groceries: can't open a window: no connection to display :97\n" << "" << "";
        // clang-format on
    }
    // Nothing is written but the file asked for: not the list, its backup or lock, nor the settings.
    void program()
    {
        QFETCH(QStringList, arguments);
        QFETCH(QString, display);
        QFETCH(QByteArray, list);
        QFETCH(QString, err);
        QFETCH(QString, file);
        QFETCH(QString, content);
        QVERIFY(list.isEmpty() ||
                (QDir().mkpath(home("data/Marlowick")) && GRTestSupport::writeFile(database(), list)));
        QTEST(run(arguments, display), "status");
        QTEST(QString::fromUtf8(m_out), "out");
        const QString errors = QString::fromUtf8(m_err);
        QVERIFY2(err.isEmpty() || err.endsWith(u'\n') ? errors == err
                                                      : errors.startsWith(err) && errors.count(u'\n') == 1,
                 m_err);
        if (!file.isEmpty())
            QVERIFY2(content.isEmpty() ? !QFileInfo::exists(home(file))
                                       : GRTestSupport::readFile(home(file)).contains(content.toUtf8()),
                     qPrintable(file));
        QCOMPARE(GRTestSupport::readFile(database()), list);
        QCOMPARE(QDir(home("data/Marlowick")).entryList(QDir::Files | QDir::Hidden),
                 list.isEmpty() ? QStringList() : QStringList{"Groceries.xml"});
        QCOMPARE(QDir(home()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot),
                 list.isEmpty() ? QStringList{"out"} : (QStringList{"data", "out"}));
    }

    // Platforms, DISPLAY and WAYLAND_DISPLAY the program itself can't be given here.
    void displays()
    {
        const std::tuple<QString, QString, QString, bool> rows[] = {{"wayland;xcb", "", "wayland-0", true},
                                                                    {"wayland", ":0", "", false},
                                                                    {"offscreen", "", "", true},
                                                                    {"xcb:nomitshm", ":1", "", true}};
        for (const auto &[platforms, display, wayland, reachable] : rows)
            QCOMPARE(GRCommandLine::displayReachable(platforms.split(';'), display, wayland, nullptr),
                     reachable);
    }
};

QTEST_MAIN(TestCommandLine)
#include "tst_commandline.moc"
