#include "GRGroceryEdits.h"

#include "GRCategory.h"
#include "GRGroceryDatabase.h"
#include "GRItem.h"
#include "GRNameSorter.h"
#include "GRRecordPositions.h"
#include "GRStore.h"
#include "GRTagKeys.h"
#include "MGXmlDecoder.h"
#include "MGXmlEncoder.h"

#include <QHash>
#include <QSet>

#include <algorithm>

// Each GUID names the first store that carries it.
static QHash<QString, GRStorePtr> storesByGuid(const QList<GRStorePtr> &stores)
{
    QHash<QString, GRStorePtr> byGuid;
    for (const GRStorePtr &store : stores) {
        if (!byGuid.contains(store->guid()))
            byGuid.insert(store->guid(), store);
    }
    return byGuid;
}

qint64 GRGroceryEdits::renameCategory(GRGroceryDatabase &database, const GRCategoryPtr &category,
                                      const QString &name)
{
    category->setName(name);
    SortByName(database.categories());
    return database.indexOfCategory(category.get());
}

GRCategoryPtr GRGroceryEdits::addCategory(GRGroceryDatabase &database)
{
    GRCategoryPtr category = GRCategory::create();
    category->setName(QStringLiteral("New category"));
    database.categories().append(category);
    return category;
}

GRStorePtr GRGroceryEdits::addStore(GRGroceryDatabase &database)
{
    GRStorePtr store = GRStore::create();
    store->setName(QStringLiteral("New store"));
    database.stores().append(store);
    return store;
}

GRCategoryPtr GRGroceryEdits::categoryHeir(const GRGroceryDatabase &database, qint64 row)
{
    const QList<GRCategoryPtr> &categories = database.categories();
    if (row < 0 || row >= categories.size() || categories.size() < 2)
        return nullptr;
    return categories.at(row == 0 ? 1 : 0);
}

void GRGroceryEdits::mergeCategory(GRGroceryDatabase &database, const GRCategoryPtr &victim,
                                   const GRCategoryPtr &heir)
{
    for (const GRItemPtr &item : std::as_const(victim->items())) {
        heir->items().append(item);
        item->setCategory(heir);
    }
    database.categories().removeAll(victim);
}

bool GRGroceryEdits::moveItem(const GRItemPtr &item, const GRCategoryPtr &target)
{
    const GRCategoryPtr old = item->category();
    if (!target || old == target)
        return false;
    target->items().append(item);
    item->setCategory(target);
    if (old)
        old->items().removeAll(item);
    return true;
}

bool GRGroceryEdits::reassignStore(const GRItemPtr &item, const GRStorePtr &store)
{
    if (!store || item->store() == store)
        return false;
    item->setStore(store);
    return true;
}

void GRGroceryEdits::clearChecks(GRGroceryDatabase &database)
{
    for (const GRCategoryPtr &category : std::as_const(database.categories())) {
        for (const GRItemPtr &item : std::as_const(category->items()))
            item->setNeeded(false);
    }
}

void GRGroceryEdits::insertItem(const GRCategoryPtr &category, const GRItemPtr &item)
{
    item->setCategory(category);
    category->items().append(item);
}

GRItemPtr GRGroceryEdits::removeItem(QList<GRItemPtr> &displayItems, const GRItemPtr &item)
{
    const qsizetype index = displayItems.indexOf(item);
    displayItems.removeAll(item);
    if (const GRCategoryPtr category = item->category())
        category->items().removeAll(item);
    if (displayItems.isEmpty())
        return nullptr;
    return displayItems.value(std::max<qsizetype>(index, 0), displayItems.last());
}

GRItemPtr GRGroceryEdits::duplicateItem(QList<GRItemPtr> &displayItems, const GRItemPtr &item)
{
    const GRItemPtr copy = item->copy();
    if (const GRCategoryPtr category = item->category())
        category->items().append(copy);
    displayItems.append(copy);
    return copy;
}

QString GRGroceryEdits::itemPasteboardText(const GRGroceryDatabase &database, const GRItemPtr &item)
{
    const GRRecordPositions positions(database);
    const GRCategoryPtr category = item->category();
    if (positions.categoryIndex(category.get()) < 0 || positions.storeIndex(item->store().get()) < 0)
        return {};
    MGXmlEncoder encoder;
    item->archiveToXml(encoder, positions);
    return encoder.xml();
}

GRItemPtr GRGroceryEdits::itemFromPasteboardText(const GRGroceryDatabase &database, const QByteArray &text)
{
    // Whatever reader ran last may have left its own key table current.
    RegisterGroceryTags();
    std::unique_ptr<MGXmlDecoder> decoder = MGXmlDecoder::fromData(text);
    if (!decoder || !decoder->getNextTag() || decoder->key() != GRTagItem)
        return nullptr;
    return GRItem::fromXml(*decoder, database);
}

QList<GRStorePtr> GRGroceryEdits::storesRenaming(const GRGroceryDatabase &database, qint64 row,
                                                 const QString &name)
{
    QList<GRStorePtr> stores = database.stores();
    if (row >= 0 && row < stores.size()) {
        GRStorePtr renamed = stores.at(row)->copy();
        renamed->setName(name);
        stores[row] = renamed;
    }
    return stores;
}

QList<GRStorePtr> GRGroceryEdits::storesWithout(const GRGroceryDatabase &database, qint64 row)
{
    QList<GRStorePtr> stores = database.stores();
    if (row >= 0 && row < stores.size())
        stores.removeAt(row);
    return stores;
}

bool GRGroceryEdits::installNewStores(GRGroceryDatabase &database, QList<GRStorePtr> newStores)
{
    newStores.removeAll(nullptr);
    if (newStores.isEmpty())
        return false;
    const GRStorePtr fallback = newStores.first();
    std::stable_sort(newStores.begin() + 1, newStores.end(), [](const GRStorePtr &a, const GRStorePtr &b) {
        return QString::compare(a->name(), b->name()) < 0;
    });
    const QHash<QString, GRStorePtr> byGuid = storesByGuid(newStores);
    for (const GRCategoryPtr &category : std::as_const(database.categories())) {
        for (const GRItemPtr &item : std::as_const(category->items())) {
            const QString guid = item->store() ? item->store()->guid() : QString();
            item->setStore(byGuid.value(guid, fallback));
        }
    }
    database.stores() = newStores;
    return true;
}

void GRGroceryEdits::repointItemStores(GRGroceryDatabase &database)
{
    const QList<GRStorePtr> &stores = database.stores();
    if (stores.isEmpty())
        return;
    QSet<const GRStore *> live;
    for (const GRStorePtr &store : stores)
        live.insert(store.get());
    const QHash<QString, GRStorePtr> byGuid = storesByGuid(stores);
    for (const GRCategoryPtr &category : std::as_const(database.categories())) {
        for (const GRItemPtr &item : std::as_const(category->items())) {
            if (!live.contains(item->store().get()))
                item->setStore(
                    byGuid.value(item->store() ? item->store()->guid() : QString(), stores.first()));
        }
    }
}
