#include "GROrderTableModel.h"

#include "GRAisles.h"
#include "GRCategory.h"
#include "GRGroceryDatabase.h"
#include "GROrderEdits.h"
#include "MGDragPasteboard.h"

GROrderTableModel::GROrderTableModel(Kind kind, GRGroceryDatabase &database, QObject *parent)
    : QAbstractListModel(parent), m_kind(kind), m_database(database)
{
}

QString GROrderTableModel::dragType() const
{
    return m_kind == Kind::Aisles ? GRDragAislePasteboardType : GRDragCategoryPasteboardType;
}

void GROrderTableModel::reload()
{
    beginResetModel();
    endResetModel();
}

int GROrderTableModel::rowCount(const QModelIndex &parent) const
{
    if (parent.isValid())
        return 0;
    return int(m_kind == Kind::Aisles ? m_database.aisleOrder().size() : m_database.categoryOrder().size());
}

QVariant GROrderTableModel::data(const QModelIndex &index, int role) const
{
    if (role != Qt::DisplayRole || !checkIndex(index, CheckIndexOption::IndexIsValid))
        return QVariant();
    if (m_kind == Kind::Aisles) {
        const qint64 group = m_database.aisleOrder().at(index.row());
        return group >= 0 && group < GRAisles::GroupCount ? GRAisles::groupNames().at(group) : QString();
    }
    const GRCategoryPtr &category = m_database.categoryOrder().at(index.row()).cat;
    return category ? category->name() : QString();
}

Qt::ItemFlags GROrderTableModel::flags(const QModelIndex &index) const
{
    // Rows take no drops onto themselves, so a drop always lands in a gap between rows.
    if (!index.isValid())
        return Qt::ItemIsDropEnabled;
    return Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsDragEnabled | Qt::ItemNeverHasChildren;
}

QStringList GROrderTableModel::mimeTypes() const
{
    return {dragType()};
}

QMimeData *GROrderTableModel::mimeData(const QModelIndexList &indexes) const
{
    if (indexes.size() != 1 || !checkIndex(indexes.first(), CheckIndexOption::IndexIsValid))
        return nullptr;
    auto *pasteboard = MGDragPasteboard::dragPasteboard();
    pasteboard->setData(GROrderEdits::dragText(indexes.first().row()), dragType());
    return pasteboard;
}

Qt::DropActions GROrderTableModel::supportedDragActions() const
{
    return Qt::MoveAction;
}

Qt::DropActions GROrderTableModel::supportedDropActions() const
{
    return Qt::MoveAction;
}

bool GROrderTableModel::canDropMimeData(const QMimeData *data, Qt::DropAction action, int, int,
                                        const QModelIndex &) const
{
    return data && action == Qt::MoveAction && data->hasFormat(dragType());
}

bool GROrderTableModel::dropMimeData(const QMimeData *data, Qt::DropAction action, int row, int column,
                                     const QModelIndex &parent)
{
    if (!canDropMimeData(data, action, row, column, parent))
        return false;
    const qsizetype from = GROrderEdits::dragSourceRow(data->data(dragType()));
    // A drop below the last row or onto empty space arrives without a row.
    const qsizetype gap = row >= 0 ? row : parent.isValid() ? parent.row() : rowCount();
    const qsizetype target = GROrderEdits::dropTarget(from, gap, rowCount());
    if (target < 0)
        return false;
    beginMoveRows(QModelIndex(), int(from), int(from), QModelIndex(), int(gap));
    if (m_kind == Kind::Aisles)
        GROrderEdits::moveAisle(m_database, from, gap);
    else
        GROrderEdits::moveCategory(m_database, from, gap);
    endMoveRows();
    emit rowDropped(int(target));
    return true;
}
