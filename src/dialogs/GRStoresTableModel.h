#pragma once

#include "GRTypes.h"

#include <QAbstractTableModel>
#include <QList>

// The stores being edited, one row each: the name, the function key that assigns items to the
// store (F1-F16 for the first sixteen rows), and the colour. Row 0 is the fallback store and keeps
// its name.
class GRStoresTableModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    enum Column
    {
        StoreColumn,
        KeyColumn,
        ColorColumn,
        ColumnCount
    };
    static constexpr int FunctionKeyCount = 16;

    explicit GRStoresTableModel(const QList<GRStorePtr> &stores, QObject *parent = nullptr);

    const QList<GRStorePtr> &stores() const { return m_stores; }
    GRStorePtr store(int row) const { return m_stores.value(row); }
    void appendStore(const GRStorePtr &store);
    // By identity; answers the row it had, or -1.
    int removeStore(const GRStorePtr &store);
    void reloadRow(int row);

    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    int columnCount(const QModelIndex &parent = QModelIndex()) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;
    bool setData(const QModelIndex &index, const QVariant &value, int role = Qt::EditRole) override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;

private:
    QList<GRStorePtr> m_stores;
};
