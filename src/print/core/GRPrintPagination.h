#pragma once

#include "GRPrintItem.h"
#include "GRPrintScope.h"

#include <QList>
#include <QSizeF>
#include <QString>

#include <array>

class GRGroceryDatabase;
class GRStore;

// Lays the grocery list out for paper: one section per store, grouped and sorted as each store
// asks, flowed into balanced columns and cut into pages. Plain arithmetic on a page size and a
// line height, so that it runs without a printer or a font.
class GRPrintPagination
{
public:
    static constexpr double Gutter = 9.0;
    static constexpr quint64 MinimumLinesPerPage = 6;
    static constexpr float MinimumLineHeight = 12.0f;

    explicit GRPrintPagination(const GRGroceryDatabase &database);

    void setScope(GRPrintScope scope, const QString &storeGuid = QString(), bool ignorePageStarts = false);
    // The printable area of one page, already divided by the print scale.
    void setPageSize(QSizeF logicalPageSize) { m_pageSize = logicalPageSize; }
    // The height of a space in the print font; lines are at least 12 apart.
    void setFontLineHeight(double height);

    // Builds the pages from the database.
    void layout();

    const QList<QList<GRPrintItem>> &pageLayouts() const { return m_pages; }
    qsizetype pageCount() const { return m_pages.size(); }
    QSizeF pageSize() const { return m_pageSize; }
    quint64 lineHeight() const { return m_lineHeight; }
    quint64 linesPerPage() const { return m_linesPerPage; }
    quint64 columnCount() const { return m_columnCount; }
    double columnWidth() const { return m_columnWidth; }
    // The scope the last layout printed: one store whose GUID no store has prints everything.
    GRPrintScope effectiveScope() const { return m_effectiveScope; }

    // The store a one-store print offers: the one remembered by guid, else the first store (its
    // GUID; empty when there are no stores).
    static QString storeGuidOrFirst(const GRGroceryDatabase &database, const QString &guid);

private:
    QList<GRPrintItem> itemEntries(GRPrintScope scope, const GRStore *chosenStore) const;
    // Negative, zero or positive as a prints before, with or after b.
    int compare(const GRPrintItem &a, const GRPrintItem &b) const;
    void preliminaryLayout(const QList<GRPrintItem> &sortedEntries, GRPrintScope scope);
    void layoutPage(qsizetype pageIndex);
    void setAisleOrderTable(const QList<qint64> &aisleOrder);
    int compareAisles(qint64 x, qint64 y) const;
    qsizetype aislePlace(qint64 aisle) const;
    // Lays out one page; the index where it must break, or -1 when everything fitted.
    qsizetype flowPage(QList<GRPrintItem> &page) const;

    const GRGroceryDatabase &m_database;
    GRPrintScope m_scope = GRPrintScope::EntireList;
    GRPrintScope m_effectiveScope = GRPrintScope::EntireList;
    QString m_storeGuid;
    bool m_ignorePageStarts = false;
    QSizeF m_pageSize;
    quint64 m_lineHeight = 12;
    quint64 m_linesPerPage = MinimumLinesPerPage;
    quint64 m_columnCount = 1;
    double m_columnWidth = 0;
    std::array<qint64, 7> m_aisleOrder{};
    // Each store's print option, read once per layout rather than at every comparison.
    QList<qint32> m_printOptions;
    QList<QList<GRPrintItem>> m_pages;
};
