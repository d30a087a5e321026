#include "GRGroupsTableModel.h"

#include "GRCategory.h"
#include "GRLists.h"
#include "GRStore.h"
#include "GRWindowController.h"

#include <QMimeData>

GRGroupsTableModel::GRGroupsTableModel(GRWindowController *controller)
    : QAbstractTableModel(controller), m_controller(controller)
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
    GRLists &lists = GRLists::shared();
    return int(m_storeMode ? lists.stores().size() : lists.categories().size());
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
        GRLists &lists = GRLists::shared();
        if (m_storeMode) {
            const GRStorePtr &store = lists.stores().at(row);
            return store ? store->name() : QString();
        }
        const GRCategoryPtr &category = lists.categories().at(row);
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
    m_controller->setObjectValue(value.toString(), index.row());
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
    return {QString::fromLatin1(DragType)};
}

Qt::DropActions GRGroupsTableModel::supportedDropActions() const
{
    return Qt::MoveAction;
}

// A drop "on" a row arrives as row -1 with the row's index as parent; row >= 0 means between rows.
bool GRGroupsTableModel::canDropMimeData(const QMimeData *data, Qt::DropAction, int row, int,
                                         const QModelIndex &parent) const
{
    const bool onRow = row < 0 && parent.isValid();
    return m_controller->validateDrop(data, onRow ? parent.row() : row, onRow);
}

bool GRGroupsTableModel::dropMimeData(const QMimeData *data, Qt::DropAction action, int row, int column,
                                      const QModelIndex &parent)
{
    if (!canDropMimeData(data, action, row, column, parent))
        return false;
    return m_controller->acceptDrop(data, parent.row());
}
