#pragma once

#include <QAbstractTableModel>

class GRWindowController;

// The groups table: one row per category, or per store in store mode. Column 0 is the name;
// column 1 shows the function key (F1-F16) that assigns an item to the store of that row.
class GRGroupsTableModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    static constexpr char DragType[] = "mwgroceries.drag";

    explicit GRGroupsTableModel(GRWindowController *controller);

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
    bool canDropMimeData(const QMimeData *data, Qt::DropAction action, int row, int column,
                         const QModelIndex &parent) const override;
    bool dropMimeData(const QMimeData *data, Qt::DropAction action, int row, int column,
                      const QModelIndex &parent) override;

private:
    GRWindowController *m_controller;
    bool m_storeMode = false;
    int m_shownRows = 0;
};
