#include "GRGroupsTableModel.h"

#include "GRCategory.h"
#include "GRGroceryDatabase.h"
#include "GRNames.h"
#include "GRStore.h"
#include "MGDragPasteboard.h"

#include <QMimeData>

GRGroupsTableModel::GRGroupsTableModel(const GRGroceryDatabase &database, QObject *parent)
    : QAbstractTableModel(parent), m_database(database)
{
}

void GRGroupsTableModel::setStoreMode(bool storeMode)
{
    if (m_storeMode == storeMode)
        return;
    beginResetModel();
    m_storeMode = storeMode;
    m_shownRows = rowCount();
    endResetModel();
}

void GRGroupsTableModel::reload()
{
    // The same number of rows keeps an open name editor alive (a rename re-sorts from inside
    // setData); a different number needs a reset.
    const int rows = rowCount();
    if (rows == m_shownRows) {
        if (rows > 0)
            emit dataChanged(index(0, 0), index(rows - 1, columnCount() - 1));
        return;
    }
    beginResetModel();
    m_shownRows = rows;
    endResetModel();
}

int GRGroupsTableModel::rowCount(const QModelIndex &parent) const
{
    if (parent.isValid())
        return 0;
    return int(m_storeMode ? m_database.stores().size() : m_database.categories().size());
}

int GRGroupsTableModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : 2;
}

QVariant GRGroupsTableModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid() || index.row() >= rowCount())
        return {};
    const int row = index.row();
    if (index.column() == 0) {
        if (role != Qt::DisplayRole && role != Qt::EditRole)
            return {};
        if (m_storeMode) {
            const GRStorePtr &store = m_database.stores().at(row);
            return store ? store->name() : QString();
        }
        const GRCategoryPtr &category = m_database.categories().at(row);
        return category ? category->name() : QString();
    }
    if (!m_storeMode || row >= 16)
        return {};
    switch (role) {
    case Qt::DisplayRole:
        return QStringLiteral("F%1").arg(row + 1);
    case Qt::TextAlignmentRole:
        return QVariant::fromValue(Qt::AlignRight | Qt::AlignVCenter);
    default:
        return {};
    }
}

bool GRGroupsTableModel::setData(const QModelIndex &index, const QVariant &value, int role)
{
    if (role != Qt::EditRole || !(flags(index) & Qt::ItemIsEditable))
        return false;
    emit renameRequested(index.row(), value.toString());
    return true;
}

Qt::ItemFlags GRGroupsTableModel::flags(const QModelIndex &index) const
{
    if (!index.isValid())
        return Qt::NoItemFlags;
    Qt::ItemFlags flags = Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsDropEnabled;
    if (index.column() == 0 && (!m_storeMode || index.row() > 0))
        flags |= Qt::ItemIsEditable;
    return flags;
}

QStringList GRGroupsTableModel::mimeTypes() const
{
    return {GRDragPasteboardType};
}

Qt::DropActions GRGroupsTableModel::supportedDropActions() const
{
    return Qt::MoveAction;
}

// The view hands a drop right on a row as row -1 with the row's index as parent; a drop above or
// below a row comes as that row number with no parent.
bool GRGroupsTableModel::canDropMimeData(const QMimeData *data, Qt::DropAction, int row, int,
                                         const QModelIndex &parent) const
{
    return row < 0 && parent.isValid() && parent.row() < rowCount() && data &&
           data->hasFormat(GRDragPasteboardType);
}

bool GRGroupsTableModel::dropMimeData(const QMimeData *data, Qt::DropAction action, int row, int column,
                                      const QModelIndex &parent)
{
    if (!canDropMimeData(data, action, row, column, parent))
        return false;
    const std::optional<qint64> itemIndex =
        MGDragPasteboard::integerFromData(data->data(GRDragPasteboardType));
    if (!itemIndex)
        return false;
    emit itemDropped(*itemIndex, parent.row());
    return true;
}
