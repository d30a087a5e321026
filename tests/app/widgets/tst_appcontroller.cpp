#include "GRAppController.h"
#include "GRCategory.h"
#include "GRDatabaseFile.h"
#include "GRDatabaseLock.h"
#include "GRGroceryEdits.h"
#include "GRNames.h"
#include "GRPrefController.h"
#include "GRStore.h"
#include "GRTagKeys.h"
#include "GRTestSupport.h"
#include "GRWindowController.h"
#include "MGAlert.h"
#include "MGNotificationCenter.h"
#include "MGXmlDecoder.h"

#include <QApplication>
#include <QDesktopServices>
#include <QDir>
#include <QSettings>
#include <QTableWidget>
#include <QTemporaryDir>
#include <QTest>

using TS = GRTestSupport;

// Stands in for the user's mail program.
class MailCatcher : public QObject
{
    Q_OBJECT
public:
    QList<QUrl> opened;
public slots:
    void open(const QUrl &url) { opened.append(url); }
};

class TestAppController : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        TS::initEnvironment();
        QApplication::setQuitOnLastWindowClosed(false);
    }

    // One process launches once, so the starts that stop come first: another copy holds the lock,
    // then the template is cancelled. Each gives the lock back, or the next could not start.
    void launch()
    {
        GRAppController &app = GRAppController::sharedInstance();
        const QString folder = DatabaseFolder(), path = folder + QLatin1String("/Groceries.xml");
        QDir(folder).removeRecursively(); // left by an earlier run
        QVERIFY(QDir().mkpath(folder));
        QVERIFY(TS::writeFile(path, TS::sampleDatabase()));
        TS::resetState();
        auto other = std::make_unique<GRDatabaseLock>(folder);
        QCOMPARE(other->acquire(), GRDatabaseLock::Result::Acquired);
        QVERIFY(!app.applicationDidFinishLaunching());
        QVERIFY(TS::alerts().value(0).startsWith(QLatin1String("The grocery list is open elsewhere.|")));
        QCOMPARE(TS::readFile(path), TS::sampleDatabase());
        QCOMPARE(QDir(folder).entryList(QDir::Files | QDir::Hidden),
                 (QStringList{"Groceries.lock", "Groceries.xml"}));
        other.reset();

        QVERIFY(QDir(folder).removeRecursively());
        app.setTemplateChooser([](bool) { return int(GRTemplateCancel); });
        QVERIFY(!app.applicationDidFinishLaunching());
        QVERIFY(!app.windowController());

        // From a template: the notifications in order, the window marked edited, and another tag
        // table current afterwards, as the help viewer's engine leaves it.
        TS::resetState();
        app.setTemplateChooser([](bool) { return int(GRTemplateVegetarian); });
        const QStringList expected{GRReloadCatsNotification, GRUpdateStoresNotification,
                                   GRUpdateCatsNotification};
        QStringList posted;
        QObject observer;
        for (const QString &name : expected)
            MGNotificationCenter::defaultCenter().addObserver(
                name, &observer, [&posted, name](const QVariantMap &) { posted << name; });
        QVERIFY(app.applicationDidFinishLaunching());
        app.setTemplateChooser(nullptr);
        QCOMPARE(posted, expected);
        GRWindowController *window = app.windowController();
        QVERIFY(window && window->isVisible() && window->isWindowModified());
        QCOMPARE(app.currentCategory(), 0);
        QCOMPARE(app.displayItems(), app.database().categories().first()->items());
        QCOMPARE(window->keyList()->rowCount(), 6); // the legend is filled at launch
        // The category order followed the new categories.
        QCOMPARE(app.database().categoryOrder().size(), app.database().categories().size());
        QVERIFY(MGXmlDecoder::keyDecoder() != GroceryKeyTable());
        QVERIFY(QSettings("Marlowick", "Groceries").value("com.marlowick.groceries.run").toBool());

        // Saving clears the mark through the controller's signal.
        QVERIFY(app.saveDocument());
        QVERIFY(!window->isWindowModified());
        delete window;
    }

    // The application's list commands: the e-mail link reaches the mail handler, nothing needed
    // says so; the export goes to the chosen folder, a folder that can't be written says so.
    void emailAndExport()
    {
        GRAppController &app = GRAppController::sharedInstance();
        TS::resetState();
        app.database().clear();
        QVERIFY(ReadModernDatabaseData(TS::sampleDatabase(), app.database()));
        GRPrefController::sharedInstance().setEmailTarget("sam@example.org");
        MailCatcher catcher;
        QDesktopServices::setUrlHandler("mailto", &catcher, "open");
        app.emailList();
        QCOMPARE(catcher.opened,
                 QList<QUrl>{QUrl("mailto:sam@example.org?subject=Grocery%20list&body=Apples%0AMilk%0A")});
        GRGroceryEdits::clearChecks(app.database());
        app.emailList();
        QCOMPARE(catcher.opened.size(), 1);
        QCOMPARE(MGAlert::sharedInstance().shownAlerts().last().message, "No needed items.");
        QDesktopServices::unsetUrlHandler("mailto");

        QTemporaryDir dir;
        app.setNextExportFolder(dir.path());
        app.exportList();
        QVERIFY(TS::readFile(dir.filePath("Groceries.rtf")).contains("Buttermilk\\tab Bakery Bros\\par"));
        app.setNextExportFolder(dir.filePath("gone"));
        GRLogCapture log;
        app.exportList();
        QCOMPARE(MGAlert::sharedInstance().shownAlerts().last().message, "Export failed.");
        QVERIFY(log.contains("RTF export failed to " + dir.filePath("gone/Groceries.rtf")));
    }
};

QTEST_MAIN(TestAppController)
#include "tst_appcontroller.moc"
