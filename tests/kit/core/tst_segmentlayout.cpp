#include "MGSegmentLayout.h"

#include <QTest>

using Widths = QList<double>;
// Width, height, tab count, round end caps, extra centre tab width; end cap width, tab widths.
using LayoutRow = std::tuple<double, double, int, bool, double, double, Widths>;
Q_DECLARE_METATYPE(LayoutRow)

class TestSegmentLayout : public QObject
{
    Q_OBJECT

private slots:
    void layout_data()
    {
        QTest::addColumn<LayoutRow>("row");
        QTest::newRow("3 round, 2 left over") << LayoutRow{200, 21, 3, true, 0, 10, {68, 66, 66}};
        QTest::newRow("2 square, 1 left over") << LayoutRow{72, 24, 2, false, 0, 6, {37, 35}};
        QTest::newRow("none left over") << LayoutRow{173, 21, 4, false, 0, 5, {42, 45, 45, 41}};
        QTest::newRow("3 left over, from the left") << LayoutRow{176, 21, 4, false, 0, 5, {43, 46, 46, 41}};
        QTest::newRow("half end cap rounds up") << LayoutRow{120, 24, 3, true, 0, 11.5, {42, 38, 40}};
        QTest::newRow("1 tiny tab, cap >= 2, no extra") << LayoutRow{50, 4, 1, false, 12, 2, {50}};
        QTest::newRow("extra centre of 3") << LayoutRow{200, 21, 3, true, 20, 10, {61, 79, 60}};
        QTest::newRow("extra centre of 5") << LayoutRow{300, 21, 5, false, 30, 5, {53, 56, 85, 55, 51}};
        QTest::newRow("fractional extra") << LayoutRow{200, 21, 3, true, 10.5, 10, {64, 72.5, 63}};
        QTest::newRow("fractional width") << LayoutRow{200.7, 21, 3, true, 0, 10, {68, 66, 66}};
        // Too narrow: the negative share must floor, not truncate toward zero.
        QTest::newRow("negative share") << LayoutRow{20, 21, 3, true, 0, 10, {8, 6, 6}};
    }
    void layout()
    {
        QFETCH(LayoutRow, row);
        const auto &[width, height, count, round, extra, endcap, expected] = row;
        const MGSegmentLayout::Result result = MGSegmentLayout::layout(width, height, count, round, extra);
        QCOMPARE(result.endcapWidth, endcap);
        QCOMPARE(result.tabWidths, expected);
        QCOMPARE(result.centerTab, extra != 0 && count > 1 ? qint64(count / 2) : qint64(-1));
    }

    // On a bar 21 high with tabs 68, 66 and 66 wide.
    void tabFromPoint_data()
    {
        QTest::addColumn<double>("x");
        QTest::addColumn<double>("y");
        QTest::addColumn<qint64>("tab");
        QTest::newRow("above") << 10.0 << -0.5 << qint64(-1);
        QTest::newRow("below") << 10.0 << 21.5 << qint64(-1);
        QTest::newRow("bottom edge") << 10.0 << 21.0 << qint64(0);
        QTest::newRow("left edge") << 0.0 << 5.0 << qint64(0);
        QTest::newRow("last point of 0") << 67.9 << 5.0 << qint64(0);
        QTest::newRow("first point of 1") << 68.0 << 5.0 << qint64(1);
        QTest::newRow("right of the bar") << 900.0 << 5.0 << qint64(2);
        QTest::newRow("left of the bar") << -3.0 << 5.0 << qint64(2);
    }
    void tabFromPoint()
    {
        QFETCH(double, x);
        QFETCH(double, y);
        QTEST(MGSegmentLayout::tabFromPoint(x, y, 21, {68, 66, 66}), "tab");
    }
};

QTEST_GUILESS_MAIN(TestSegmentLayout)
#include "tst_segmentlayout.moc"
