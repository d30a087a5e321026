#pragma once

#include <QPointF>
#include <QRectF>
#include <QSizeF>

// The arithmetic of the item grid, in the view's coordinates (y grows downward). Items run down
// each column, top to bottom, then continue at the top of the next column to the right.
class GRItemGridLayout
{
public:
    static constexpr qreal CellSpacing = 8.0;
    static constexpr qreal Margin = 4.0;
    static constexpr qreal HighlightOutset = 4.0;
    static constexpr qreal CheckboxGap = 4.0;
    static constexpr qreal LargestCheckbox = 18.0;
    static constexpr qreal CheckboxInset = 2.0;
    static constexpr qreal SmallestItemWidth = 160.0;
    static constexpr qreal SmallestLineHeight = 14.0;
    static constexpr qreal ReferenceItemWidth = 220.0;
    static constexpr qreal ReferenceZeroWidth = 8.11;

    static QSizeF defaultItemSize() { return {220.0, 18.0}; }
    // The item size for a font whose "0" measures zeroSize.
    static QSizeF itemSizeForZero(const QSizeF &zeroSize);

    explicit GRItemGridLayout(const QSizeF &itemSize = defaultItemSize()) : m_itemSize(itemSize) {}

    const QSizeF &itemSize() const { return m_itemSize; }
    void setItemSize(const QSizeF &itemSize) { m_itemSize = itemSize; }
    qreal pitchX() const { return m_itemSize.width() + CellSpacing; }
    qreal pitchY() const { return m_itemSize.height() + CellSpacing; }

    // The rows that fit height (never fewer than one) and the columns that count items need.
    void layout(quint64 count, qreal height);
    quint64 rowCount() const { return m_rowCount; }
    quint64 columnCount() const { return m_columnCount; }
    // The view's size: as wide as the columns but no narrower than the enclosing view, and as
    // high as the enclosing view. A width that is not a number counts as none.
    QSizeF frameSize(qreal enclosingWidth, qreal enclosingHeight) const;

    QRectF itemRect(quint64 index) const;
    // The item under point among count items, or -1. The margin above and left of the first
    // cells and the spacing after a cell belong to that cell.
    qint64 itemAt(const QPointF &point, quint64 count) const;

    // The item's whole cell: what a selection fills.
    static QRectF highlightRect(const QRectF &item);
    // Left edge of the item, vertically centred, at most LargestCheckbox square.
    static QRectF checkboxRect(const QRectF &item);
    // Right of the check box to the item's right edge; vertically centred when the item is more
    // than a point higher than the text.
    static QRectF textRect(const QRectF &item, const QRectF &checkbox, qreal textHeight);

private:
    QSizeF m_itemSize;
    quint64 m_rowCount = 0;
    quint64 m_columnCount = 0;
};
