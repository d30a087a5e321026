// Feeds arbitrary bytes through the database reader, then writes and re-reads what it kept.
#include "GRCategory.h"
#include "GRDatabaseFile.h"
#include "GRGroceryDatabase.h"
#include "GRItem.h"
#include "GRPrefController.h"

#include <QByteArray>
#include <QGuiApplication>

#include <cstdint>
#include <cstdlib>

namespace {

void quiet(QtMsgType, const QMessageLogContext &, const QString &) {}

struct Counts
{
    qsizetype stores = 0;
    qsizetype categories = 0;
    qsizetype items = 0;
    friend bool operator==(const Counts &, const Counts &) = default;
};

// Also checks that every item sits in the category it names and has a store.
Counts counts(const GRGroceryDatabase &database)
{
    Counts result;
    result.stores = database.stores().size();
    result.categories = database.categories().size();
    for (const GRCategoryPtr &category : database.categories()) {
        for (const GRItemPtr &item : category->items()) {
            if (item->category() != category || !item->store())
                std::abort();
            ++result.items;
        }
    }
    return result;
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int *argc, char ***argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    static QGuiApplication app(*argc, *argv);
    qInstallMessageHandler(quiet);
    GRPrefController::sharedInstance();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    GRGroceryDatabase database;
    const QByteArray bytes = QByteArray::fromRawData(reinterpret_cast<const char *>(data), qsizetype(size));
    if (!ReadModernDatabaseData(bytes, database))
        return 0;
    const Counts read = counts(database);

    // What was read saves and reads back with every record, and that saves to the same document.
    const QString first = GroceriesXml(database);
    GRGroceryDatabase again;
    if (!ReadModernDatabaseData(first.toUtf8(), again) || counts(again) != read ||
        GroceriesXml(again) != first)
        std::abort();
    return 0;
}
