#include "GRPrintGeometry.h"

#include <algorithm>
#include <cmath>

GRPrintGeometry::ItemBoxes GRPrintGeometry::itemBoxes(const QRectF &line, bool oneBox)
{
    const QRectF inset = line.adjusted(BoxInset, BoxInset, -BoxInset, -BoxInset);
    const double side = std::floor(inset.height());
    ItemBoxes boxes;
    boxes.first = QRectF(inset.x(), inset.y() + 2, side, side);
    if (oneBox) {
        boxes.textLeft = inset.x() + side + 2;
    } else {
        boxes.second = boxes.first.translated(side + 2, 0);
        boxes.textLeft = inset.x() + 2 * (side + 2);
    }
    return boxes;
}

QList<QLineF> GRPrintGeometry::cross(const QRectF &box)
{
    return {QLineF(box.topLeft(), box.bottomRight()), QLineF(box.bottomLeft(), box.topRight())};
}

QList<QLineF> GRPrintGeometry::headingRules(const QRectF &line, double textWidth)
{
    const double side = std::floor((line.width() - textWidth - 10) * 0.5);
    if (side <= 0)
        return {};
    const float spacing = std::min(std::floor((float(line.height()) - 0.75f) * 0.5f), 2.0f);
    const double top = std::floor(line.y() + line.height() * 0.5 - double(spacing)) + 0.125 + 2;
    QList<QLineF> rules;
    for (int i = 0; i < 3; ++i) {
        const double y = top + i * double(spacing);
        rules << QLineF(line.left(), y, line.left() + side, y) << QLineF(line.right() - side, y, line.right(), y);
    }
    return rules;
}
