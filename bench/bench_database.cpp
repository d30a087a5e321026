// Times building, saving and reading a large grocery database; prints milliseconds per operation.
#include "GRCategory.h"
#include "GRDatabaseFile.h"
#include "GRItem.h"
#include "GRLists.h"
#include "GRPrefController.h"
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

void resetLists()
{
    GRLists::shared().clear();
    GRPrefController &prefs = GRPrefController::sharedInstance();
    prefs.aisleOrder() = GRPrefController::defaultAisleOrder();
    prefs.categoryOrder().clear();
    prefs.setManualOrder(false);
}

void buildDatabase()
{
    QRandomGenerator random(20240611);
    GRLists &lists = GRLists::shared();
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
    GRPrefController::sharedInstance().setManualOrder(true);
    for (const GRCategoryPtr &category : lists.categories())
        GRPrefController::sharedInstance().categoryOrder().append(
            GRCategoryOrderEntry{category, category->guid()});
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

    resetLists();
    buildDatabase();
    const double encode = medianMs([] {}, [] { (void)GroceriesXml(); });
    const double save = medianMs([] {},
                                 [] {
                                     if (!SaveGroceries())
                                         std::fprintf(stderr, "save failed\n");
                                 });
    const qint64 fileSize = QFile(g_databasePath).size();
    const double read = medianMs(resetLists, [] {
        if (!ReadModernDatabase(g_databasePath))
            std::fprintf(stderr, "read failed\n");
    });

    qsizetype itemsRead = 0;
    for (const GRCategoryPtr &category : GRLists::shared().categories())
        itemsRead += category->items().size();
    if (itemsRead != ItemCount)
        std::fprintf(stderr, "read %lld items of %d\n", static_cast<long long>(itemsRead), ItemCount);

    std::printf("database: %d items, %d categories, %d stores, %lld bytes; median of %d\n", ItemCount,
                CategoryCount, StoreCount, static_cast<long long>(fileSize), Repetitions);
    std::printf("GroceriesXml        %8.2f ms\n", encode);
    std::printf("SaveGroceries       %8.2f ms\n", save);
    std::printf("ReadModernDatabase  %8.2f ms\n", read);
    return 0;
}
