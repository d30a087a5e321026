#include "GRTestSupport.h"
#include "MGAlert.h"
#include "MGAlertController.h"
#include "MGAlertLayout.h"

#include <QApplication>
#include <QCheckBox>
#include <QLabel>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>

// Answers from a script (an empty script fails every run); notes what it saw while running.
class FakePresenter : public MGAlert::Presenter
{
public:
    QList<MGAlert::Answer> script;
    QList<MGAlert::Request> requests;
    QList<bool> seen; // isAlertActive() and the watched flag during each run
    bool *watchedFlag = nullptr;
    std::function<void()> duringRun;

    std::optional<MGAlert::Answer> runModal(const MGAlert::Request &request) override
    {
        requests << request;
        seen << MGAlert::isAlertActive() << (watchedFlag && *watchedFlag);
        if (duringRun)
            std::exchange(duringRun, {})();
        return script.isEmpty() ? std::nullopt : std::optional(script.takeFirst());
    }
    void runSheet(const MGAlert::Request &, QObject *, MGAlert::SheetHandler) override {}
};

using Keys = QList<QPair<int, int>>; // key, modifiers

class TestAlert : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { GRTestSupport::initEnvironment(); }
    void init();
    void queuedAnswers_data();
    void queuedAnswers();
    void presenterRun();
    void failedRunReposts_data();
    void failedRunReposts();
    void layoutArithmetic_data();
    void layoutArithmetic();
    void dialogKeys_data();
    void dialogKeys();
    void dialogLayout();
    void throughService();

private:
    FakePresenter m_fake;
};

void TestAlert::init()
{
    MGAlert::sharedInstance().setPresenter(nullptr);
    MGAlert::sharedInstance().clearNextAnswers();
    MGAlert::sharedInstance().clearShownAlerts();
    m_fake = FakePresenter();
}

void TestAlert::queuedAnswers_data()
{
    QTest::addColumn<int>("answer");
    QTest::addColumn<bool>("suppress");
    QTest::newRow("first button, ticked") << 0 << true;
    QTest::newRow("second button") << 1 << false;
}

void TestAlert::queuedAnswers()
{
    QFETCH(int, answer);
    QFETCH(bool, suppress);
    MGAlert &alert = MGAlert::sharedInstance();
    for (int i = 0; i < 3; ++i)
        alert.setNextAnswer(answer, suppress);
    bool flag = !suppress;
    QCOMPARE(alert.giveAlertMessage("Message", "More", {"A", "B", "C"}, &flag), answer);
    QCOMPARE(flag, suppress);
    QCOMPARE(OkToProceed("Go?", "Sure?"), answer == 0);
    QList<int> sheet;
    QObject host;
    alert.startAlertMessage("Sheet", "", {}, true, &host, [&](int a, bool s) { sheet << a << s; });
    QCOMPARE(sheet, QList<int>({answer, suppress}));

    const QList<MGAlert::Request> shown = alert.shownAlerts();
    QCOMPARE(shown.size(), 3);
    QVERIFY(shown[0].showSuppressButton && !shown[1].showSuppressButton);
    QCOMPARE(shown[1].buttonStrings, QStringList({"OK", "Cancel"}));

    // Nothing queued and nothing to show with: logged, first button.
    QTest::ignoreMessage(QtWarningMsg, "Alert: Can't write Disk full");
    QCOMPARE(alert.giveAlertMessage("Can't write", "Disk full", {"A", "B"}, &flag), 0);
    QVERIFY(!flag);
}

void TestAlert::presenterRun()
{
    MGAlert &alert = MGAlert::sharedInstance();
    alert.setPresenter(&m_fake);
    bool flag = true;
    m_fake.watchedFlag = &flag;
    m_fake.script << MGAlert::Answer{0, false} << MGAlert::Answer{2, true}; // inner, outer
    // An alert raised while another is up must not end the outer one's active state.
    m_fake.duringRun = [&] {
        alert.giveAlertMessage("Inner", "", {"OK"});
        m_fake.seen << MGAlert::isAlertActive();
    };
    QVERIFY(!MGAlert::isAlertActive());
    QCOMPARE(alert.giveAlertMessage("Outer", "", {"A", "B", "C"}, &flag), 2);
    QCOMPARE(flag, true);
    QCOMPARE(m_fake.seen, QList<bool>({true, false, true, false, true}));
    QVERIFY(!MGAlert::isAlertActive());
}

