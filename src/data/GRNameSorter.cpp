#include "GRNameSorter.h"

#include "GRCategory.h"
#include "GRItem.h"

#include <algorithm>

template <typename Ptr> static void sortByName(QList<Ptr> &records)
{
    std::stable_sort(records.begin(), records.end(), [](const Ptr &a, const Ptr &b) {
        return QString::compare(a->name(), b->name(), Qt::CaseInsensitive) < 0;
    });
}

void SortByName(QList<GRItemPtr> &items)
{
    sortByName(items);
}

void SortByName(QList<GRCategoryPtr> &categories)
{
    sortByName(categories);
}
