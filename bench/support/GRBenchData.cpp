#include "GRBenchData.h"

#include "GRCategory.h"
#include "GRGroceryDatabase.h"
#include "GRItem.h"
#include "GRStore.h"

#include <QElapsedTimer>
#include <QList>
#include <QRandomGenerator>

#include <algorithm>

void BuildBenchDatabase(GRGroceryDatabase &lists)
{
    QRandomGenerator random(20240611);
    for (int s = 0; s < BenchStoreCount; ++s) {
        GRStorePtr store = GRStore::create();
        store->setName(QStringLiteral("Store %1").arg(s));
        store->setKolor(Kolor::fromWord(0x64000000u | random.bounded(0x1000000u)));
        lists.stores().append(store);
    }
    for (int c = 0; c < BenchCategoryCount; ++c) {
        GRCategoryPtr category = GRCategory::create();
        category->setName(QStringLiteral("Category %1").arg(c));
        lists.categories().append(category);
    }
    for (int i = 0; i < BenchItemCount; ++i) {
        const GRCategoryPtr &category = lists.categories().at(random.bounded(BenchCategoryCount));
        GRItemPtr item = GRItem::create();
        item->setName(QStringLiteral("Item %1 & more").arg(random.bounded(1000000)));
        item->setCategory(category);
        item->setStore(lists.stores().at(random.bounded(BenchStoreCount)));
        item->setAisle(random.bounded(-6, 40));
        item->setNeeded(random.bounded(2));
        item->setNeedCount(random.bounded(4));
        category->items().append(item);
    }
    lists.setManualOrder(true);
    for (const GRCategoryPtr &category : lists.categories())
        lists.categoryOrder().append(GRCategoryOrderEntry{category, category->guid()});
}

double MedianMs(int repetitions, const std::function<void()> &prepare, const std::function<void()> &operation)
{
    QList<double> times;
    for (int r = 0; r < repetitions; ++r) {
        prepare();
        QElapsedTimer timer;
        timer.start();
        operation();
        times.append(double(timer.nsecsElapsed()) / 1e6);
    }
    std::sort(times.begin(), times.end());
    return times.at(times.size() / 2);
}
