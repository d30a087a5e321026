#include "GRDatabaseFile.h"
#include "GRGroceryDatabase.h"
#include "GRPrefController.h"
#include "GRPrintOptionController.h"
#include "GRPrintPreviewWindow.h"
#include "GRTestSupport.h"
#include "MGAlert.h"

#include <QAbstractButton>
#include <QPrintDialog>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

class TestPrintPreview : public QObject
{
    Q_OBJECT

    GRGroceryDatabase m_db;
    std::unique_ptr<GRPrefController> m_prefs;
    QTemporaryDir m_dir;

    static int pdfPages(const QString &path)
    {
        static const QRegularExpression page(QStringLiteral("/Type\\s*/Page[^s]"));
        return int(QString::fromLatin1(GRTestSupport::readFile(path)).count(page));
    }
    // Prints through the window with the dialog answering answer; the PDF's path.
    QString printThrough(GRPrintPreviewWindow &window, bool answer, const QString &name,
                         const QString &ranges = QString())
    {
        const QString path = m_dir.filePath(name);
        GRPrintPreviewWindow::setPrintDialogRunner([&](QPrintDialog &dialog) {
            dialog.printer()->setOutputFormat(QPrinter::PdfFormat);
            dialog.printer()->setOutputFileName(path);
            if (!ranges.isEmpty())
                dialog.printer()->setPageRanges(QPageRanges::fromString(ranges));
            return answer;
        });
        window.print();
        GRPrintPreviewWindow::setPrintDialogRunner(nullptr);
        return path;
    }

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

    void optionsLayTheOpenPreviewOutAgain()
    {
        GRPrintPreviewWindow window(m_db, *m_prefs);
        QCOMPARE(window.summaryText(), QStringLiteral("Print scope: Entire list"));
        const qsizetype entire = window.pageCount();
        QCOMPARE(entire, 1);
        m_prefs->printInfo().setScale(4); // a quarter of a page holds a few lines
        window.options()->scopeButton(1)->click();
        QCOMPARE(window.summaryText(), QStringLiteral("Print scope: Needed items only"));
        QCOMPARE(window.pageCount(), 1);
        window.options()->scopeButton(0)->click();
        QVERIFY(window.pageCount() > 1);
        QCOMPARE(window.printer().pageLayout().margins(QPageLayout::Point).top(), 90.0);
        QCOMPARE(window.printer().pageLayout().margins(QPageLayout::Point).bottom(), 72.0);
    }

    void printsThroughTheDialog_data()
    {
        QTest::addColumn<bool>("answer");
        QTest::addColumn<QString>("ranges");
        QTest::addColumn<int>("pages");
        QTest::newRow("all pages") << true << "" << -1;
        QTest::newRow("page 2 only") << true << "2" << 1;
        QTest::newRow("cancelled") << false << "" << 0;
    }
    void printsThroughTheDialog()
    {
        QFETCH(bool, answer);
        QFETCH(QString, ranges);
        QFETCH(int, pages);
        m_prefs->printInfo().setScale(4);
        GRPrintPreviewWindow window(m_db, *m_prefs);
        QVERIFY(window.pageCount() > 1);
        if (pages < 0)
            pages = int(window.pageCount());
        QSignalSpy printed(&window, &GRPrintPreviewWindow::printed);
        const QString path = printThrough(window, answer, QTest::currentDataTag() + QStringLiteral(".pdf"), ranges);
        QCOMPARE(pdfPages(path), pages);
        QCOMPARE(printed.size(), answer ? 1 : 0);
        QCOMPARE(window.result(), answer ? int(QDialog::Accepted) : int(QDialog::Rejected));
        QCOMPARE(window.printer().docName(), QStringLiteral("Tansy Groceries"));
    }

    void failedPrintSaysSoAndStaysOpen()
    {
        MGAlert::sharedInstance().setNextAnswer(0);
        GRPrintPreviewWindow window(m_db, *m_prefs);
        printThrough(window, true, QStringLiteral("no/such/folder/list.pdf"));
        QCOMPARE(MGAlert::sharedInstance().shownAlerts().value(0).message, QStringLiteral("Printing failed."));
        QCOMPARE(window.result(), int(QDialog::Rejected));
    }
};

QTEST_MAIN(TestPrintPreview)
#include "tst_printpreview.moc"
