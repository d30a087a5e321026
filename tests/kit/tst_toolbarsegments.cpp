#include "GRTestSupport.h"
#include "MGToolbarSegments.h"
#include "MGToolbarSegmentsDelegate.h"

#include <QIcon>
#include <QImage>
#include <QPixmap>
#include <QPointer>
#include <QRegularExpression>
#include <QTest>
#include <QToolBar>

namespace {

class FakeDelegate : public MGToolbarSegmentsDelegate
{
public:
    QList<QVariant> tabs{QStringLiteral("One"), QStringLiteral("Two"), QStringLiteral("Three")};
    QStringList calls;
    bool deleteOnSelect = false;

    QList<QVariant> tabsForSegments(MGToolbarSegments *) override { return tabs; }
    void tabWasSelected(qint64 tab, MGToolbarSegments *segments) override
    {
        calls << QStringLiteral("selected %1").arg(tab);
        if (deleteOnSelect)
            delete segments;
    }
    bool sameTabWasSelected(qint64 tab, MGToolbarSegments *) override
    {
        calls << QStringLiteral("same %1").arg(tab);
        return true;
    }
};

// 200 x 21 with round end caps: the tabs are 68, 66 and 66 wide.
const QPoint kTabCentres[] = {{34, 10}, {101, 10}, {167, 10}};

QPoint pointFor(QChar where)
{
    return where == QLatin1Char('b') ? QPoint(101, 40) : kTabCentres[where.digitValue()];
}

// "c1" click tab 1, "p1" press on it, "m2" move over tab 2, "mb" move below the bar, "r1" release
// over tab 1, "l" the pointer leaves the control, "d32" / "e32" disable / enable tab 32, "x" disable
// the whole control.
void runScript(MGToolbarSegments *segments, const QString &script)
{
    for (const QString &step : script.split(QLatin1Char(' '), Qt::SkipEmptyParts)) {
        const char action = step[0].toLatin1();
        if (action == 'l') {
            QEvent leave(QEvent::Leave);
            QCoreApplication::sendEvent(segments, &leave);
        } else if (action == 'x') {
            segments->setEnabled(false);
        } else if (action == 'd' || action == 'e') {
            segments->setEnabled(action == 'e', step.mid(1).toLongLong());
        } else if (action == 'c') {
            if (!segments->isEnabled()) {
                // The disabled widget refuses both halves of the click.
                QTest::ignoreMessage(QtWarningMsg, QRegularExpression("not accepted"));
                QTest::ignoreMessage(QtWarningMsg, QRegularExpression("not accepted"));
            }
            QTest::mouseClick(segments, Qt::LeftButton, {}, pointFor(step[1]));
        } else if (action == 'p') {
            QTest::mousePress(segments, Qt::LeftButton, {}, pointFor(step[1]));
        } else if (action == 'm') {
            QTest::mouseMove(segments, pointFor(step[1]));
        } else if (action == 'r') {
            QTest::mouseRelease(segments, Qt::LeftButton, {}, pointFor(step[1]));
        }
    }
}

} // namespace

using Tabs = QList<qint64>;

class TestToolbarSegments : public QObject
{
    Q_OBJECT

private:
    FakeDelegate m_delegate;
    std::unique_ptr<MGToolbarSegments> makeSegments(quint64 style);

private slots:
    void initTestCase() { GRTestSupport::initEnvironment(); }
    void init() { m_delegate = FakeDelegate(); }
    void mouse_data();
    void mouse();
    void selection_data();
    void selection();
    void findsControlInToolbar();
    void paintsSelectionAndIcons();
    void oddContentDoesNotCrash();
    void delegateMayDeleteTheControl();
};

std::unique_ptr<MGToolbarSegments> TestToolbarSegments::makeSegments(quint64 style)
{
    auto segments = std::make_unique<MGToolbarSegments>(style, true);
    segments->setDelegate(&m_delegate);
    segments->resize(200, 21);
    return segments;
}

