#include "GRDatabaseFile.h"
#include "GRGroceryDatabase.h"
#include "GRPrefController.h"
#include "GRPrintOptionController.h"
#include "GRPrintPreviewWindow.h"
#include "GRStore.h"
#include "GRTestSupport.h"
#include "MGAlert.h"

#include <QAbstractButton>
#include <QCheckBox>
#include <QComboBox>
#include <QPrintDialog>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

// The print scope pane and the preview window over the sample list's stores Corner Shop, Bakery
// Bros and Market.
class TestPrintPreview : public QObject
{
    Q_OBJECT

    GRGroceryDatabase m_db;
    std::unique_ptr<GRPrefController> m_prefs;
    QTemporaryDir m_dir;

private slots:
    void initTestCase()
    {
        GRTestSupport::initEnvironment();
        QVERIFY(ReadModernDatabaseData(GRTestSupport::sampleDatabase(), m_db));
        m_db.updateCategoryOrder();
        m_db.setColumnCount(1);
    }
    void init()
    {
        GRTestSupport::resetState();
        m_prefs = std::make_unique<GRPrefController>();
    }

    void scopes_data()
    {
        QTest::addColumn<qint32>("scope");
        QTest::addColumn<int>("remembered"); // the store whose guid the preferences hold; -1: one gone
        QTest::addColumn<int>("store");      // the store the pane shows and the preferences now hold
        QTest::addColumn<QString>("summary");
        QTest::newRow("entire") << 0 << 2 << 2 << "Entire list";
        QTest::newRow("needed, store gone") << 1 << -1 << 0 << "Needed items only";
        QTest::newRow("one store") << 2 << 1 << 1 << "Just one store: Bakery Bros";
        QTest::newRow("one store gone: the first") << 2 << -1 << 0 << "Just one store: Corner Shop";
        QTest::newRow("unknown") << 7 << 1 << 1 << "Entire list";
    }
    void scopes()
    {
        QFETCH(qint32, scope);
        QFETCH(int, remembered);
        QFETCH(int, store);
        m_prefs->setPrintScope(scope);
        m_prefs->setPrintStoreGuid(remembered < 0 ? QStringLiteral("gone")
                                                  : m_db.stores().at(remembered)->guid());
        GRPrintOptionController options(m_db, *m_prefs);
        QCOMPARE(options.storePopup()->isEnabled(), scope == 2);
        QCOMPARE(options.ignorePageStartButton()->isEnabled(), scope == 1);
        QTEST(options.localizedSummary(), "summary");
        QCOMPARE(options.storePopup()->currentIndex(), store);
        QCOMPARE(m_prefs->printStoreGuid(), m_db.stores().at(store)->guid());
        for (qint32 other = 0; other <= 2; ++other)
            QCOMPARE(options.scopeButton(other)->isChecked(), other == scope);
    }

    // Everything goes through the pane's widgets, and the open preview lays its pages out again.
    // The box starts from the preference, but the summary only mentions page starts once the box
    // is toggled here.
    void optionsLayTheOpenPreviewOutAgain()
    {
        m_prefs->printInfo().setScale(4); // a quarter of a page holds a few lines
        m_prefs->setPrintScope(1);
        m_prefs->setIgnorePageStarts(true);
        GRPrintPreviewWindow window(m_db, *m_prefs);
        GRPrintOptionController *options = window.options();
        QSignalSpy preview(options, &GRPrintOptionController::previewChanged);
        QCOMPARE(window.summaryText(), QStringLiteral("Print scope: Needed items only"));
        QCOMPARE(window.pageCount(), 1);
        options->ignorePageStartButton()->click();
        options->ignorePageStartButton()->click();
        QVERIFY(m_prefs->ignorePageStarts());
        QCOMPARE(window.summaryText(),
                 QStringLiteral("Print scope: Needed items only, ignoring forced page starts"));

        options->scopeButton(0)->click();
        QCOMPARE(m_prefs->printScope(), 0);
        QVERIFY(window.pageCount() > 1);
        options->scopeButton(2)->click();
        QTest::keyClick(options->storePopup(), Qt::Key_Down);
        QCOMPARE(m_prefs->printStoreGuid(), m_db.stores().at(1)->guid());
        QCOMPARE(window.summaryText(), QStringLiteral("Print scope: Just one store: Bakery Bros"));
        QCOMPARE(preview.count(), 5);
        QCOMPARE(window.printer().pageLayout().margins(QPageLayout::Point).top(), 90.0);
    }

    void printsThroughTheDialog_data()
    {
        QTest::addColumn<bool>("answer");
        QTest::addColumn<QString>("file");
        QTest::addColumn<int>("pages"); // -1: all of them
        QTest::addColumn<QString>("ranges");
        QTest::newRow("all pages") << true << "all.pdf" << -1 << "";
        QTest::newRow("page 2 only") << true << "two.pdf" << 1 << "2";
        QTest::newRow("cancelled") << false << "cancelled.pdf" << 0 << "";
        QTest::newRow("failed") << true << "no/such/folder/list.pdf" << 0 << "";
    }
    // A print that fails says so and leaves the window open.
    void printsThroughTheDialog()
    {
        QFETCH(bool, answer);
        QFETCH(QString, file);
        QFETCH(int, pages);
        QFETCH(QString, ranges);
        MGAlert::sharedInstance().setNextAnswer(0);
        m_prefs->printInfo().setScale(4);
        GRPrintPreviewWindow window(m_db, *m_prefs);
        QVERIFY(window.pageCount() > 1);
        if (pages < 0)
            pages = int(window.pageCount());
        QSignalSpy printed(&window, &GRPrintPreviewWindow::printed);
        const QString path = m_dir.filePath(file);
        GRPrintPreviewWindow::setPrintDialogRunner([&](QPrintDialog &dialog) {
            dialog.printer()->setOutputFormat(QPrinter::PdfFormat);
            dialog.printer()->setOutputFileName(path);
            dialog.printer()->setPageRanges(QPageRanges::fromString(ranges));
            return answer;
        });
        window.print();
        GRPrintPreviewWindow::setPrintDialogRunner(nullptr);
        static const QRegularExpression page(QStringLiteral("/Type\\s*/Page[^s]"));
        QCOMPARE(int(QString::fromLatin1(GRTestSupport::readFile(path)).count(page)), pages);
        QCOMPARE(printed.size(), answer ? 1 : 0);
        QCOMPARE(window.result(), pages ? int(QDialog::Accepted) : int(QDialog::Rejected));
        QCOMPARE(GRTestSupport::alerts().value(0).section(u'|', 0, 0),
                 answer && !pages ? "Printing failed." : "");
        QCOMPARE(window.printer().docName(), QStringLiteral("Tansy Groceries"));
    }
};

QTEST_MAIN(TestPrintPreview)
#include "tst_printpreview.moc"
