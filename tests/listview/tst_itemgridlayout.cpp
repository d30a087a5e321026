#include "GRItemGridLayout.h"

#include <QTest>

#include <limits>

constexpr qreal notANumber = std::numeric_limits<qreal>::quiet_NaN();

// Items, the height to fill, the enclosing width; rows, columns, frame width, the last item's top left.
// clang-format off
struct GridRow { quint64 count; qreal height, enclosingWidth; quint64 rows, columns; qreal frameWidth; QPointF lastItem; };
// clang-format on
Q_DECLARE_METATYPE(GridRow)

// Items 220 x 18 unless a row says otherwise: pitch 228 x 26.
class TestItemGridLayout : public QObject
{
    Q_OBJECT

private slots:
    void itemSize_data()
    {
        QTest::addColumn<QSizeF>("zero");
        QTest::addColumn<QSizeF>("expected");
        QTest::newRow("reference 0") << QSizeF(8.11, 16) << QSizeF(220, 17);
        QTest::newRow("narrow 0 keeps the minimum") << QSizeF(4, 10) << QSizeF(160, 15);
        QTest::newRow("fractions round up") << QSizeF(10, 16.2) << QSizeF(272, 18);
        QTest::newRow("not a number") << QSizeF(notANumber, notANumber) << QSizeF(160, 15);
    }
    void itemSize()
    {
        QFETCH(QSizeF, zero);
        QTEST(GRItemGridLayout::itemSizeForZero(zero), "expected");
    }

    void grid_data()
    {
        QTest::addColumn<GridRow>("r");
        // clang-format off
        QTest::newRow("7 items in 3 rows") << GridRow{7, 78, 300, 3, 3, 684, {460, 4}};
        QTest::newRow("wide enclosing view") << GridRow{7, 103, 1000, 3, 3, 1000, {460, 4}};
        QTest::newRow("width not a number") << GridRow{6, 80, notANumber, 3, 2, 456, {232, 56}};
        QTest::newRow("empty list") << GridRow{0, 80, 500, 3, 0, 500, {4, 4}};
        QTest::newRow("too low for a row") << GridRow{3, 10, 0, 1, 3, 684, {460, 4}};
        QTest::newRow("height not a number") << GridRow{2, notANumber, 0, 1, 2, 456, {232, 4}};
        // clang-format on
    }
    void grid()
    {
        QFETCH(GridRow, r);
        GRItemGridLayout grid;
        grid.layout(r.count, r.height);
        QCOMPARE(grid.rowCount(), r.rows);
        QCOMPARE(grid.columnCount(), r.columns);
        QCOMPARE(grid.frameSize(r.enclosingWidth, 90).width(), r.frameWidth);
        QCOMPARE(grid.itemRect(r.count ? r.count - 1 : 0).topLeft(), r.lastItem);
    }

    void itemAt_data()
    {
        // 7 items in 3 rows; column 2 holds item 6 only.
        QTest::addColumn<QPointF>("point");
        QTest::addColumn<qint64>("expected");
        QTest::newRow("top left margin") << QPointF(2, 2) << 0ll;
        QTest::newRow("gap right of item 0") << QPointF(230, 10) << 0ll;
        QTest::newRow("past the gap below item 0") << QPointF(10, 30) << 1ll;
        QTest::newRow("item 6") << QPointF(500, 10) << 6ll;
        QTest::newRow("last column below its last item") << QPointF(500, 40) << -1ll;
        QTest::newRow("below the last row") << QPointF(10, 83) << -1ll;
        QTest::newRow("right of the last column") << QPointF(700, 10) << -1ll;
        QTest::newRow("not a number") << QPointF(notANumber, 10) << -1ll;
    }
    void itemAt()
    {
        QFETCH(QPointF, point);
        GRItemGridLayout grid;
        grid.layout(7, 80);
        QTEST(grid.itemAt(point, 7), "expected");
    }

    void checkboxAndText()
    {
        const QRectF item(4, 4, 220, 18);
        const QRectF box = GRItemGridLayout::checkboxRect(item);
        QCOMPARE(GRItemGridLayout::checkboxRect(QRectF(4, 4, 220, 25)), QRectF(4, 7, 18, 18)); // at most 18
        QCOMPARE(GRItemGridLayout::textRect(item, box, 15), QRectF(24, 6, 200, 15));
        QCOMPARE(GRItemGridLayout::textRect(item, box, 17), QRectF(24, 4, 200, 18));
    }
};

QTEST_APPLESS_MAIN(TestItemGridLayout)
#include "tst_itemgridlayout.moc"
