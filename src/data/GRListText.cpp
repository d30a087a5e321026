#include "GRListText.h"

#include "GRAisles.h"
#include "GRCategory.h"
#include "GRGroceryDatabase.h"
#include "GRItem.h"
#include "GRStore.h"

QString GroceryListText(const GRGroceryDatabase &database, bool neededOnly)
{
    QString text;
    for (const GRCategoryPtr &category : database.categories()) {
        QString lines;
        for (const GRItemPtr &item : std::as_const(category->items())) {
            if (neededOnly && !item->isNeeded())
                continue;
            lines += (item->isNeeded() ? QStringLiteral("  [x] ") : QStringLiteral("  [ ] ")) +
                     item->displayName() + u'\t' + (item->store() ? item->store()->name() : QString()) +
                     u'\t' + GRAisles::displayName(item->aisle()) + u'\n';
        }
        if (!neededOnly || !lines.isEmpty())
            text += category->name() + u'\n' + lines;
    }
    return text;
}
