#pragma once

#include <QAbstractListModel>

class GRGroceryDatabase;

// One of the preferences window's two reorderable tables: the aisle groups in the database's
// aisle order, or the categories in its category order. A row is moved by dragging it within the
// same table.
class GROrderTableModel : public QAbstractListModel
{
    Q_OBJECT

public:
    enum class Kind
    {
        Aisles,
        Categories
    };

    GROrderTableModel(Kind kind, GRGroceryDatabase &database, QObject *parent = nullptr);

    Kind kind() const { return m_kind; }
    QString dragType() const;
    void reload();

    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;
    QStringList mimeTypes() const override;
    QMimeData *mimeData(const QModelIndexList &indexes) const override;
    Qt::DropActions supportedDragActions() const override;
    Qt::DropActions supportedDropActions() const override;
    bool canDropMimeData(const QMimeData *data, Qt::DropAction action, int row, int column,
                         const QModelIndex &parent) const override;
    bool dropMimeData(const QMimeData *data, Qt::DropAction action, int row, int column,
                      const QModelIndex &parent) override;

signals:
    // A drop moved a row; target is its new row.
    void rowDropped(int target);

private:
    Kind m_kind;
    GRGroceryDatabase &m_database;
};
