#include "GRStoresTableModel.h"

#include "GRStore.h"
#include "MGColorSwatchDelegate.h"

GRStoresTableModel::GRStoresTableModel(const QList<GRStorePtr> &stores, QObject *parent)
    : QAbstractTableModel(parent), m_stores(stores)
{
}

void GRStoresTableModel::appendStore(const GRStorePtr &store)
{
    const int row = int(m_stores.size());
    beginInsertRows(QModelIndex(), row, row);
    m_stores.append(store);
    endInsertRows();
}

int GRStoresTableModel::removeStore(const GRStorePtr &store)
{
    const int row = int(m_stores.indexOf(store));
    if (row < 0)
        return -1;
    beginRemoveRows(QModelIndex(), row, row);
    m_stores.removeAt(row);
    endRemoveRows();
    return row;
}

void GRStoresTableModel::reloadRow(int row)
{
    if (row >= 0 && row < rowCount())
        emit dataChanged(index(row, 0), index(row, ColumnCount - 1));
}

int GRStoresTableModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(m_stores.size());
}

int GRStoresTableModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : ColumnCount;
}

QVariant GRStoresTableModel::data(const QModelIndex &index, int role) const
{
    const GRStorePtr store = index.isValid() ? m_stores.value(index.row()) : nullptr;
    if (!store)
        return {};
    switch (index.column()) {
    case StoreColumn:
        if (role == Qt::DisplayRole || role == Qt::EditRole)
            return store->name();
        break;
    case KeyColumn:
        if (index.row() >= FunctionKeyCount)
            break;
        if (role == Qt::DisplayRole)
            return QStringLiteral("F%1").arg(index.row() + 1);
        if (role == Qt::TextAlignmentRole)
            return QVariant::fromValue(Qt::AlignRight | Qt::AlignVCenter);
        break;
    case ColorColumn:
        if (role == MGColorSwatchDelegate::KolorRole)
            return QVariant::fromValue(store->kolor());
        break;
    default:
        break;
    }
    return {};
}

QVariant GRStoresTableModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return QAbstractTableModel::headerData(section, orientation, role);
    switch (section) {
    case StoreColumn:
        return tr("Store");
    case KeyColumn:
        return tr("Key");
    case ColorColumn:
        return tr("Color");
    default:
        return {};
    }
}

bool GRStoresTableModel::setData(const QModelIndex &index, const QVariant &value, int role)
{
    if (role != Qt::EditRole || !(flags(index) & Qt::ItemIsEditable))
        return false;
    m_stores.at(index.row())->setName(value.toString());
    emit dataChanged(index, index);
    return true;
}

Qt::ItemFlags GRStoresTableModel::flags(const QModelIndex &index) const
{
    if (!index.isValid())
        return Qt::NoItemFlags;
    Qt::ItemFlags flags = Qt::ItemIsEnabled | Qt::ItemIsSelectable;
    if (index.column() == StoreColumn && index.row() > 0)
        flags |= Qt::ItemIsEditable;
    return flags;
}
