#include "GRListText.h"

#include "GRAisles.h"
#include "GRCategory.h"
#include "GRItem.h"
#include "GRLists.h"
#include "GRStore.h"

QString GroceryListText(bool neededOnly)
{
    QString text;
    for (const GRCategoryPtr &category : std::as_const(GRLists::shared().categories())) {
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
