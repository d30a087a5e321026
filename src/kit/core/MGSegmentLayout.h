#pragma once

#include <QList>
#include <QtGlobal>

// The geometry of a row of toolbar segments: end caps, tab widths and hit testing. Plain numbers,
// no widgets, so that the drawing, the mouse and the tests agree on one set of edges.
class MGSegmentLayout
{
public:
    // Each separator takes 17 units, shared as 9 on the right of one tab and 8 on the left of
    // the next.
    static constexpr double kSeparatorWidth = 17;
    static constexpr double kSeparatorLeft = 9;
    static constexpr double kSeparatorRight = 8;

    struct Result
    {
        double endcapWidth = 0;
        QList<double> tabWidths;
        // The tab that receives the extra centre width, -1 when there is none.
        qint64 centerTab = -1;
    };

    static double endcapWidth(double height, bool roundEndcaps);
    static Result layout(double width, double height, qint64 count, bool roundEndcaps,
                         double extraCenterTabWidth);
    static QList<double> tabWidths(double width, double height, qint64 count, bool roundEndcaps,
                                   double extraCenterTabWidth);

    // -1 above or below the bar; otherwise the tab whose [left, right) span holds x, with the
    // last tab catching everything the others do not.
    static qint64 tabFromPoint(double x, double y, double height, const QList<double> &widths);
    // The left edge of a tab: the sum of the widths before it.
    static double tabLeft(qint64 tab, const QList<double> &widths);
};
