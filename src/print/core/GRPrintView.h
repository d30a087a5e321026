#pragma once

#include "GRPrintPagination.h"
#include "GRPrintScope.h"

#include <QFont>
#include <QPageLayout>
#include <QPageRanges>
#include <QRectF>

class QPagedPaintDevice;
class QPainter;

// The printed grocery list: lays the pages out for a page layout and draws them on any paged
// device (a printer, its preview, a PDF file). All drawing is in points of the logical page.
class GRPrintView
{
public:
    static constexpr double TopMargin = 90;
    static constexpr double BottomMargin = 72;
    static constexpr char JobTitle[] = "Tansy Groceries";

    explicit GRPrintView(const GRGroceryDatabase &database);

    void setScope(GRPrintScope scope, const QString &storeGuid, bool ignorePageStarts);
    void setPrintFont(const QFont &font) { m_font = font; }

    // The page layout a print uses: the chosen paper and side margins, with room at the top and
    // the bottom for the printer's own marks.
    static QPageLayout printPageLayout(const QPageLayout &chosen);
    // The height of a space in font, in points.
    static double fontLineHeight(const QFont &font);

    // Lays the pages out for a device set up with printPageLayout(); the number of pages.
    qsizetype knowsPageRange(const QPageLayout &printLayout, double scale);
    // Page n (from 1) of the stack of pages.
    QRectF rectForPage(qsizetype n) const;
    // Draws the page that rect (one of rectForPage's) stands for; painter units are logical points.
    void drawRect(QPainter &painter, const QRectF &rect) const;
    // Paints the pages in ranges (all when empty) onto device, whose page layout must be the one
    // given to knowsPageRange(). False when the device can't be painted on.
    bool render(QPagedPaintDevice &device, const QPageRanges &ranges = QPageRanges()) const;

    // Lays the pages out for the chosen page layout and writes them to a PDF file at path, which
    // is replaced only when the whole file was written. False, with the reason, when it wasn't.
    bool writePdf(const QString &path, const QPageLayout &chosen, double scale, QString *reason);

    const GRPrintPagination &pagination() const { return m_pagination; }
    qsizetype pageCount() const { return m_pagination.pageCount(); }
    double scale() const { return m_scale; }

private:
    GRPrintPagination m_pagination;
    QFont m_font;
    double m_scale = 1;
};
