#include "GRItemFields.h"

#include "GRCategory.h"
#include "GRGroceryDatabase.h"
#include "GRItem.h"

#include <algorithm>
#include <limits>

GRItemFields GRItemFields::fromItem(const GRGroceryDatabase &database, const GRItemPtr &item)
{
    GRItemFields fields;
    fields.name = item->name();
    const qint64 aisle = item->aisle();
    if (aisle < 0)
        fields.specialAisle = -aisle;
    else if (aisle > 0)
        fields.aisle = QString::number(qint32(aisle));
    const GRCategoryPtr category = item->category();
    fields.categoryIndex = std::max<qint64>(0, database.categories().indexOf(category));
    fields.storeIndex = std::max<qint64>(0, database.stores().indexOf(item->store()));
    fields.needed = item->isNeeded();
    fields.count = item->needCount();
    return fields;
}

GRItemFields GRItemFields::forNewItem(qint64 currentCategory, qint64 currentStore)
{
    GRItemFields fields;
    fields.categoryIndex = std::max<qint64>(0, currentCategory);
    fields.storeIndex = std::max<qint64>(0, currentStore);
    return fields;
}

qint64 GRItemFields::aisleValue() const
{
    if (specialAisle != 0)
        return -specialAisle;
    // Leading digits only, as a 32-bit number that saturates rather than wraps.
    const QString text = aisle.trimmed();
    qint64 value = 0;
    for (const QChar c : text) {
        if (c < QLatin1Char('0') || c > QLatin1Char('9'))
            break;
        value = std::min<qint64>(value * 10 + (c.unicode() - '0'), std::numeric_limits<qint32>::max());
    }
    return value;
}

GRCategoryPtr GRItemFields::category(const GRGroceryDatabase &database) const
{
    return database.categories().value(categoryIndex);
}

GRUndoAction GRItemFields::undoAction(const GRGroceryDatabase &database, const GRItemPtr &item) const
{
    const GRCategoryPtr old = item ? item->category() : nullptr;
    return !old || old == category(database) ? GRUndoAction::Category : GRUndoAction::Categories;
}

GRItemPtr GRItemFields::apply(const GRGroceryDatabase &database, QList<GRItemPtr> &displayItems,
                              GRItemPtr item) const
{
    const GRCategoryPtr target = category(database);
    if (!target)
        return nullptr;
    if (!item)
        item = GRItem::create();
    const GRCategoryPtr old = item->category();
    item->setName(name);
    item->setNeeded(needed);
    item->setNeedCount(count);
    item->setAisle(aisleValue());
    item->setStore(database.stores().value(storeIndex));
    if (old != target) {
        target->items().append(item);
        if (old)
            old->items().removeAll(item);
    }
    item->setCategory(target);
    if (!displayItems.contains(item))
        displayItems.append(item);
    return item;
}
