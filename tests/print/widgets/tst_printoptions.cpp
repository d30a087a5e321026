#include "GRGroceryDatabase.h"
#include "GRPrefController.h"
#include "GRPrintOptionController.h"
#include "GRStore.h"
#include "GRTestSupport.h"

#include <QAbstractButton>
#include <QCheckBox>
#include <QComboBox>
#include <QSignalSpy>
#include <QTest>

// The print scope pane over the stores Corner Shop (s0), Bakery Bros (s1) and Market (s2).
class TestPrintOptions : public QObject
{
    Q_OBJECT

    GRGroceryDatabase m_db;
    std::unique_ptr<GRPrefController> m_prefs;

    std::unique_ptr<GRPrintOptionController> make(qint32 scope, const QString &guid)
    {
        m_prefs->setPrintScope(scope);
        m_prefs->setPrintStoreGuid(guid);
        return std::make_unique<GRPrintOptionController>(m_db, *m_prefs);
    }

private slots:
    void initTestCase()
    {
        GRTestSupport::initEnvironment();
        for (const char *name : {"Corner Shop", "Bakery Bros", "Market"}) {
            GRStorePtr store = GRStore::create();
            store->setName(name);
            store->setGuid("s" + QString::number(m_db.stores().size()));
            m_db.stores().append(store);
        }
    }
    void init()
    {
        GRTestSupport::resetState();
        m_prefs = std::make_unique<GRPrefController>();
    }

    void rememberedStore_data()
    {
        QTest::addColumn<QString>("remembered");
        QTest::addColumn<int>("index");
        QTest::newRow("known store") << "s2" << 2;
        QTest::newRow("stale guid: first store") << "gone" << 0;
        QTest::newRow("none yet: first store") << "" << 0;
    }
    void rememberedStore()
    {
        QFETCH(QString, remembered);
        QFETCH(int, index);
        auto options = make(0, remembered);
        QCOMPARE(options->storePopup()->currentIndex(), index);
        QCOMPARE(options->storeGuid(), m_db.stores().at(index)->guid());
        QCOMPARE(m_prefs->printStoreGuid(), options->storeGuid());
    }

    void scopes_data()
    {
        QTest::addColumn<qint32>("scope");
        QTest::addColumn<bool>("popupOn");
        QTest::addColumn<bool>("boxOn");
        QTest::addColumn<QString>("summary");
        QTest::newRow("entire") << 0 << false << false << "Entire list";
        QTest::newRow("needed") << 1 << false << true << "Needed items only";
        QTest::newRow("one store") << 2 << true << false << "Just one store: Bakery Bros";
        QTest::newRow("unknown") << 7 << false << false << "Entire list";
    }
    void scopes()
    {
        QFETCH(qint32, scope);
        auto options = make(scope, "s1");
        QTEST(options->storePopup()->isEnabled(), "popupOn");
        QTEST(options->ignorePageStartButton()->isEnabled(), "boxOn");
        QTEST(options->localizedSummary(), "summary");
        for (qint32 other = 0; other <= 2; ++other)
            QCOMPARE(options->scopeButton(other)->isChecked(), other == scope);
    }

    // Everything goes through the widgets. The box starts from the preference, but the summary
    // only mentions page starts once the box is toggled here.
    void widgetsWritePreferences()
    {
        m_prefs->setIgnorePageStarts(true);
        auto options = make(1, "s0");
        QSignalSpy preview(options.get(), &GRPrintOptionController::previewChanged);
        QVERIFY(options->ignorePageStartButton()->isChecked());
        QCOMPARE(options->localizedSummary(), "Needed items only");
        options->ignorePageStartButton()->click();
        options->ignorePageStartButton()->click();
        QVERIFY(m_prefs->ignorePageStarts());
        QCOMPARE(options->localizedSummary(), "Needed items only, ignoring forced page starts");

        options->scopeButton(2)->click();
        QCOMPARE(m_prefs->printScope(), 2);
        QTest::keyClick(options->storePopup(), Qt::Key_Down);
        QCOMPARE(m_prefs->printStoreGuid(), "s1");
        options->scopeButton(1)->click();
        options->scopeButton(2)->click();
        QCOMPARE(options->storePopup()->currentIndex(), 1);
        QCOMPARE(options->localizedSummary(), "Just one store: Bakery Bros");
        QCOMPARE(preview.count(), 6);
    }
};

QTEST_MAIN(TestPrintOptions)
#include "tst_printoptions.moc"
