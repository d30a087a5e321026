#pragma once

#include "GRCategoryOrderEntry.h"
#include "GRTypes.h"

#include <QList>
#include <QString>

// The grocery list: the stores, the categories (each owning its items) and the settings that
// travel in the database file. The application controller owns the one live instance and hands
// it to whatever works on it; tests make their own.
class GRGroceryDatabase
{
public:
    static constexpr quint64 DefaultColumnCount = 5;
    static QList<qint64> defaultAisleOrder();

    GRGroceryDatabase();

    QList<GRStorePtr> &stores() { return m_stores; }
    const QList<GRStorePtr> &stores() const { return m_stores; }
    QList<GRCategoryPtr> &categories() { return m_categories; }
    const QList<GRCategoryPtr> &categories() const { return m_categories; }

    quint64 columnCount() const { return m_columnCount; }
    void setColumnCount(quint64 columnCount) { m_columnCount = columnCount ? columnCount : 1; }
    // The order of the seven aisle groups: 0 all numbered aisles, k the special aisle -k.
    QList<qint64> &aisleOrder() { return m_aisleOrder; }
    const QList<qint64> &aisleOrder() const { return m_aisleOrder; }
    QList<GRCategoryOrderEntry> &categoryOrder() { return m_categoryOrder; }
    const QList<GRCategoryOrderEntry> &categoryOrder() const { return m_categoryOrder; }
    bool manualOrder() const { return m_manualOrder; }
    void setManualOrder(bool manual) { m_manualOrder = manual; }

    // No records, and the settings as they are before any file is read.
    void clear();
    qsizetype itemCount() const;

    qsizetype indexOfStore(const GRStore *store) const;          // -1 when absent
    qsizetype indexOfCategory(const GRCategory *category) const; // -1 when absent
    // The first record, in list order, whose GUID (or name) equals the text exactly; null if none.
    GRStorePtr storeForGuid(const QString &guid) const;
    GRCategoryPtr categoryForGuid(const QString &guid) const;
    GRCategoryPtr categoryForName(const QString &name) const;

    // Brings the category order up to date with the categories: in manual order entries keep
    // their places, vanished categories drop out and new ones are appended in list order;
    // otherwise the order is the list order.
    void updateCategoryOrder();

private:
    QList<GRStorePtr> m_stores;
    QList<GRCategoryPtr> m_categories;
    quint64 m_columnCount = DefaultColumnCount;
    QList<qint64> m_aisleOrder;
    QList<GRCategoryOrderEntry> m_categoryOrder;
    bool m_manualOrder = false;
};
