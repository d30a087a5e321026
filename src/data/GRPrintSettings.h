#pragma once

#include <QMetaType>
#include <QPageLayout>
#include <QString>

#include <optional>

// Page set-up of the printed list: paper, orientation and margins (in points) and a scaling
// factor, kept in the settings as one line of JSON text.
class GRPrintSettings
{
public:
    GRPrintSettings(); // the defaults

    // A4, or Letter where the locale measures in inches; portrait; half-inch margins; scale 1.
    static GRPrintSettings defaultSettings();
    static std::optional<GRPrintSettings> fromString(const QString &text, QString *error = nullptr);
    QString toString() const;

    const QPageLayout &pageLayout() const { return m_pageLayout; }
    void setPageLayout(const QPageLayout &pageLayout) { m_pageLayout = pageLayout; }
    double scale() const { return m_scale; }
    void setScale(double scale) { m_scale = scale; }

    static constexpr double MinScale = 0.01;
    static constexpr double MaxScale = 100.0;

    friend bool operator==(const GRPrintSettings &a, const GRPrintSettings &b)
    {
        return a.m_pageLayout.isEquivalentTo(b.m_pageLayout) && a.m_scale == b.m_scale;
    }

private:
    QPageLayout m_pageLayout;
    double m_scale = 1.0;
};
Q_DECLARE_METATYPE(GRPrintSettings)
