#pragma once

#include <QColor>
#include <QMetaType>
#include <QString>

#include <optional>

// A store colour packed in 32 bits: red in bits 0-7, green 8-15, blue 16-23 and the alpha as a
// percentage (0-100) in bits 24-31.
struct Kolor
{
    quint8 red = 0;
    quint8 green = 0;
    quint8 blue = 0;
    quint8 alphaPercent = 100;

    static constexpr quint32 DefaultWord = 0x64000000u; // opaque black, never written to the file
    static constexpr quint32 NoColorWord = 0xFFFFFFFFu;

    constexpr quint32 word() const
    {
        return quint32(red) | quint32(green) << 8 | quint32(blue) << 16 | quint32(alphaPercent) << 24;
    }
    static constexpr Kolor fromWord(quint32 word)
    {
        return Kolor{quint8(word), quint8(word >> 8), quint8(word >> 16), quint8(word >> 24)};
    }
    static constexpr Kolor defaultKolor() { return fromWord(DefaultWord); }
    static constexpr Kolor noColor() { return fromWord(NoColorWord); }
    // Alpha 1..100: everything else draws as the clear colour.
    constexpr bool isDrawable() const
    {
        const qint32 w = qint32(word());
        return w >= 0x01000000 && w < 0x65000000;
    }
    friend constexpr bool operator==(Kolor a, Kolor b) { return a.word() == b.word(); }
};
Q_DECLARE_METATYPE(Kolor)

// A missing colour (std::nullopt or an invalid QColor) gives Kolor::noColor().
Kolor KolorFromColor(const std::optional<QColor> &color);
QColor ColorFromKolor(Kolor kolor);
Kolor LightenKolor(Kolor kolor);
Kolor KolorFromString(const QString &string);
// The "color" text of the database: "{r, g, b}" at alpha 100, else "{r, g, b, a}".
QString KolorToString(Kolor kolor);
