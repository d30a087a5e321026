#include "GRTestWindow.h"

#include "GRDatabaseFile.h"
#include "GRGroceryDatabase.h"
#include "GRGroceryQueries.h"

void GRTestWindow::reloadCategoriesCore(qint64 selected)
{
    select(storeMode, storeMode ? 0 : selected);
}

void GRTestWindow::updateEditedMark()
{
    edited = DatabaseChanged();
}

void GRTestWindow::select(bool stores, qint64 selected)
{
    storeMode = stores;
    row = selected < (stores ? m_database.stores().size() : m_database.categories().size()) ? selected : -1;
    if (row >= 0)
        m_shown = GRGroceryQueries::itemsOfGroup(m_database, storeMode, row);
}

void GRTestWindow::showItems(const QList<GRItemPtr> &items)
{
    m_shown = items;
    row = -1;
}
