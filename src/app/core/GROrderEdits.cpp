#include "GROrderEdits.h"

#include "GRGroceryDatabase.h"

qsizetype GROrderEdits::dropTarget(qsizetype from, qsizetype row, qsizetype count)
{
    if (from < 0 || from >= count || row < 0 || row > count)
        return -1;
    // The dragged row leaves the list before it is inserted again.
    const qsizetype target = from < row ? row - 1 : row;
    return target == from ? -1 : target;
}

QByteArray GROrderEdits::dragText(qsizetype row)
{
    return QByteArray::number(row);
}

qsizetype GROrderEdits::dragSourceRow(const QByteArray &text)
{
    for (const char c : text) {
        if (c < '0' || c > '9')
            return -1;
    }
    bool ok = false;
    const qsizetype row = text.toLongLong(&ok);
    return ok ? row : -1;
}

qsizetype GROrderEdits::moveAisle(GRGroceryDatabase &database, qsizetype from, qsizetype row)
{
    QList<qint64> &order = database.aisleOrder();
    const qsizetype target = dropTarget(from, row, order.size());
    if (target >= 0)
        order.move(from, target);
    return target;
}

qsizetype GROrderEdits::moveCategory(GRGroceryDatabase &database, qsizetype from, qsizetype row)
{
    QList<GRCategoryOrderEntry> &order = database.categoryOrder();
    const qsizetype target = dropTarget(from, row, order.size());
    if (target < 0)
        return -1;
    database.setManualOrder(true);
    order.move(from, target);
    return target;
}
