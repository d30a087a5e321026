#include "DrawQuartzCheckbox.h"

#include <QGuiApplication>
#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>
#include <QPalette>

#include <cmath>

void DrawQuartzCheckbox(QPainter &painter, bool checked, const QRectF &box)
{
    if (!(box.width() >= 10) || !(box.height() >= 10))
        return;
    const QTransform transform = painter.deviceTransform();
    const qreal scale = std::hypot(transform.m11(), transform.m12());
    const qreal px = scale > 0 && std::isfinite(scale) ? 1.0 / scale : 1.0;

    const QRectF body = box.adjusted(0, 2, 0, 0);
    QLinearGradient gradient(body.topLeft(), body.bottomLeft());
    gradient.setColorAt(0.0, Qt::white);
    gradient.setColorAt(1.0, checked ? QColor(109, 129, 255) : QColor(217, 227, 255));

    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    QPainterPath fill;
    fill.addRoundedRect(body, 2.0, 2.0);
    painter.fillPath(fill, gradient);

    QPainterPath outline;
    outline.addRoundedRect(body.adjusted(px / 2, px / 2, -px / 2, -px / 2), 2.0, 2.0);
    painter.strokePath(outline, QPen(QGuiApplication::palette().color(QPalette::Mid), px));

    if (checked) {
        // The tick deliberately overshoots the box's top right corner.
        const QPointF points[] = {
            {body.x() + body.width() * 0.25, body.y() + body.height() * 0.33},
            {body.x() + body.width() * 0.5, body.y() + body.height() * 0.66},
            {body.x() + body.width() + 0.5, body.y() - 0.5},
        };
        painter.setPen(QPen(Qt::black, 2.0, Qt::SolidLine, Qt::RoundCap, Qt::MiterJoin));
        painter.setBrush(Qt::NoBrush);
        painter.drawPolyline(points, 3);
    }
    painter.restore();
}
