#pragma once

#include <QRect>
#include <QSize>
#include <QtGlobal>

// The vertical arrangement of an alert window. Starts from the frames of the window description
// (window coordinates, y downwards), fits the further text to its measured height, drops the
// parts that are not used and moves everything below them; the window grows by growth, which
// is negative when it shrinks.
class MGAlertLayout
{
public:
    static constexpr int kOutOfSight = -10000;
    static constexpr int kGap = 12;
    static constexpr int kMeasureInset = 4;
    static constexpr int kHeightSlack = 2;

    QSize window;
    QRect infoField;
    QRect suppressionButton;
    QRect button1;
    QRect button2;
    QRect button3;

    int growth = 0;
    bool infoFieldVisible = true;
    bool suppressionVisible = true;
    bool suppressionTakesDefaultTitle = false;
    bool button3Visible = true;

    // The width at which the further text is to be measured.
    int measureWidth() const { return infoField.width() - kMeasureInset; }

    // measuredInfoHeight is the further text's height at measureWidth(); it is ignored when
    // there is no further text.
    void layOut(bool hasMoreInfo, qreal measuredInfoHeight, bool hasSuppressFlag, qsizetype titleCount);
};
