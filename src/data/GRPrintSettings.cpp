#include "GRPrintSettings.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QLocale>
#include <QMarginsF>
#include <QPageSize>
#include <QSizeF>

#include <cmath>

namespace {

constexpr double HalfInch = 36.0;
// Nothing printable is larger than this (about 5.6 m) in either direction.
constexpr double MaxPagePoints = 16000.0;

QPageLayout defaultPageLayout()
{
    const bool inches = QLocale::system().measurementSystem() == QLocale::ImperialUSSystem;
    return QPageLayout(QPageSize(inches ? QPageSize::Letter : QPageSize::A4), QPageLayout::Portrait,
                       QMarginsF(HalfInch, HalfInch, HalfInch, HalfInch), QPageLayout::Point);
}

QPageSize::PageSizeId pageSizeIdForKey(const QString &key)
{
    for (int i = 0; i <= int(QPageSize::LastPageSize); ++i) {
        const auto id = QPageSize::PageSizeId(i);
        if (id != QPageSize::Custom && QPageSize::key(id) == key)
            return id;
    }
    return QPageSize::Custom;
}

bool readNumber(const QJsonObject &object, const char *name, double min, double max, double *out)
{
    const QJsonValue value = object.value(QLatin1String(name));
    if (!value.isDouble())
        return false;
    const double number = value.toDouble();
    if (!std::isfinite(number) || number < min || number > max)
        return false;
    *out = number;
    return true;
}

std::optional<GRPrintSettings> fail(QString *error, const QString &reason)
{
    if (error)
        *error = reason;
    return std::nullopt;
}

} // namespace

GRPrintSettings::GRPrintSettings() : m_pageLayout(defaultPageLayout()) {}

GRPrintSettings GRPrintSettings::defaultSettings()
{
    return GRPrintSettings();
}

QString GRPrintSettings::toString() const
{
    const QPageSize pageSize = m_pageLayout.pageSize();
    const QSizeF size = pageSize.size(QPageSize::Point);
    const QMarginsF margins = m_pageLayout.margins(QPageLayout::Point);
    QJsonObject object;
    if (pageSize.id() != QPageSize::Custom)
        object.insert(QStringLiteral("paper"), QPageSize::key(pageSize.id()));
    object.insert(QStringLiteral("width"), size.width());
    object.insert(QStringLiteral("height"), size.height());
    object.insert(QStringLiteral("orientation"), m_pageLayout.orientation() == QPageLayout::Landscape
                                                     ? QStringLiteral("landscape")
                                                     : QStringLiteral("portrait"));
    object.insert(QStringLiteral("left"), margins.left());
    object.insert(QStringLiteral("top"), margins.top());
    object.insert(QStringLiteral("right"), margins.right());
    object.insert(QStringLiteral("bottom"), margins.bottom());
    object.insert(QStringLiteral("scale"), m_scale);
    return QString::fromUtf8(QJsonDocument(object).toJson(QJsonDocument::Compact));
}

std::optional<GRPrintSettings> GRPrintSettings::fromString(const QString &text, QString *error)
{
    QJsonParseError parseError;
    const QJsonDocument document = QJsonDocument::fromJson(text.toUtf8(), &parseError);
    if (parseError.error != QJsonParseError::NoError)
        return fail(error, parseError.errorString());
    if (!document.isObject())
        return fail(error, QStringLiteral("not an object"));
    const QJsonObject object = document.object();

    QPageSize pageSize;
    const QJsonValue paper = object.value(QStringLiteral("paper"));
    if (paper.isString()) {
        const QPageSize::PageSizeId id = pageSizeIdForKey(paper.toString());
        if (id == QPageSize::Custom)
            return fail(error, QStringLiteral("unknown paper %1").arg(paper.toString()));
        pageSize = QPageSize(id);
    } else {
        double width = 0;
        double height = 0;
        if (!readNumber(object, "width", 1.0, MaxPagePoints, &width) ||
            !readNumber(object, "height", 1.0, MaxPagePoints, &height))
            return fail(error, QStringLiteral("bad paper size"));
        pageSize = QPageSize(QSizeF(width, height), QPageSize::Point, QString(), QPageSize::ExactMatch);
    }
    if (!pageSize.isValid())
        return fail(error, QStringLiteral("bad paper size"));

    const QString orientationName = object.value(QStringLiteral("orientation")).toString();
    QPageLayout::Orientation orientation;
    if (orientationName == QLatin1String("portrait"))
        orientation = QPageLayout::Portrait;
    else if (orientationName == QLatin1String("landscape"))
        orientation = QPageLayout::Landscape;
    else
        return fail(error, QStringLiteral("bad orientation"));

    double sides[4] = {};
    const char *const sideNames[4] = {"left", "top", "right", "bottom"};
    for (int i = 0; i < 4; ++i) {
        if (!readNumber(object, sideNames[i], 0.0, MaxPagePoints, &sides[i]))
            return fail(error, QStringLiteral("bad %1 margin").arg(QLatin1String(sideNames[i])));
    }
    const QMarginsF margins(sides[0], sides[1], sides[2], sides[3]);
    QSizeF full = pageSize.size(QPageSize::Point);
    if (orientation == QPageLayout::Landscape)
        full.transpose();
    if (margins.left() + margins.right() >= full.width() || margins.top() + margins.bottom() >= full.height())
        return fail(error, QStringLiteral("margins leave no room to print"));

    double scale = 1.0;
    if (!readNumber(object, "scale", MinScale, MaxScale, &scale))
        return fail(error, QStringLiteral("bad scale"));

    GRPrintSettings settings;
    settings.m_pageLayout = QPageLayout(pageSize, orientation, margins, QPageLayout::Point);
    settings.m_scale = scale;
    return settings;
}
