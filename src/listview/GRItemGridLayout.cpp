#include "GRItemGridLayout.h"

#include <algorithm>
#include <cmath>
#include <limits>

// Several results are rounded in single precision so that cell sizes match across machines
// exactly as the arithmetic was first tuned.

// A quotient truncated toward zero, or -1 when it is negative, not a number, or too large to count.
static qint64 truncatedQuotient(qreal numerator, qreal denominator)
{
    const qreal quotient = std::trunc(numerator / denominator);
    if (!(quotient >= 0) || quotient >= qreal(std::numeric_limits<qint64>::max() / 2))
        return -1;
    return qint64(quotient);
}

QSizeF GRItemGridLayout::itemSizeForZero(const QSizeF &zeroSize)
{
    const float width = std::ceil(float(zeroSize.width() * ReferenceItemWidth / ReferenceZeroWidth));
    const float height = std::ceil(float(zeroSize.height()));
    // std::max keeps its first argument when the other is not a number.
    return {std::max(SmallestItemWidth, qreal(width)), std::max(SmallestLineHeight, qreal(height)) + 1.0};
}

void GRItemGridLayout::layout(quint64 count, qreal height)
{
    const qint64 rows = pitchY() > 0 ? truncatedQuotient(height, pitchY()) : -1;
    m_rowCount = rows > 0 ? quint64(rows) : 1;
    m_columnCount = count / m_rowCount + (count % m_rowCount ? 1 : 0);
}

QSizeF GRItemGridLayout::frameSize(qreal enclosingWidth, qreal enclosingHeight) const
{
    const qreal columnsWidth = pitchX() * qreal(m_columnCount);
    qreal width = columnsWidth;
    if (!std::isnan(enclosingWidth) && float(enclosingWidth) > float(columnsWidth))
        width = enclosingWidth;
    return {width, std::isnan(enclosingHeight) ? 0.0 : enclosingHeight};
}

QRectF GRItemGridLayout::itemRect(quint64 index) const
{
    const quint64 rows = std::max<quint64>(m_rowCount, 1);
    const quint64 column = index / rows;
    const quint64 row = index % rows;
    return {pitchX() * qreal(column) + Margin, pitchY() * qreal(row) + Margin, m_itemSize.width(),
            m_itemSize.height()};
}

qint64 GRItemGridLayout::itemAt(const QPointF &point, quint64 count) const
{
    if (pitchX() <= 0 || pitchY() <= 0)
        return -1;
    const qint64 row = truncatedQuotient(point.y() - Margin, pitchY());
    const qint64 column = truncatedQuotient(point.x() - Margin, pitchX());
    if (row < 0 || column < 0 || quint64(row) >= m_rowCount || quint64(column) >= m_columnCount)
        return -1;
    const quint64 index = m_rowCount * quint64(column) + quint64(row);
    return index < count ? qint64(index) : -1;
}

QRectF GRItemGridLayout::highlightRect(const QRectF &item)
{
    return item.adjusted(-HighlightOutset, -HighlightOutset, HighlightOutset, HighlightOutset);
}

QRectF GRItemGridLayout::checkboxRect(const QRectF &item)
{
    const float side = std::max(0.0f, std::min(float(item.height() - CheckboxInset), float(LargestCheckbox)));
    const float offset = std::floor(float((item.height() - side) * 0.5));
    return {item.x(), item.y() + offset, side, side};
}

QRectF GRItemGridLayout::textRect(const QRectF &item, const QRectF &checkbox, qreal textHeight)
{
    const qreal x = item.x() + checkbox.width() + CheckboxGap;
    QRectF text(x, item.y(), item.x() + item.width() - x, item.height());
    if (item.height() > textHeight + 1) {
        text.setY(item.y() + std::ceil(float((item.height() - textHeight) * 0.5)));
        text.setHeight(textHeight);
    }
    return text;
}
