#include "GRAppController.h"
#include "GRCategory.h"
#include "GRDatabaseFile.h"
#include "GRGroupsController.h"
#include "GRStore.h"
#include "GRTagKeys.h"
#include "GRTestSupport.h"
#include "GRWindowController.h"
#include "MGNotificationCenter.h"
#include "MGXmlDecoder.h"

#include <QApplication>
#include <QDialog>
#include <QDir>
#include <QSettings>
#include <QTableWidget>
#include <QTest>
#include <QTimer>

using TS = GRTestSupport;

class TestAppController : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        TS::initEnvironment();
        QApplication::setQuitOnLastWindowClosed(false);
    }

    // One process launches once, so the cancelled start comes first.
    void cancelledTemplateQuits()
    {
        GRAppController &app = GRAppController::sharedInstance();
        QDir(DatabaseFolder()).removeRecursively(); // left by an earlier run
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
        QStringList posted;
        QObject observer;
        MGNotificationCenter &center = MGNotificationCenter::defaultCenter();
        for (const char *name :
             {"mwgroceries.reloadCats", "mwgroceries.updateStores", "mwgroceries.updateCats"})
            center.addObserver(name, &observer, [&posted, name](const QVariantMap &) { posted << name; });

        QVERIFY(app.applicationDidFinishLaunching());
        app.setTemplateChooser(nullptr);
        QCOMPARE(offered, 0);
        QCOMPARE(posted, (QStringList{"mwgroceries.reloadCats", "mwgroceries.updateStores",
                                      "mwgroceries.updateCats"}));
        GRWindowController *window = app.windowController();
        QVERIFY(window && window->isVisible() && window->isWindowModified());
        QCOMPARE(app.database().stores().first()->name(), QString("Grocery Store"));
        QCOMPARE(app.currentCategory(), 0);
        QCOMPARE(app.currentStore(), -1);
        QCOMPARE(app.displayItems(), app.database().categories().first()->items());
        QCOMPARE(window->keyList()->rowCount(), 6);
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
};

QTEST_MAIN(TestAppController)
#include "tst_appcontroller.moc"
