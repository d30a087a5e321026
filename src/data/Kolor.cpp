#include "Kolor.h"

#include <QRgba64>
#include <QStringList>

#include <limits>

namespace {

// The leading integer of a string as C's strtol reads it, clamped to a 32-bit int: white space,
// an optional sign, then digits; 0 when there are none.
int leadingInt(const QString &text)
{
    qsizetype i = 0;
    const qsizetype n = text.size();
    while (i < n && text.at(i).isSpace())
        ++i;
    bool negative = false;
    if (i < n && (text.at(i) == u'-' || text.at(i) == u'+')) {
        negative = text.at(i) == u'-';
        ++i;
    }
    qint64 value = 0;
    const qint64 limit = qint64(std::numeric_limits<int>::max()) + 1;
    for (; i < n && text.at(i) >= u'0' && text.at(i) <= u'9'; ++i) {
        value = value * 10 + (text.at(i).unicode() - u'0');
        if (value > limit)
            value = limit;
    }
    if (negative)
        return int(-value);
    return int(std::min<qint64>(value, std::numeric_limits<int>::max()));
}

} // namespace

Kolor KolorFromColor(const std::optional<QColor> &color)
{
    if (!color || !color->isValid())
        return Kolor::noColor();
    // QColor keeps 16-bit channels, and c / 65535 * 255 == c / 257 exactly, so integer division
    // truncates without the floating-point error that would turn an 8-bit 10 into 9.
    const QRgba64 rgba = color->rgba64();
    Kolor kolor;
    kolor.red = quint8(rgba.red() / 257);
    kolor.green = quint8(rgba.green() / 257);
    kolor.blue = quint8(rgba.blue() / 257);
    kolor.alphaPercent = quint8(quint32(rgba.alpha()) * 100 / 65535);
    if (kolor.word() < 0x01000000u)
        return Kolor::noColor();
    return kolor;
}

QColor ColorFromKolor(Kolor kolor)
{
    if (!kolor.isDrawable())
        return QColor(Qt::transparent);
    // Round the alpha up so that KolorFromColor truncates back to the same percentage.
    const quint16 alpha = quint16((quint32(kolor.alphaPercent) * 65535 + 99) / 100);
    return QColor::fromRgba64(quint16(kolor.red * 257), quint16(kolor.green * 257), quint16(kolor.blue * 257),
                              alpha);
}

Kolor LightenKolor(Kolor kolor)
{
    const auto lighten = [](quint8 channel) { return quint8(std::min<quint8>(channel, 191) + 64); };
    kolor.red = lighten(kolor.red);
    kolor.green = lighten(kolor.green);
    kolor.blue = lighten(kolor.blue);
    return kolor;
}

Kolor KolorFromString(const QString &string)
{
    if (string.size() < 9)
        return Kolor::noColor();
    const QStringList parts = string.mid(1, string.size() - 2).split(QStringLiteral(", "));
    if (parts.size() < 3)
        return Kolor::noColor();
    Kolor kolor;
    kolor.red = quint8(leadingInt(parts.at(0)) & 0xFF);
    kolor.green = quint8(leadingInt(parts.at(1)) & 0xFF);
    kolor.blue = quint8(leadingInt(parts.at(2)) & 0xFF);
    kolor.alphaPercent = parts.size() == 3 ? 100 : quint8(leadingInt(parts.at(3)) & 0xFF);
    return kolor;
}

QString KolorToString(Kolor kolor)
{
    if (kolor.alphaPercent == 100)
        return QStringLiteral("{%1, %2, %3}").arg(kolor.red).arg(kolor.green).arg(kolor.blue);
    return QStringLiteral("{%1, %2, %3, %4}")
        .arg(kolor.red)
        .arg(kolor.green)
        .arg(kolor.blue)
        .arg(kolor.alphaPercent);
}
