#include "GRAisles.h"

const QStringList &GRAisles::groupNames()
{
    static const QStringList names{QStringLiteral("<Numbered aisles>"),
                                   QStringLiteral("Bakery"),
                                   QStringLiteral("Dairy"),
                                   QStringLiteral("Frozen"),
                                   QStringLiteral("Fruit"),
                                   QStringLiteral("Produce"),
                                   QStringLiteral("Wine")};
    return names;
}

qsizetype GRAisles::groupOf(qint64 aisle)
{
    return aisle < 0 && aisle >= -(GroupCount - 1) ? qsizetype(-aisle) : 0;
}

QString GRAisles::displayName(qint64 aisle)
{
    if (aisle > 0)
        return QStringLiteral("Aisle %1").arg(aisle);
    const qsizetype group = groupOf(aisle);
    return group > 0 ? groupNames().at(group) : QStringLiteral("Aisle ?");
}