void TestAlert::failedRunReposts_data()
{
    QTest::addColumn<QStringList>("titles");
    QTest::addColumn<int>("allowDelay"); // -1: the short form decides
    QTest::addColumn<bool>("reposted");
    QTest::newRow("information") << QStringList() << -1 << true;
    QTest::newRow("question") << QStringList({"Save", "Cancel"}) << -1 << false;
    QTest::newRow("delay asked with titles") << QStringList({"OK"}) << 1 << true;
    QTest::newRow("delay refused") << QStringList() << 0 << false;
}

void TestAlert::failedRunReposts()
{
    QFETCH(QStringList, titles);
    QFETCH(int, allowDelay);
    QFETCH(bool, reposted);
    MGAlert &alert = MGAlert::sharedInstance();
    alert.setPresenter(&m_fake);
    const int answer = allowDelay < 0 ? alert.giveAlertMessage("Can't read", "", titles)
                                      : alert.giveAlertMessage("Can't read", "", titles, nullptr, allowDelay);
    QCOMPARE(answer, 0);
    QCOMPARE(m_fake.requests.size(), 1);
    QTest::qWait(20); // the retry fails as well and must not be retried again
    QCOMPARE(m_fake.requests.size(), reposted ? 2 : 1);
    if (reposted) {
        QCOMPARE(m_fake.requests[1].message, QString("Can't read"));
        QVERIFY(m_fake.requests[1].buttonStrings.isEmpty());
    }
}

void TestAlert::layoutArithmetic_data()
{
    QTest::addColumn<double>("measured"); // < 0: no further text
    QTest::addColumn<bool>("withFlag");
    QTest::addColumn<int>("titles");
    QTest::addColumn<QList<int>>("expected"); // growth, info height, check box y, button1-3 y
    QTest::addColumn<bool>("defaultTitle");

    // Frames: info (20,60,400,36), check box (20,108,400,22), buttons y 142, window height 190.
    QTest::newRow("no info, no flag")
        << -1.0 << false << 1 << QList<int>{-82, 36, 108, 60, -10000, -10000} << false;
    QTest::newRow("no info, three titles")
        << -1.0 << true << 3 << QList<int>{-48, 36, 60, 94, 94, 94} << false;
    QTest::newRow("one title") << -1.0 << true << 1 << QList<int>{-48, 36, 60, 94, -10000, -10000} << true;
    QTest::newRow("two titles") << -1.0 << true << 2 << QList<int>{-48, 36, 60, 94, 94, -10000} << false;
    QTest::newRow("tall info") << 50.3 << true << 0 << QList<int>{17, 53, 125, 159, -10000, -10000} << true;
    QTest::newRow("short info") << 16.0 << false << 2 << QList<int>{-52, 18, 108, 90, 90, -10000} << false;
    QTest::newRow("info fits") << 34.0 << true << 3 << QList<int>{0, 36, 108, 142, 142, 142} << false;
}

void TestAlert::layoutArithmetic()
{
    QFETCH(double, measured);
    QFETCH(bool, withFlag);
    QFETCH(int, titles);
    QFETCH(QList<int>, expected);
    QFETCH(bool, defaultTitle);
    MGAlertLayout l;
    l.window = QSize(400, 190);
    l.infoField = QRect(20, 60, 400, 36);
    l.suppressionButton = QRect(20, 108, 400, 22);
    l.button1 = QRect(300, 142, 80, 32);
    l.button2 = QRect(210, 142, 80, 32);
    l.button3 = QRect(120, 142, 80, 32);
    QCOMPARE(l.measureWidth(), 396);
    l.layOut(measured >= 0, measured, withFlag, titles);
    QCOMPARE(QList<int>({l.growth, l.infoField.height(), l.suppressionButton.y(), l.button1.y(),
                         l.button2.y(), l.button3.y()}),
             expected);
    QCOMPARE(l.window.height(), 190 + l.growth);
    QCOMPARE(l.infoField.y(), 60);
    QCOMPARE(l.infoFieldVisible, measured >= 0);
    QCOMPARE(l.suppressionVisible, withFlag);
    QCOMPARE(l.suppressionTakesDefaultTitle, defaultTitle);
    QCOMPARE(l.button3Visible, titles == 3);
}

