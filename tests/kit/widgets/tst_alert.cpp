#include "GRTestSupport.h"
#include "MGAlert.h"
#include "MGAlertController.h"
#include "MGAlertLayout.h"

#include <QApplication>
#include <QCheckBox>
#include <QTest>
#include <QTimer>

// Fails every run, as a presenter does when it can't show anything; notes what it was asked.
class FailingPresenter : public MGAlert::Presenter
{
public:
    QList<MGAlert::Request> requests;

    std::optional<MGAlert::Answer> runModal(const MGAlert::Request &request) override
    {
        requests << request;
        return std::nullopt;
    }
    void runSheet(const MGAlert::Request &, QObject *, MGAlert::SheetHandler) override {}
};

// Further text height (< 0: none), check box, title count; growth, info height, check box y, button 1-3 y;
// whether the check box takes the default title.
using LayoutRow = std::tuple<double, bool, int, QList<int>, bool>;
Q_DECLARE_METATYPE(LayoutRow)

class TestAlert : public QObject
{
    Q_OBJECT

    FailingPresenter m_failing;

private slots:
    void init()
    {
        GRTestSupport::resetState();
        MGAlert::sharedInstance().setPresenter(&m_failing);
        m_failing.requests.clear();
    }

    // Queued answers go first in, first out; with none and nothing to show with, the alert is
    // logged and answers its first button. The running program keeps no record.
    void queuedAnswers()
    {
        MGAlert &alert = MGAlert::sharedInstance();
        alert.setNextAnswer(2, true);
        alert.setNextAnswer(1);
        bool flag = false;
        QCOMPARE(alert.giveAlertMessage("Message", "More", {"A", "B", "C"}, &flag), 2);
        QVERIFY(flag);
        QVERIFY(!OkToProceed("Go?", "Sure?"));
        QVERIFY(m_failing.requests.isEmpty());
        QCOMPARE(GRTestSupport::alerts(), (QStringList{"Message|More|A|B|C", "Go?|Sure?|OK|Cancel"}));
        QVERIFY(alert.shownAlerts()[0].showSuppressButton && !alert.shownAlerts()[1].showSuppressButton);
        alert.setPresenter(nullptr);
        QTest::ignoreMessage(QtWarningMsg, "Alert: Can't write Disk full");
        QCOMPARE(alert.giveAlertMessage("Can't write", "Disk full", {"A", "B"}, &flag), 0);
        QVERIFY(!flag);
        alert.setRecordingAlerts(false);
        alert.setNextAnswer(1);
        QCOMPARE(alert.giveAlertMessage("Unrecorded", "", {"A", "B"}), 1);
        QCOMPARE(alert.shownAlerts().size(), 3);
    }

    // When the presenter can't run an alert, an information alert (no titles, or a delay allowed) is
    // shown again later with no titles; the retry is not retried.
    void failedRunReposts()
    {
        MGAlert &alert = MGAlert::sharedInstance();
        QCOMPARE(alert.giveAlertMessage("Information", "More", {}), 0);
        QCOMPARE(alert.giveAlertMessage("Question", "", {"Save", "Cancel"}), 0);
        QCOMPARE(alert.giveAlertMessage("Delay asked", "", {"OK"}, nullptr, true), 0);
        QCOMPARE(alert.giveAlertMessage("Delay refused", "", {}, nullptr, false), 0);
        QTest::qWait(20);
        QStringList asked;
        for (const MGAlert::Request &request : std::as_const(m_failing.requests))
            asked << QStringList{request.message, request.moreInfo, request.buttonStrings.join('/')}.join(
                '|');
        QCOMPARE(asked, QStringList({"Information|More|", "Question||Save/Cancel", "Delay asked||OK",
                                     "Delay refused||", "Information|More|", "Delay asked||"}));
    }

