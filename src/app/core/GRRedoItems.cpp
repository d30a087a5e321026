#include "GRRedoItems.h"

#include "GRNames.h"
#include "MGNotificationCenter.h"

#include <QVariant>

void PostRedoItems(const GRItemPtr &item)
{
    QVariantMap userInfo;
    if (item)
        userInfo.insert(GRItemKey, QVariant::fromValue(item));
    MGNotificationCenter::defaultCenter().post(GRRedoItemsNotification, userInfo);
}