void TestToolbarSegments::mouse_data()
{
    QTest::addColumn<int>("style");
    QTest::addColumn<QString>("script");
    QTest::addColumn<QStringList>("calls");
    QTest::addColumn<Tabs>("selected");

    QTest::newRow("momentary") << 0 << "c1 c1" << QStringList{"selected 1", "selected 1"} << Tabs{};
    QTest::newRow("drag to another tab") << 0 << "p1 m2 r2" << QStringList{} << Tabs{};
    QTest::newRow("drag out and back") << 0 << "p1 m2 m1 r1" << QStringList{"selected 1"} << Tabs{};
    QTest::newRow("leave") << 0 << "p1 l r1" << QStringList{} << Tabs{};
    QTest::newRow("leave and move back") << 0 << "p1 l m1 r1" << QStringList{"selected 1"} << Tabs{};
    QTest::newRow("release without press") << 0 << "r1 c0" << QStringList{"selected 0"} << Tabs{};
    QTest::newRow("single moves") << 1 << "c0 c2" << QStringList{"selected 0", "selected 2"} << Tabs{2};
    QTest::newRow("single same tab") << 1 << "c2 c2" << QStringList{"selected 2", "same 2"} << Tabs{2};
    QTest::newRow("single drag out keeps old") << 1 << "c0 p2 mb rb" << QStringList{"selected 0"} << Tabs{0};
    QTest::newRow("disabled tab") << 0 << "d1 c1 c0" << QStringList{"selected 0"} << Tabs{};
    QTest::newRow("bit 32 is tab 0") << 0 << "d32 c0 c2" << QStringList{"selected 2"} << Tabs{};
    QTest::newRow("bit 64 re-enables tab 0") << 0 << "d0 e64 c0" << QStringList{"selected 0"} << Tabs{};
    // A disabled control also shows no selection.
    QTest::newRow("disabled control") << 1 << "c1 x c2" << QStringList{"selected 1"} << Tabs{};
    QTest::newRow("toggles") << 2 << "c0 c2 c0" << QStringList{"selected 0", "selected 2", "selected 0"}
                             << Tabs{2};
}

void TestToolbarSegments::mouse()
{
    QFETCH(int, style);
    QFETCH(QString, script);
    QFETCH(QStringList, calls);
    QFETCH(Tabs, selected);

    auto segments = makeSegments(style);
    runScript(segments.get(), script);
    QCOMPARE(m_delegate.calls, calls);
    for (qint64 tab = 0; tab < 3; ++tab)
        QCOMPARE(segments->isTabSelected(tab), selected.contains(tab));
    QCOMPARE(segments->pressedTab(), qint64(-1));
    QVERIFY(!segments->isPressed());
}

void TestToolbarSegments::selection_data()
{
    QTest::addColumn<qint64>("index");
    QTest::addColumn<int>("newCount");
    QTest::addColumn<qint64>("expected");

    QTest::newRow("kept") << qint64(2) << 3 << qint64(2);
    QTest::newRow("past the end") << qint64(3) << 3 << qint64(-1);
    QTest::newRow("still there after relayout") << qint64(1) << 2 << qint64(1);
    QTest::newRow("gone after relayout") << qint64(2) << 2 << qint64(-1);
    QTest::newRow("tab 0 outlives its tab") << qint64(0) << 0 << qint64(0);
}

void TestToolbarSegments::selection()
{
    QFETCH(qint64, index);
    QFETCH(int, newCount);
    QFETCH(qint64, expected);

    // selectTab lays out the three tabs first; then the delegate's tabs change.
    auto segments = makeSegments(MGToolbarSegments::SingleSelection);
    segments->selectTab(index);
    QCOMPARE(segments->tabs().size(), 3);
    m_delegate.tabs.resize(newCount);
    segments->layoutTabs();
    QCOMPARE(segments->selectedTab(), expected);
    segments->reloadTabs();
    QCOMPARE(segments->selectedTab(), qint64(-1));
}

