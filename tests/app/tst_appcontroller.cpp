#include "GRAppController.h"
#include "GRDatabaseFile.h"
#include "GRLists.h"
#include "GRTestSupport.h"
#include "GRWindowController.h"

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

    // One process launches once, so both outcomes are checked in order.
    void launch()
    {
        GRAppController &app = GRAppController::sharedInstance();
        const QString folder = DatabaseFolder();
        QDir(folder).removeRecursively(); // left by an earlier run
        TS::resetDatabase();
        QTimer::singleShot(50, [] {
            if (QWidget *dialog = QApplication::activeModalWidget())
                qobject_cast<QDialog *>(dialog)->reject();
        });
        QVERIFY(!app.applicationDidFinishLaunching());
        QVERIFY(!app.windowController());

        QVERIFY(QDir().mkpath(folder));
        QVERIFY(TS::writeFile(folder + "/Groceries.xml",
                              R"(<?xml version="1.0" encoding="UTF-8"?>
<groceries version="1"><stores><store><name>Shop</name></store></stores><categories>
<category><name>Fruit</name></category><category><name>Bread</name></category></categories>
<items><item><name>Pears</name><category>0</category><store>0</store></item></items></groceries>
)"));
        TS::resetDatabase();
        QVERIFY(app.applicationDidFinishLaunching());
        GRWindowController *window = app.windowController();
        QVERIFY(window && window->isVisible());
        QVERIFY(!window->isWindowModified());
        QCOMPARE(app.currentCategory(), 0);
        QCOMPARE(app.currentStore(), -1);
        QCOMPARE(GRLists::shared().displayItems().size(), 1);
        QCOMPARE(window->keyList()->rowCount(), 6);
        QVERIFY(QSettings("Marlowick", "Groceries").value("com.marlowick.groceries.run").toBool());
        QVERIFY(app.applicationShouldTerminate());
        delete window;
    }
};

QTEST_MAIN(TestAppController)
#include "tst_appcontroller.moc"
