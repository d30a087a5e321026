#include "MGSegmentLayout.h"

#include <QTest>

#include <numeric>

using Widths = QList<double>;

class TestSegmentLayout : public QObject
{
    Q_OBJECT

private slots:
    void layout_data();
    void layout();
    void tabFromPoint_data();
    void tabFromPoint();
};

void TestSegmentLayout::layout_data()
{
    QTest::addColumn<double>("width");
    QTest::addColumn<double>("height");
    QTest::addColumn<int>("count");
    QTest::addColumn<bool>("round");
    QTest::addColumn<double>("extra");
    QTest::addColumn<double>("endcap");
    QTest::addColumn<Widths>("expected");
    // What the truncations may drop: the widths add up to width - shortfall.
    QTest::addColumn<double>("shortfall");

    QTest::newRow("three round, remainder 2")
        << 200.0 << 21.0 << 3 << true << 0.0 << 10.0 << Widths{68, 66, 66} << 0.0;
    QTest::newRow("two square, remainder 1")
        << 72.0 << 24.0 << 2 << false << 0.0 << 6.0 << Widths{37, 35} << 0.0;
    QTest::newRow("four square, no remainder")
        << 173.0 << 21.0 << 4 << false << 0.0 << 5.0 << Widths{42, 45, 45, 41} << 0.0;
    QTest::newRow("remainder 3 spreads from the left")
        << 176.0 << 21.0 << 4 << false << 0.0 << 5.0 << Widths{43, 46, 46, 41} << 0.0;
    QTest::newRow("half end cap rounds up")
        << 120.0 << 24.0 << 3 << true << 0.0 << 11.5 << Widths{42, 38, 40} << 0.0;
    QTest::newRow("one tiny tab, cap at least 2")
        << 50.0 << 4.0 << 1 << false << 0.0 << 2.0 << Widths{50} << 0.0;
    QTest::newRow("one tab ignores extra") << 50.0 << 24.0 << 1 << true << 12.0 << 11.5 << Widths{50} << 0.0;
    QTest::newRow("extra centre of three")
        << 200.0 << 21.0 << 3 << true << 20.0 << 10.0 << Widths{61, 79, 60} << 0.0;
    QTest::newRow("extra centre of five")
        << 300.0 << 21.0 << 5 << false << 30.0 << 5.0 << Widths{53, 56, 85, 55, 51} << 0.0;
    QTest::newRow("fractional extra loses the half")
        << 200.0 << 21.0 << 3 << true << 10.5 << 10.0 << Widths{64, 72.5, 63} << 0.5;
    QTest::newRow("fractional width is truncated")
        << 200.7 << 21.0 << 3 << true << 0.0 << 10.0 << Widths{68, 66, 66} << 0.7;
    // Too narrow: the share is negative and must floor, not truncate toward zero.
    QTest::newRow("negative share floors")
        << 20.0 << 21.0 << 3 << true << 0.0 << 10.0 << Widths{8, 6, 6} << 0.0;
}

void TestSegmentLayout::layout()
{
    QFETCH(double, width);
    QFETCH(double, height);
    QFETCH(int, count);
    QFETCH(bool, round);
    QFETCH(double, extra);
    QFETCH(double, endcap);
    QFETCH(Widths, expected);
    QFETCH(double, shortfall);

    const MGSegmentLayout::Result result = MGSegmentLayout::layout(width, height, count, round, extra);
    QCOMPARE(result.endcapWidth, endcap);
    QCOMPARE(result.tabWidths, expected);
    QCOMPARE(result.centerTab, extra != 0 && count > 1 ? qint64(count / 2) : qint64(-1));
    const double sum = std::accumulate(result.tabWidths.cbegin(), result.tabWidths.cend(), 0.0);
    QVERIFY(qFuzzyCompare(sum + shortfall, width));
}

void TestSegmentLayout::tabFromPoint_data()
{
    QTest::addColumn<Widths>("widths");
    QTest::addColumn<double>("x");
    QTest::addColumn<double>("y");
    QTest::addColumn<qint64>("expected");

    const Widths three{68, 66, 66};
    QTest::newRow("left edge") << three << 0.0 << 0.0 << qint64(0);
    QTest::newRow("just left of first edge") << three << 67.9 << 10.0 << qint64(0);
    QTest::newRow("on first edge") << three << 68.0 << 10.0 << qint64(1);
    QTest::newRow("on second edge") << three << 134.0 << 10.0 << qint64(2);
    QTest::newRow("right of the bar") << three << 500.0 << 10.0 << qint64(2);
    QTest::newRow("left of the bar goes to the last") << three << -3.0 << 10.0 << qint64(2);
    QTest::newRow("bottom line counts") << three << 10.0 << 21.0 << qint64(0);
    QTest::newRow("above") << three << 10.0 << -0.5 << qint64(-1);
    QTest::newRow("below") << three << 10.0 << 21.5 << qint64(-1);
    QTest::newRow("one tab, far off") << Widths{50} << -900.0 << 21.0 << qint64(0);
    QTest::newRow("one tab, below") << Widths{50} << 5.0 << 22.0 << qint64(-1);
    QTest::newRow("behind a negative width") << Widths{1, -1, 0} << 1.0 << 5.0 << qint64(2);
}

void TestSegmentLayout::tabFromPoint()
{
    QFETCH(Widths, widths);
    QFETCH(double, x);
    QFETCH(double, y);
    QFETCH(qint64, expected);
    QCOMPARE(MGSegmentLayout::tabFromPoint(x, y, 21, widths), expected);
}

QTEST_GUILESS_MAIN(TestSegmentLayout)
#include "tst_segmentlayout.moc"
