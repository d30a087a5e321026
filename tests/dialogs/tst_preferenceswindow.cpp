#include "GRDatabaseFile.h"
#include "GRGroceryDatabase.h"
#include "GRNames.h"
#include "GROrderEdits.h"
#include "GRPrefController.h"
#include "GRPreferencesWindow.h"
#include "GRTestSupport.h"
#include "MGNotificationCenter.h"

#include <QLabel>
#include <QLineEdit>
#include <QMimeData>
#include <QSignalSpy>
#include <QSpinBox>
#include <QTableView>
#include <QTest>

class TestPreferencesWindow : public QObject
{
    Q_OBJECT

    GRGroceryDatabase m_db;
    std::unique_ptr<GRPreferencesWindow> m_window;

    static GRPrefController &prefs() { return GRPrefController::sharedInstance(); }
    static QString rows(const QTableView *view)
    {
        QStringList names;
        for (int row = 0; row < view->model()->rowCount(); ++row)
            names << view->model()->index(row, 0).data().toString();
        return names.join(',');
    }
    // A drag of the category order's row (or of another kind) dropped before row.
    bool drop(const QByteArray &text, int row, QLatin1String type = GRDragCategoryPasteboardType)
    {
        QMimeData data;
        data.setData(type, text);
        return m_window->categoryTable()->model()->dropMimeData(&data, Qt::MoveAction, row, 0, QModelIndex());
    }

private slots:
    void initTestCase() { GRTestSupport::initEnvironment(); }
    void init()
    {
        GRTestSupport::resetState();
        m_db.clear();
        QVERIFY(ReadModernDatabaseData(GRTestSupport::sampleDatabase(), m_db));
        m_window = std::make_unique<GRPreferencesWindow>(m_db);
        m_window->showPreferences();
    }
    void cleanup() { m_window.reset(); }

    // A move sets the dirty flag, marks the window and selects the row; a refused drop touches
    // nothing. Resetting the order returns to list order.
    void drops()
    {
        QSignalSpy edited(&prefs(), &GRPrefController::markWindowEdited);
        QVERIFY(!drop("0", 1));
        QVERIFY(!drop("2", 0, GRDragAislePasteboardType));
        QVERIFY(!prefs().dirty() && edited.isEmpty() && !m_db.manualOrder());
        QVERIFY(drop("2", 0));
        QCOMPARE(rows(m_window->categoryTable()), "Pantry,Dairy,Fruit");
        QCOMPARE(m_window->categoryTable()->currentIndex().row(), 0);
        QVERIFY(prefs().dirty() && m_db.manualOrder());
        QCOMPARE(edited.count(), 1);
        m_window->resetOrder();
        QVERIFY(!m_db.manualOrder());
        QCOMPARE(rows(m_window->categoryTable()), "Dairy,Fruit,Pantry");
    }

    // Too large a font is cut to 24 points; only the list font tells the item list.
    void fonts()
    {
        int posted = 0;
        QObject observer;
        MGNotificationCenter::defaultCenter().addObserver(GRFontNotification, &observer,
                                                          [&](const QVariantMap &) { ++posted; });
        std::optional<QFont> answer = QFont("DejaVu Sans", 36);
        m_window->setFontChooser([&](const QFont &, QWidget *) { return answer; });
        m_window->selectFont(true);
        QCOMPARE(prefs().displayFont().pointSizeF(), 24.0);
        QCOMPARE(m_window->displayFontSample()->text(), "DejaVu Sans 24.0 point");
        QCOMPARE(m_window->displayFontSample()->font(), prefs().displayFont());
        answer = QFont("DejaVu Serif", 9);
        m_window->selectFont(false);
        QCOMPARE(m_window->fontSample()->text(), "DejaVu Serif 9.0 point");
        answer.reset();
        m_window->selectFont(false);
        QCOMPARE(prefs().printFont().family(), "DejaVu Serif");
        QCOMPARE(posted, 1);
    }

    void columnsAndEmail()
    {
        QSignalSpy edited(&prefs(), &GRPrefController::markWindowEdited);
        m_window->columnsField()->setValue(3);
        QCOMPARE(m_db.columnCount(), 3u);
        QCOMPARE(edited.count(), 1);
        QVERIFY(!prefs().dirty());
        prefs().setEmailTarget("old@example.com");
        QString answer;
        m_window->setEmailChooser([&](QWidget *) { return answer; });
        m_window->chooseEmail();
        QCOMPARE(prefs().emailTarget(), "old@example.com");
        answer = "new@example.com";
        m_window->chooseEmail();
        QCOMPARE(prefs().emailTarget(), answer);
        QCOMPARE(m_window->emailField()->text(), answer);
    }
};

QTEST_MAIN(TestPreferencesWindow)
#include "tst_preferenceswindow.moc"
