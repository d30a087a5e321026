// Times building, saving and reading a large grocery database; prints milliseconds per operation.
#include "GRCategory.h"
#include "GRDatabaseFile.h"
#include "GRGroceryDatabase.h"
#include "GRItem.h"
#include "GRStore.h"

#include <QElapsedTimer>
#include <QFile>
#include <QGuiApplication>
#include <QRandomGenerator>
#include <QTemporaryDir>

#include <algorithm>
#include <cstdio>
#include <functional>

namespace {

constexpr int StoreCount = 8;
constexpr int CategoryCount = 40;
constexpr int ItemCount = 10000;
constexpr int Repetitions = 9;

void buildDatabase(GRGroceryDatabase &lists)
{
    QRandomGenerator random(20240611);
    for (int s = 0; s < StoreCount; ++s) {
        GRStorePtr store = GRStore::create();
        store->setName(QStringLiteral("Store %1").arg(s));
        store->setKolor(Kolor::fromWord(0x64000000u | random.bounded(0x1000000u)));
        lists.stores().append(store);
    }
    for (int c = 0; c < CategoryCount; ++c) {
        GRCategoryPtr category = GRCategory::create();
        category->setName(QStringLiteral("Category %1").arg(c));
        lists.categories().append(category);
    }
    for (int i = 0; i < ItemCount; ++i) {
        const GRCategoryPtr &category = lists.categories().at(random.bounded(CategoryCount));
        GRItemPtr item = GRItem::create();
        item->setName(QStringLiteral("Item %1 & more").arg(random.bounded(1000000)));
        item->setCategory(category);
        item->setStore(lists.stores().at(random.bounded(StoreCount)));
        item->setAisle(random.bounded(-6, 40));
        item->setNeeded(random.bounded(2));
        item->setNeedCount(random.bounded(4));
        category->items().append(item);
    }
    lists.setManualOrder(true);
    for (const GRCategoryPtr &category : lists.categories())
        lists.categoryOrder().append(GRCategoryOrderEntry{category, category->guid()});
}

double medianMs(const std::function<void()> &prepare, const std::function<void()> &operation)
{
    QList<double> times;
    for (int r = 0; r < Repetitions; ++r) {
        prepare();
        QElapsedTimer timer;
        timer.start();
        operation();
        times.append(timer.nsecsElapsed() / 1e6);
    }
    std::sort(times.begin(), times.end());
    return times.at(times.size() / 2);
}

} // namespace

int main(int argc, char *argv[])
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication app(argc, argv);
    QTemporaryDir dir;
    if (!dir.isValid())
        return 1;
    g_databasePath = dir.filePath(QStringLiteral("Groceries.xml"));

    GRGroceryDatabase database;
    buildDatabase(database);
    const double encode = medianMs([] {}, [&] { (void)GroceriesXml(database); });
    const double save = medianMs([] {},
                                 [&] {
                                     if (!SaveGroceries(database))
                                         std::fprintf(stderr, "save failed\n");
                                 });
    const qint64 fileSize = QFile(g_databasePath).size();
    GRGroceryDatabase read;
    const double readMs = medianMs([&] { read.clear(); },
                                   [&] {
                                       if (!ReadModernDatabase(g_databasePath, read))
                                           std::fprintf(stderr, "read failed\n");
                                   });

    const qsizetype itemsRead = read.itemCount();
    if (itemsRead != ItemCount)
        std::fprintf(stderr, "read %lld items of %d\n", static_cast<long long>(itemsRead), ItemCount);

    std::printf("database: %d items, %d categories, %d stores, %lld bytes; median of %d\n", ItemCount,
                CategoryCount, StoreCount, static_cast<long long>(fileSize), Repetitions);
    std::printf("GroceriesXml        %8.2f ms\n", encode);
    std::printf("SaveGroceries       %8.2f ms\n", save);
    std::printf("ReadModernDatabase  %8.2f ms\n", readMs);
    return 0;
}
