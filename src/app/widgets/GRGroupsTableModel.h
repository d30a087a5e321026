#pragma once

#include <QAbstractTableModel>

class GRGroceryDatabase;

// The groups table: one row per category, or per store in store mode. Column 0 is the name;
// column 1 shows the function key (F1-F16) that assigns an item to the store of that row. A rename
// or a drop is only asked for here: whoever handles the signals decides and records the change.
class GRGroupsTableModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    explicit GRGroupsTableModel(const GRGroceryDatabase &database, QObject *parent = nullptr);

    bool storeMode() const { return m_storeMode; }
    void setStoreMode(bool storeMode);
    void reload();

    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    int columnCount(const QModelIndex &parent = QModelIndex()) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    bool setData(const QModelIndex &index, const QVariant &value, int role = Qt::EditRole) override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;

    QStringList mimeTypes() const override;
    Qt::DropActions supportedDropActions() const override;
    // Only a drag of "mwgroceries.drag" right on a row (not above or below it) may drop.
    bool canDropMimeData(const QMimeData *data, Qt::DropAction action, int row, int column,
                         const QModelIndex &parent) const override;
    bool dropMimeData(const QMimeData *data, Qt::DropAction action, int row, int column,
                      const QModelIndex &parent) override;

signals:
    void renameRequested(int row, const QString &name);
    // itemIndex: the position in the list on show that the drag carried.
    void itemDropped(qint64 itemIndex, int row);

private:
    const GRGroceryDatabase &m_database;
    bool m_storeMode = false;
    int m_shownRows = 0;
};
