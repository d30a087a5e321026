#include "MGSegmentLayout.h"

#include <algorithm>
#include <cmath>

double MGSegmentLayout::endcapWidth(double height, bool roundEndcaps)
{
    if (roundEndcaps)
        return height * 0.5 - 0.5;
    const float quarter = std::floor((float(height) + 1.0f) * 0.25f);
    return std::max(double(quarter), 2.0);
}

MGSegmentLayout::Result MGSegmentLayout::layout(double width, double height, qint64 count, bool roundEndcaps,
                                                double extraCenterTabWidth)
{
    Result result;
    result.endcapWidth = endcapWidth(height, roundEndcaps);
    if (count < 2) {
        result.tabWidths.append(width);
        return result;
    }

    const double n = double(count);
    const double cap = std::ceil(float(result.endcapWidth));
    double share = std::trunc(width - 2 * cap - kSeparatorWidth * (n - 1));
    if (extraCenterTabWidth != 0) {
        share = std::trunc(share - extraCenterTabWidth);
        result.centerTab = count / 2;
    }

    const double perTab = std::floor(float(share) / float(n));
    double remainder = share - n * perTab;
    const double doubled = remainder > n ? remainder - n : 0;

    result.tabWidths.reserve(count);
    double first = cap + perTab + kSeparatorLeft;
    if (remainder != 0) {
        const double step = remainder > n ? 2 : 1;
        first += step;
        remainder -= step;
    }
    result.tabWidths.append(first);

    for (qint64 i = 1; i < count - 1; ++i) {
        double w = perTab + kSeparatorWidth;
        if (i == result.centerTab)
            w += extraCenterTabWidth;
        if (remainder > 0) {
            const double step = double(i) < doubled ? 2 : 1;
            w += step;
            remainder -= step;
        }
        result.tabWidths.append(w);
    }

    result.tabWidths.append(perTab + kSeparatorRight + cap + remainder);
    return result;
}

QList<double> MGSegmentLayout::tabWidths(double width, double height, qint64 count, bool roundEndcaps,
                                         double extraCenterTabWidth)
{
    return layout(width, height, count, roundEndcaps, extraCenterTabWidth).tabWidths;
}

qint64 MGSegmentLayout::tabFromPoint(double x, double y, double height, const QList<double> &widths)
{
    if (y < 0 || y > height)
        return -1;
    const qint64 count = widths.size();
    if (count < 2)
        return 0;
    double left = 0;
    for (qint64 i = 0; i < count - 1; ++i) {
        const double right = left + widths[i];
        if (x >= left && x < right)
            return i;
        left = right;
    }
    return count - 1;
}

double MGSegmentLayout::tabLeft(qint64 tab, const QList<double> &widths)
{
    double left = 0;
    const qint64 end = std::min<qint64>(tab, widths.size());
    for (qint64 i = 0; i < end; ++i)
        left += widths[i];
    return left;
}
