#pragma once

#include <QLineF>
#include <QList>
#include <QRectF>

// The arithmetic of a printed line, in points: the check boxes in front of an item and the rules
// either side of a group heading.
class GRPrintGeometry
{
public:
    static constexpr double BoxInset = 2.125;
    static constexpr double RuleWidth = 0.25;
    static constexpr double CrossWidth = 1.0;

    struct ItemBoxes
    {
        QRectF first;
        QRectF second; // null when the list has one box per line
        double textLeft = 0;
    };

    // The boxes of an item on line; one box when only needed items are printed.
    static ItemBoxes itemBoxes(const QRectF &line, bool oneBox);
    // The two diagonals of a box.
    static QList<QLineF> cross(const QRectF &box);
    // Three rules on each side of a heading textWidth wide, centred in line; none when the text
    // leaves no room for them.
    static QList<QLineF> headingRules(const QRectF &line, double textWidth);
};
