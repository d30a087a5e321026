#include "GRAppController.h"
#include "GRCategory.h"
#include "GRDatabaseFile.h"
#include "GRDatabaseLock.h"
#include "GRGroceryEdits.h"
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
#include <QDialog>
#include <QDir>
#include <QSettings>
#include <QTableWidget>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

using TS = GRTestSupport;

// Stands in for the user's mail program.
class MailCatcher : public QObject
{
    Q_OBJECT
public:
    explicit MailCatcher(QList<QUrl> *opened) : m_opened(opened) {}
public slots:
    void open(const QUrl &url) { m_opened->append(url); }

private:
    QList<QUrl> *m_opened;
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

    // One process launches once, so the starts that stop come first. The lock of each is given
    // back, or the next one could not start.
    void secondCopyLeavesTheListAlone()
    {
        QDir(DatabaseFolder()).removeRecursively(); // left by an earlier run
        QVERIFY(QDir().mkpath(DatabaseFolder()));
        const QString path = DatabaseFolder() + QLatin1String("/Groceries.xml");
        QVERIFY(TS::writeFile(path, TS::sampleDatabase()));
        TS::resetState();
        GRDatabaseLock other(DatabaseFolder());
        QCOMPARE(other.acquire(), GRDatabaseLock::Result::Acquired);
        QVERIFY(!GRAppController::sharedInstance().applicationDidFinishLaunching());
        QVERIFY(!GRAppController::sharedInstance().windowController());
        QCOMPARE(TS::alerts().size(), 1);
        QVERIFY(TS::alerts().first().startsWith(QLatin1String("The grocery list is open elsewhere.|")));
        QCOMPARE(TS::readFile(path), TS::sampleDatabase());
        QCOMPARE(QDir(DatabaseFolder()).entryList(QDir::Files | QDir::Hidden),
                 (QStringList{"Groceries.lock", "Groceries.xml"}));
    }

    void cancelledTemplateQuits()
    {
        GRAppController &app = GRAppController::sharedInstance();
        QDir(DatabaseFolder()).removeRecursively();
        TS::resetState();
        QTimer::singleShot(50, [] {
            if (QWidget *dialog = QApplication::activeModalWidget())
                qobject_cast<QDialog *>(dialog)->reject();
        });
        QVERIFY(!app.applicationDidFinishLaunching());
        QVERIFY(!app.windowController());
    }

    // A database made from a template: the notifications in order, the window marked edited, and
    // another tag table current afterwards, as the help viewer's engine leaves it.
    void launchFromTemplate()
    {
        GRAppController &app = GRAppController::sharedInstance();
        TS::resetState();
        int offered = -1;
        app.setTemplateChooser([&](bool offerRestore) { return (offered = offerRestore), 2; });
        const QStringList expected{"mwgroceries.reloadCats", "mwgroceries.updateStores",
                                   "mwgroceries.updateCats"};
        QStringList posted;
        QObject observer;
        for (const QString &name : expected)
            MGNotificationCenter::defaultCenter().addObserver(
                name, &observer, [&posted, name](const QVariantMap &) { posted << name; });
        QVERIFY(app.applicationDidFinishLaunching());
        app.setTemplateChooser(nullptr);
        QCOMPARE(offered, 0);
        QCOMPARE(posted, expected);
        GRWindowController *window = app.windowController();
        QVERIFY(window && window->isVisible() && window->isWindowModified());
        QCOMPARE(app.database().stores().first()->name(), QString("Grocery Store"));
        QCOMPARE(app.currentCategory(), 0);
        QCOMPARE(app.currentStore(), -1);
        QCOMPARE(app.displayItems(), app.database().categories().first()->items());
        QCOMPARE(window->keyList()->rowCount(), 6); // the legend is filled at launch
        // The category order followed the new categories.
        QCOMPARE(app.database().categoryOrder().size(), app.database().categories().size());
        QVERIFY(MGXmlDecoder::keyDecoder() != GroceryKeyTable());
        QVERIFY(QSettings("Marlowick", "Groceries").value("com.marlowick.groceries.run").toBool());

        // Saving clears the mark through the controller's signal.
        QVERIFY(app.saveDocument());
        QVERIFY(!window->isWindowModified());
        QVERIFY(app.applicationShouldTerminate());
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
        QList<QUrl> opened;
        MailCatcher catcher(&opened);
        QDesktopServices::setUrlHandler("mailto", &catcher, "open");
        app.emailList();
        QCOMPARE(opened,
                 QList<QUrl>{QUrl("mailto:sam@example.org?subject=Grocery%20list&body=Apples%0AMilk%0A")});
        GRGroceryEdits::clearChecks(app.database());
        app.emailList();
        QCOMPARE(opened.size(), 1);
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
