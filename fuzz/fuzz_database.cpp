// Feeds arbitrary bytes through the database reader, then writes and re-reads what it kept.
#include "GRCategory.h"
#include "GRDatabaseFile.h"
#include "GRItem.h"
#include "GRLists.h"
#include "GRPrefController.h"

#include <QByteArray>
#include <QGuiApplication>

#include <cstdint>
#include <cstdlib>

namespace {

void quiet(QtMsgType, const QMessageLogContext &, const QString &) {}

void reset()
{
    GRLists::shared().clear();
    GRPrefController::sharedInstance().resetDatabaseSettings();
}

struct Counts
{
    qsizetype stores = 0;
    qsizetype categories = 0;
    qsizetype items = 0;
    friend bool operator==(const Counts &, const Counts &) = default;
};

// Also checks that every item sits in the category it names and has a store.
Counts counts()
{
    Counts result;
    result.stores = GRLists::shared().stores().size();
    result.categories = GRLists::shared().categories().size();
    for (const GRCategoryPtr &category : GRLists::shared().categories()) {
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
    reset();
    const QByteArray bytes = QByteArray::fromRawData(reinterpret_cast<const char *>(data), qsizetype(size));
    if (!ReadModernDatabaseData(bytes))
        return 0;
    const Counts read = counts();

    // What was read saves and reads back with every record, and that saves to the same document.
    const QString first = GroceriesXml();
    reset();
    if (!ReadModernDatabaseData(first.toUtf8()) || counts() != read || GroceriesXml() != first)
        std::abort();
    return 0;
}