void TestAlert::dialogKeys_data()
{
    QTest::addColumn<QStringList>("titles");
    QTest::addColumn<Keys>("keys");
    QTest::addColumn<int>("answer");
    const QStringList save{"Save", "Cancel", "Don't Save"};
    const int ctrl = Qt::ControlModifier;
    QTest::newRow("Return") << save << Keys{{Qt::Key_Return, 0}} << 0;
    QTest::newRow("keypad Enter") << save << Keys{{Qt::Key_Enter, Qt::KeypadModifier}} << 0;
    QTest::newRow("Escape") << save << Keys{{Qt::Key_Escape, 0}} << 1;
    QTest::newRow("Ctrl+D") << save << Keys{{Qt::Key_D, ctrl}} << 2;
    QTest::newRow("Ctrl+Shift+D") << save << Keys{{Qt::Key_D, ctrl | Qt::ShiftModifier}} << 2;
    QTest::newRow("D alone") << save << Keys{{Qt::Key_D, 0}, {Qt::Key_Return, 0}} << 0;
    QTest::newRow("Ctrl+S") << save << Keys{{Qt::Key_S, ctrl}, {Qt::Key_Escape, 0}} << 1;
    QTest::newRow("no third button") << QStringList({"Delete", "Don't"})
                                     << Keys{{Qt::Key_D, ctrl}, {Qt::Key_Return, 0}} << 0;
    QTest::newRow("Escape, one title") << QStringList({"OK"}) << Keys{{Qt::Key_Escape, 0}} << 1;
}

void TestAlert::dialogKeys()
{
    QFETCH(QStringList, titles);
    QFETCH(Keys, keys);
    QFETCH(int, answer);
    MGAlertController controller("Save changes to the groceries database?", "", titles, nullptr);
    QSignalSpy finished(&controller, &QDialog::finished);
    controller.open();
    for (const auto &[key, modifiers] : keys) {
        QVERIFY(finished.isEmpty());
        QTest::keyClick(&controller, Qt::Key(key), Qt::KeyboardModifiers(modifiers));
    }
    QCOMPARE(finished.size(), 1);
    QCOMPARE(finished[0][0].toInt(), answer);
}

void TestAlert::dialogLayout()
{
    const QStringList three{"Save", "Cancel", "Don't Save"};
    bool flag = false;
    const QString longInfo =
        QString("The database could not be written because the disk is full. ").repeated(6);
    MGAlertController withInfo("Message", longInfo, three, &flag);
    MGAlertController noInfo("Message", "", three, &flag);
    MGAlertController bare("Message", "", {"A very long first button title", "Another long title"}, nullptr);
    QCOMPARE(withInfo.windowTitle(), QString("Groceries"));

    QLabel *info = withInfo.infoField();
    QVERIFY(info->heightForWidth(info->width()) <= info->height()); // the whole text shows
    QVERIFY(withInfo.suppressionButton()->y() > info->geometry().bottom());
    QVERIFY(withInfo.suppressionButton()->text() != MGAlertController::suppressionTitle());

    const int infoDrop = info->height() + 12;
    QVERIFY(noInfo.infoField()->isHidden());
    QCOMPARE(noInfo.height(), withInfo.height() - infoDrop);
    QCOMPARE(noInfo.button3()->y(), withInfo.button3()->y() - infoDrop);
    QCOMPARE(bare.height(), noInfo.height() - (noInfo.suppressionButton()->height() + 12));
    QVERIFY(bare.suppressionButton()->isHidden() && bare.button3()->isHidden());

    // Titles fit their buttons, inside the window, right to left from button1.
    const QRect b1 = bare.button1()->geometry(), b2 = bare.button2()->geometry();
    QVERIFY(bare.rect().contains(b1) && bare.rect().contains(b2) && b2.right() < b1.left());
    QVERIFY(b1.width() >= bare.button1()->sizeHint().width());
}

void TestAlert::throughService()
{
    MGAlertController::installPresenter();
    bool flag = false;
    bool activeInside = false;
    QTimer::singleShot(0, this, [&] {
        auto *alert = qobject_cast<MGAlertController *>(QApplication::activeModalWidget());
        QVERIFY(alert);
        activeInside = MGAlert::isAlertActive();
        alert->suppressionButton()->setChecked(true);
        QTest::mouseClick(alert->button3(), Qt::LeftButton);
    });
    QCOMPARE(MGAlert::sharedInstance().giveAlertMessage("Save?", "", {"Save", "Cancel", "Don't Save"}, &flag),
             2);
    QVERIFY(flag && activeInside && !MGAlert::isAlertActive());

    QWidget host;
    host.show();
    QList<int> answers;
    MGAlert::sharedInstance().startAlertMessage(
        "Delete the store?", "", {"Delete", "Cancel"}, true, &host,
        [&](int answer, bool suppress) { answers << answer << suppress; });
    QPointer<MGAlertController> sheet = host.findChild<MGAlertController *>();
    QVERIFY(sheet && sheet->isVisible() && sheet->windowModality() == Qt::WindowModal);
    sheet->suppressionButton()->setChecked(true);
    QTest::keyClick(sheet.data(), Qt::Key_Escape);
    QCOMPARE(answers, QList<int>({1, 1}));
    QTRY_VERIFY(!sheet);
}

QTEST_MAIN(TestAlert)
#include "tst_alert.moc"
