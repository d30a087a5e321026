#include "GRPrintView.h"

#include "GRPrintGeometry.h"

#include <QFontMetricsF>
#include <QImage>
#include <QPagedPaintDevice>
#include <QPainter>
#include <QPdfWriter>
#include <QSaveFile>

#include <algorithm>
#include <cmath>

namespace {

using Type = GRPrintItem::Type;

const QColor LightGray(170, 170, 170);

// The font that prints at font's point size on painter, whose units are points while its device
// counts in its own dots.
QFont fontForPoints(const QFont &font, const QPaintDevice &device)
{
    QFont scaled = font;
    const double points = font.pointSizeF() > 0 ? font.pointSizeF() : double(font.pixelSize());
    scaled.setPointSizeF(points * 72.0 / device.logicalDpiY());
    return scaled;
}

struct PageFont
{
    QFont font;
    QFontMetricsF metrics;
};

// Draws text cut at its tail to fit rect; the width drawn.
double drawText(QPainter &painter, const PageFont &font, const QRectF &rect, const QString &text,
                Qt::Alignment alignment)
{
    if (painter.font() != font.font)
        painter.setFont(font.font);
    const QString shown = font.metrics.elidedText(text, Qt::ElideRight, rect.width());
    painter.drawText(rect, int(alignment | Qt::AlignVCenter) | Qt::TextSingleLine, shown);
    return font.metrics.horizontalAdvance(shown);
}

} // namespace

GRPrintView::GRPrintView(const GRGroceryDatabase &database) : m_pagination(database) {}

void GRPrintView::setScope(GRPrintScope scope, const QString &storeGuid, bool ignorePageStarts)
{
    m_pagination.setScope(scope, storeGuid, ignorePageStarts);
}

QPageLayout GRPrintView::printPageLayout(const QPageLayout &chosen)
{
    QPageLayout layout = chosen;
    layout.setUnits(QPageLayout::Point);
    const QMarginsF margins = layout.margins();
    // Paper too small for the top and bottom room keeps the margins it had.
    layout.setMargins(QMarginsF(margins.left(), TopMargin, margins.right(), BottomMargin));
    return layout;
}

double GRPrintView::fontLineHeight(const QFont &font)
{
    // Measured at 72 dots per inch, so that the window, its preview and the command line agree.
    QImage pointDevice(1, 1, QImage::Format_ARGB32);
    pointDevice.setDotsPerMeterX(2835);
    pointDevice.setDotsPerMeterY(2835);
    return QFontMetricsF(font, &pointDevice).height();
}

qsizetype GRPrintView::knowsPageRange(const QPageLayout &printLayout, double scale)
{
    m_scale = scale > 0 ? scale : 1;
    const QSizeF printable = printLayout.paintRect(QPageLayout::Point).size();
    m_pagination.setPageSize(printable / m_scale);
    m_pagination.setFontLineHeight(fontLineHeight(m_font));
    m_pagination.layout();
    return m_pagination.pageCount();
}

QRectF GRPrintView::rectForPage(qsizetype n) const
{
    const QSizeF size = m_pagination.pageSize();
    return QRectF(QPointF(0, double(n - 1) * size.height()), size);
}

void GRPrintView::drawRect(QPainter &painter, const QRectF &rect) const
{
    const QSizeF pageSize = m_pagination.pageSize();
    if (pageSize.height() <= 0)
        return;
    const qsizetype index = qsizetype(rect.y() / pageSize.height());
    if (index < 0 || index >= m_pagination.pageCount())
        return;

    QFont font = fontForPoints(m_font, *painter.device());
    const PageFont regular{font, QFontMetricsF(font, painter.device())};
    font.setBold(true);
    const PageFont bold{font, QFontMetricsF(font, painter.device())};
    const double lineHeight = double(m_pagination.lineHeight());
    const double columnWidth = m_pagination.columnWidth();
    const bool oneBox = m_pagination.effectiveScope() == GRPrintScope::NeededItems;
    const QPen rulePen(Qt::black, GRPrintGeometry::RuleWidth);
    const QPen crossPen(Qt::black, GRPrintGeometry::CrossWidth);

    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(Qt::NoBrush);
    for (const GRPrintItem &entry : m_pagination.pageLayouts()[index]) {
        const QPointF origin = rect.topLeft() + entry.position();
        const QRectF line(origin, QSizeF(columnWidth, lineHeight));
        painter.setPen(Qt::black);
        switch (entry.type()) {
        case Type::Spacer:
            break;
        case Type::StoreHeading: {
            const QRectF band(origin, QSizeF(pageSize.width(), lineHeight));
            painter.fillRect(band, LightGray);
            drawText(painter, bold, band, entry.name(), Qt::AlignHCenter);
            break;
        }
        case Type::GroupHeading: {
            const double width = drawText(painter, bold, line, entry.name(), Qt::AlignHCenter);
            painter.setPen(rulePen);
            painter.drawLines(GRPrintGeometry::headingRules(line, width));
            break;
        }
        case Type::KeyLegend: {
            // "<mark>\t<name>": the names line up one and a half lines in.
            const double indent = std::min(lineHeight * 1.5, line.width());
            drawText(painter, regular, QRectF(origin, QSizeF(indent, lineHeight)), entry.name().section(u'\t', 0, 0),
                     Qt::AlignLeft);
            drawText(painter, regular, line.adjusted(indent, 0, 0, 0), entry.name().section(u'\t', 1), Qt::AlignLeft);
            break;
        }
        case Type::Grocery: {
            const GRPrintGeometry::ItemBoxes boxes = GRPrintGeometry::itemBoxes(line, oneBox);
            painter.setPen(rulePen);
            painter.drawRect(boxes.first);
            if (!boxes.second.isNull()) {
                painter.drawRect(boxes.second);
                if (entry.isNeeded()) {
                    painter.setPen(crossPen);
                    painter.drawLines(GRPrintGeometry::cross(boxes.second));
                }
            }
            painter.setPen(Qt::black);
            const QRectF text(boxes.textLeft, origin.y(), line.right() - boxes.textLeft, lineHeight);
            drawText(painter, regular, text, entry.name(), Qt::AlignLeft);
            break;
        }
        }
    }
    painter.restore();
}

bool GRPrintView::render(QPagedPaintDevice &device, const QPageRanges &ranges) const
{
    QPainter painter;
    if (!painter.begin(&device))
        return false;
    painter.scale(device.logicalDpiX() / 72.0 * m_scale, device.logicalDpiY() / 72.0 * m_scale);
    bool first = true;
    for (qsizetype n = 1; n <= pageCount(); ++n) {
        if (!ranges.isEmpty() && !ranges.contains(int(n)))
            continue;
        if (!first)
            device.newPage();
        first = false;
        const QRectF rect = rectForPage(n);
        painter.save();
        painter.translate(-rect.topLeft());
        drawRect(painter, rect);
        painter.restore();
    }
    return painter.end();
}

bool GRPrintView::writePdf(const QString &path, const QPageLayout &chosen, double scale, QString *reason)
{
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly)) {
        *reason = file.errorString();
        return false;
    }
    QPdfWriter writer(&file);
    writer.setTitle(QLatin1String(JobTitle));
    writer.setCreator(QStringLiteral("Groceries"));
    const QPageLayout layout = printPageLayout(chosen);
    writer.setPageLayout(layout);
    knowsPageRange(writer.pageLayout(), scale);
    if (!render(writer)) {
        file.cancelWriting();
        *reason = QStringLiteral("the pages could not be drawn");
        return false;
    }
    if (!file.commit()) {
        *reason = file.errorString();
        return false;
    }
    return true;
}
