#pragma once

#include <QRectF>

class QPainter;

// A rounded, gradient-filled check box in box, with a tick when checked; boxes smaller than
// 10 x 10 are not drawn. Outline and tick widths follow the painter's scale so the outline stays
// one device pixel wide.
void DrawQuartzCheckbox(QPainter &painter, bool checked, const QRectF &box);
