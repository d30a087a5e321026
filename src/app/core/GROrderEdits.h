#pragma once

#include <QByteArray>
#include <QLatin1String>
#include <QtGlobal>

class GRGroceryDatabase;

// Drag types of the preferences window's two order tables; the data is the source row as text.
inline constexpr QLatin1String GRDragAislePasteboardType("mwgroceries.dragAisle");
inline constexpr QLatin1String GRDragCategoryPasteboardType("mwgroceries.dragCategory");

// The data half of reordering the aisle groups and the categories by dragging a row into the gap
// above another row (row == count is the gap after the last).
class GROrderEdits
{
public:
    // Where the row dragged from `from` ends up when dropped at gap `row` of a list of count rows;
    // -1 when a row is out of range or the drop would move nothing.
    static qsizetype dropTarget(qsizetype from, qsizetype row, qsizetype count);

    static QByteArray dragText(qsizetype row);
    // The source row a drag carries; -1 unless the text is a plain non-negative number.
    static qsizetype dragSourceRow(const QByteArray &text);

    // Each answers the row the moved entry now has, or -1 when nothing moved. A category move
    // switches the database to the manual category order.
    static qsizetype moveAisle(GRGroceryDatabase &database, qsizetype from, qsizetype row);
    static qsizetype moveCategory(GRGroceryDatabase &database, qsizetype from, qsizetype row);
};
