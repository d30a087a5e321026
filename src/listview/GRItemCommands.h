#pragma once

#include "GRTypes.h"

#include <QObject>
#include <QPointer>

class GRGroceryDatabase;
class GRItemListView;
class QAction;
class QMenu;

// The commands on the item selected in the item list: the context menu with one entry per store,
// edit, copy, cut, delete, duplicate, assigning a store and the add/remove control under the
// list. Each records its undo step first and gives up when that is refused; the list on show is
// redrawn through "mwgroceries.redoItems".
class GRItemCommands : public QObject
{
    Q_OBJECT

public:
    // Who asked for a delete: only the Delete keys ask the user first, and a cut is named so.
    enum class DeleteSender
    {
        Menu,
        DeleteKey,
        Cut,
    };

    GRItemCommands(GRItemListView *view, GRGroceryDatabase &database, QList<GRItemPtr> &displayItems,
                   QObject *parent = nullptr);
    ~GRItemCommands() override;

    QMenu *contextMenu() const { return m_contextMenu; }
    // The context menu entry of a command ("toggleItem", "changeItem", "copy", "cut", "delete",
    // "duplicate"), or null.
    QAction *contextAction(const QString &name) const;
    // Edit, copy, cut, delete and duplicate need an item on show; the rest always can run.
    bool validateMenuItem(const QString &name) const;
    // Rebuilds the store entries at the end of the context menu.
    void updateContextMenu();
    // Check marks on the selected item's store and on the needed entry.
    void prepareContextMenu();

    GRItemPtr selectedItem() const;

    void changeItem();
    void copy();
    void cut();
    void deleteItem(DeleteSender sender);
    void duplicate();
    // Gives the selected item the store at index; nothing past the end of the stores.
    void setStoreCore(qint64 index);
    // Segment 0 adds an item (when a category exists); segment 1 deletes the selected one.
    void clickListControl(int segment);

signals:
    // Open the item sheet on item, or on a new item when null.
    void editItemRequested(const GRItemPtr &item);

private:
    QAction *addEntry(const QString &name, const QString &title, const QString &keyHint);

    QPointer<GRItemListView> m_view;
    GRGroceryDatabase &m_database;
    QList<GRItemPtr> &m_displayItems;
    QPointer<QMenu> m_contextMenu; // the view owns it
};
