// Times building, saving and reading a large grocery database; prints milliseconds per operation.
#include "GRBenchData.h"
#include "GRDatabaseFile.h"
#include "GRGroceryDatabase.h"

#include <QFile>
#include <QGuiApplication>
#include <QTemporaryDir>

#include <cstdio>

namespace {

constexpr int Repetitions = 9;

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
    BuildBenchDatabase(database);
    const double encode = MedianMs(Repetitions, [] {}, [&] { (void)GroceriesXml(database); });
    const double save = MedianMs(Repetitions, [] {},
                                 [&] {
                                     if (!SaveGroceries(database))
                                         std::fprintf(stderr, "save failed\n");
                                 });
    const qint64 fileSize = QFile(g_databasePath).size();
    GRGroceryDatabase read;
    const double readMs = MedianMs(Repetitions, [&] { read.clear(); },
                                   [&] {
                                       if (!ReadModernDatabase(g_databasePath, read))
                                           std::fprintf(stderr, "read failed\n");
                                   });

    const qsizetype itemsRead = read.itemCount();
    if (itemsRead != BenchItemCount)
        std::fprintf(stderr, "read %lld items of %d\n", static_cast<long long>(itemsRead), BenchItemCount);

    std::printf("database: %d items, %d categories, %d stores, %lld bytes; median of %d\n", BenchItemCount,
                BenchCategoryCount, BenchStoreCount, static_cast<long long>(fileSize), Repetitions);
    std::printf("GroceriesXml        %8.2f ms\n", encode);
    std::printf("SaveGroceries       %8.2f ms\n", save);
    std::printf("ReadModernDatabase  %8.2f ms\n", readMs);
    return 0;
}
