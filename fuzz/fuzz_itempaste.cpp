// Feeds arbitrary bytes to the item paste reader. An item it accepts must name records of the
// list it was read against, and copying it again must give the same item and the same text.
#include "GRCategory.h"
#include "GRGroceryDatabase.h"
#include "GRGroceryEdits.h"
#include "GRItem.h"
#include "GRStore.h"

#include <QByteArray>

#include <cstdint>
#include <cstdlib>

namespace {

const GRGroceryDatabase &database()
{
    static const GRGroceryDatabase *const lists = [] {
        auto *result = new GRGroceryDatabase;
        for (const char *name : {"Corner Shop", "Bakery", "Market"}) {
            result->stores().append(GRStore::create());
            result->stores().last()->setName(QString::fromLatin1(name));
        }
        for (const char *name : {"Dairy", "Fruit", "Pantry"}) {
            result->categories().append(GRCategory::create());
            result->categories().last()->setName(QString::fromLatin1(name));
        }
        return result;
    }();
    return *lists;
}

void check(bool condition)
{
    if (!condition)
        std::abort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const GRGroceryDatabase &lists = database();
    const QByteArray bytes = QByteArray::fromRawData(reinterpret_cast<const char *>(data), qsizetype(size));
    const GRItemPtr item = GRGroceryEdits::itemFromPasteboardText(lists, bytes);
    if (!item)
        return 0;
    const GRCategoryPtr category = item->category();
    check(!category || lists.categories().contains(category));
    check(!item->store() || lists.stores().contains(item->store()));

    const QString text = GRGroceryEdits::itemPasteboardText(lists, item);
    check(text.isEmpty() == (!category || !item->store()));
    if (text.isEmpty())
        return 0;
    const GRItemPtr again = GRGroceryEdits::itemFromPasteboardText(lists, text.toUtf8());
    check(again && again->name() == item->name() && again->category() == category &&
          again->store() == item->store() && again->aisle() == item->aisle() &&
          again->isNeeded() == item->isNeeded() && again->displayName() == item->displayName());
    // A count below 2 is not written.
    check(again->needCount() == (item->needCount() >= 2 ? item->needCount() : 0));
    check(GRGroceryEdits::itemPasteboardText(lists, again) == text);
    return 0;
}
