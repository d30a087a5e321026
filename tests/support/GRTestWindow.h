#pragma once

#include "GRTypes.h"
#include "GRUndoView.h"

#include <QList>

class GRGroceryDatabase;

// The main window as undo and the commands see it: the groups table in category or store mode,
// its selected row (-1 for none), the list on show and the edited mark.
class GRTestWindow : public GRUndoView
{
public:
    GRTestWindow(GRGroceryDatabase &database, QList<GRItemPtr> &shown) : m_database(database), m_shown(shown)
    {
    }

    bool storeMode = false;
    qint64 row = 0;
    bool edited = false;

    qint64 currentCategory() const override { return storeMode ? -1 : row; }
    void cancelOperation() override {}
    void reloadCategoriesCore(qint64 selected) override;
    void deselectAll() override { row = -1; }
    void updateEditedMark() override;
    // As the groups table: a row outside it selects nothing and leaves the list on show alone.
    void select(bool stores, qint64 selected);
    void showItems(const QList<GRItemPtr> &items);

private:
    GRGroceryDatabase &m_database;
    QList<GRItemPtr> &m_shown;
};
