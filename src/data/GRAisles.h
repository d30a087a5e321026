#pragma once

#include <QString>
#include <QStringList>

// An item's aisle: positive is a numbered aisle, 0 is unknown, -k is special aisle k (1-6).
// Aisle groups are indexed 0 (all numbered aisles) to 6 (the special aisles).
class GRAisles
{
public:
    static constexpr qsizetype GroupCount = 7;

    // "<Numbered aisles>", "Bakery", "Dairy", "Frozen", "Fruit", "Produce", "Wine".
    static const QStringList &groupNames();
    // The aisle group of an aisle value: 0 for numbered or unknown aisles, k for aisle -k.
    static qsizetype groupOf(qint64 aisle);
    // "Aisle 7", "Aisle ?" or the special aisle's name; a value below -6 reads as unknown.
    static QString displayName(qint64 aisle);
};
