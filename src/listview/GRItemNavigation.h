#pragma once

#include <QtGlobal>

// Where the arrow keys take the selection in a grid of count items that run down rows-high
// columns. Each answers the new index; a move that does not apply answers the index it was given.
class GRItemNavigation
{
public:
    GRItemNavigation(quint64 count, quint64 rows, quint64 columns)
        : m_count(count), m_rows(rows), m_columns(columns)
    {
    }

    // From the last item to the first and back, across columns.
    quint64 down(quint64 selected) const;
    quint64 up(quint64 selected) const;
    // Along the row; past the last column to the first, and from the first to the last column or,
    // where that column is too short, the one before it. Nothing with a single column.
    quint64 right(quint64 selected) const;
    quint64 left(quint64 selected) const;

private:
    quint64 m_count;
    quint64 m_rows;
    quint64 m_columns;
};