void TestToolbarSegments::findsControlInToolbar()
{
    QToolBar toolbar;
    auto *first = new MGToolbarSegments;
    auto *box = new QWidget;
    auto *boxed = new MGToolbarSegments(box);
    auto *last = new MGToolbarSegments;
    first->setBarTag(1);
    boxed->setBarTag(2);
    last->setBarTag(1);
    toolbar.addWidget(first);
    QAction *boxAction = toolbar.addWidget(box);
    QAction *lastAction = toolbar.addWidget(last);
    toolbar.addAction(QStringLiteral("Plain"));

    QAction *item = nullptr;
    QCOMPARE(MGToolbarSegments::tabsForToolbar(&toolbar, 1, &item), last);
    QCOMPARE(item, lastAction);
    QCOMPARE(MGToolbarSegments::tabsForToolbar(&toolbar, 2, &item), boxed);
    QCOMPARE(item, boxAction);
    QCOMPARE(MGToolbarSegments::tabsForToolbar(&toolbar, 7, &item), nullptr);
    QCOMPARE(item, nullptr);
}

void TestToolbarSegments::paintsSelectionAndIcons()
{
    auto segments = makeSegments(MGToolbarSegments::SingleSelection);
    QPixmap red(32, 32);
    red.fill(Qt::red);
    m_delegate.tabs = {QIcon(red), QStringLiteral("Two"), QStringLiteral("Three")};
    segments->selectTab(1);

    // Away from the text, the selected tab is darker than an unselected one.
    const QImage image = segments->grab().toImage();
    QVERIFY(qGray(image.pixel(75, 5)) < qGray(image.pixel(145, 5)) - 10);

    for (qreal ratio : {1.0, 2.0}) {
        QImage scaled(QSize(200, 21) * ratio, QImage::Format_ARGB32_Premultiplied);
        scaled.setDevicePixelRatio(ratio);
        scaled.fill(Qt::transparent);
        segments->render(&scaled, QPoint(), QRegion(), QWidget::DrawChildren);
        int redPixels = 0;
        for (int y = 0; y < scaled.height(); ++y) {
            for (int x = 0; x < int(68 * ratio); ++x) {
                // Red shows through the inactive window's fading.
                const QRgb pixel = scaled.pixel(x, y);
                redPixels += qRed(pixel) - qGreen(pixel) > 100 && qGreen(pixel) == qBlue(pixel);
            }
        }
        // The icon is scaled down to fit the bar, 13 x 13 units, on whole device pixels.
        QCOMPARE(redPixels, int(13 * 13 * ratio * ratio));
        QCOMPARE(qAlpha(scaled.pixel(0, 0)), 0);
    }
}

void TestToolbarSegments::oddContentDoesNotCrash()
{
    auto segments = makeSegments(MGToolbarSegments::AnySelection);
    m_delegate.tabs = {QVariant(), QVariant(42), QString(), QIcon(), QImage(4, 4, QImage::Format_RGB32)};
    segments->layoutTabs();
    segments->updateContent(QStringLiteral("x"), 5);
    segments->setSelected(true, 99);
    for (QSize size : {QSize(200, 21), QSize(20, 21), QSize(3, 3), QSize(0, 0)}) {
        segments->resize(size);
        segments->grab();
    }

    // With no tabs there is nothing to click.
    m_delegate.tabs.clear();
    segments->reloadTabs();
    segments->resize(200, 21);
    runScript(segments.get(), "c0");
    QVERIFY(m_delegate.calls.isEmpty());
}

void TestToolbarSegments::delegateMayDeleteTheControl()
{
    m_delegate.deleteOnSelect = true;
    QPointer<MGToolbarSegments> segments = makeSegments(MGToolbarSegments::AnySelection).release();
    runScript(segments.data(), "c1");
    QVERIFY(segments.isNull());
    QCOMPARE(m_delegate.calls, QStringList{"selected 1"});
}

QTEST_MAIN(TestToolbarSegments)
#include "tst_toolbarsegments.moc"
