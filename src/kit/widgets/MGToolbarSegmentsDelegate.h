#pragma once

#include <QList>
#include <QVariant>

class MGToolbarSegments;

// Supplies the tabs of an MGToolbarSegments control and hears its clicks.
class MGToolbarSegmentsDelegate
{
public:
    virtual ~MGToolbarSegmentsDelegate() = default;

    // The tab contents, in order: each a QIcon (a QPixmap or QImage also does) or a QString.
    virtual QList<QVariant> tabsForSegments(MGToolbarSegments *segments) = 0;
    // A tab was clicked (momentary and toggle styles) or newly selected (single selection).
    virtual void tabWasSelected(qint64 tab, MGToolbarSegments *segments) = 0;
    // Single selection: the selected tab was clicked again. Answer false when the delegate
    // has nothing to do with it.
    virtual bool sameTabWasSelected(qint64 tab, MGToolbarSegments *segments)
    {
        Q_UNUSED(tab);
        Q_UNUSED(segments);
        return false;
    }
};