    void layoutArithmetic_data()
    {
        QTest::addColumn<LayoutRow>("row");
        // clang-format off
        QTest::newRow("bare") << LayoutRow{-1, false, 1, {-82, 36, 108, 60, -10000, -10000}, false};
        QTest::newRow("no info, 3 titles") << LayoutRow{-1, true, 3, {-48, 36, 60, 94, 94, 94}, false};
        QTest::newRow("one title") << LayoutRow{-1, true, 1, {-48, 36, 60, 94, -10000, -10000}, true};
        QTest::newRow("two titles") << LayoutRow{-1, true, 2, {-48, 36, 60, 94, 94, -10000}, false};
        QTest::newRow("tall info") << LayoutRow{50.3, true, 0, {17, 53, 125, 159, -10000, -10000}, true};
        QTest::newRow("short info") << LayoutRow{16, false, 2, {-52, 18, 108, 90, 90, -10000}, false};
        QTest::newRow("info fits") << LayoutRow{34, true, 3, {0, 36, 108, 142, 142, 142}, false};
        // clang-format on
    }
    void layoutArithmetic()
    {
        QFETCH(LayoutRow, row);
        const auto [measured, withFlag, titles, expected, defaultTitle] = row;
        // clang-format off
        MGAlertLayout l{.window = {400, 190}, .infoField = {20, 60, 400, 36},
                        .suppressionButton = {20, 108, 400, 22}, .button1 = {300, 142, 80, 32},
                        .button2 = {210, 142, 80, 32}, .button3 = {120, 142, 80, 32}};
        // clang-format on
        l.layOut(measured >= 0, measured, withFlag, titles);
        // The window grows with the layout; the further text keeps its top.
        QCOMPARE(QList<int>({l.growth, l.infoField.height(), l.suppressionButton.y(), l.button1.y(),
                             l.button2.y(), l.button3.y(), l.window.height() - l.growth, l.infoField.y()}),
                 expected + QList<int>({190, 60}));
        QCOMPARE(QList<bool>({l.infoFieldVisible, l.suppressionVisible, l.suppressionTakesDefaultTitle,
                              l.button3Visible}),
                 QList<bool>({measured >= 0, withFlag, defaultTitle, titles == 3}));
    }

    // Through the service to a real alert window, with its check box ticked.
    void dialogKeys_data()
    {
        QTest::addColumn<QStringList>("titles");
        QTest::addColumn<QString>("keys");
        QTest::addColumn<int>("answer");
        const QStringList save{"Save", "Cancel", "Don't Save"};
        QTest::newRow("Return") << save << "Return" << 0;
        QTest::newRow("Escape") << save << "Esc" << 1;
        QTest::newRow("Ctrl+D") << save << "Ctrl+D" << 2;
        QTest::newRow("D alone") << save << "D, Return" << 0;
        QTest::newRow("Ctrl+S") << save << "Ctrl+S, Esc" << 1;
        QTest::newRow("no third button") << QStringList({"Delete", "Don't"}) << "Ctrl+D, Return" << 0;
        QTest::newRow("Escape, one title") << QStringList({"OK"}) << "Esc" << 1;
    }
    void dialogKeys()
    {
        QFETCH(QStringList, titles);
        QFETCH(QString, keys);
        QFETCH(int, answer);
        MGAlertController::installPresenter();
        bool flag = true, clearedFirst = false, stillActive = false;
        QTimer::singleShot(0, this, [&] {
            auto *alert = qobject_cast<MGAlertController *>(QApplication::activeModalWidget());
            QVERIFY(alert);
            clearedFirst = !flag; // the caller's flag is cleared before the alert shows
            // An alert answered while this one is up must not end its active state.
            MGAlert::sharedInstance().setNextAnswer(0);
            MGAlert::sharedInstance().giveAlertMessage("Inner", "", {"OK"});
            stillActive = MGAlert::isAlertActive();
            alert->suppressionButton()->setChecked(true);
            const QKeySequence sequence(keys);
            for (int i = 0; i < sequence.count(); ++i)
                QTest::keyClick(alert, sequence[i].key(), sequence[i].keyboardModifiers());
        });
        QCOMPARE(MGAlert::sharedInstance().giveAlertMessage("Save changes?", "", titles, &flag), answer);
        QVERIFY(clearedFirst && stillActive && flag && !MGAlert::isAlertActive());
    }
};

QTEST_MAIN(TestAlert)
#include "tst_alert.moc"
