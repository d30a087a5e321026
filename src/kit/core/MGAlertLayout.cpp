#include "MGAlertLayout.h"

#include <QtMath>

void MGAlertLayout::layOut(bool hasMoreInfo, qreal measuredInfoHeight, bool hasSuppressFlag,
                           qsizetype titleCount)
{
    int g;
    if (hasMoreInfo) {
        const int measured =
            qIsFinite(measuredInfoHeight) ? qCeil(qBound<qreal>(0, measuredInfoHeight, 1e6)) : 0;
        g = measured - infoField.height() + kHeightSlack;
        infoField.setHeight(infoField.height() + g);
        infoFieldVisible = true;
    } else {
        g = -(infoField.height() + kGap);
        infoFieldVisible = false;
    }

    if (hasSuppressFlag) {
        suppressionButton.translate(0, g);
        suppressionVisible = true;
        suppressionTakesDefaultTitle = titleCount < 2;
    } else {
        suppressionVisible = false;
        suppressionTakesDefaultTitle = false;
        g -= suppressionButton.height() + kGap;
    }

    button1.translate(0, g);
    if (titleCount >= 2)
        button2.translate(0, g);
    else
        button2.moveTop(kOutOfSight);
    if (titleCount >= 3) {
        button3.translate(0, g);
        button3Visible = true;
    } else {
        button3.moveTop(kOutOfSight);
        button3Visible = false;
    }

    window.setHeight(window.height() + g);
    growth = g;
}
