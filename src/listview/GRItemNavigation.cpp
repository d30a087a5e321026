#include "GRItemNavigation.h"

quint64 GRItemNavigation::down(quint64 selected) const
{
    if (m_count == 0)
        return selected;
    return selected + 1 >= m_count ? 0 : selected + 1;
}

quint64 GRItemNavigation::up(quint64 selected) const
{
    if (m_count == 0)
        return selected;
    return selected == 0 || selected >= m_count ? m_count - 1 : selected - 1;
}

quint64 GRItemNavigation::right(quint64 selected) const
{
    if (m_count == 0 || m_columns < 2 || m_rows == 0)
        return selected;
    return selected + m_rows < m_count ? selected + m_rows : selected % m_rows;
}

quint64 GRItemNavigation::left(quint64 selected) const
{
    if (m_count == 0 || m_columns < 2 || m_rows == 0)
        return selected;
    if (selected >= m_rows)
        return selected - m_rows;
    const quint64 lastColumn = selected % m_rows + (m_columns - 1) * m_rows;
    return lastColumn < m_count ? lastColumn : lastColumn - m_rows;
}
