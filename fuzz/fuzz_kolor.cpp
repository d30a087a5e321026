// Feeds arbitrary text to the store colour reader; the first four bytes also make a packed colour.
// Whatever is read writes and reads back as itself, and a drawable colour survives a trip through
// QColor (the colour dialog's side).
#include "Kolor.h"

#include <QByteArray>
#include <QString>

#include <cstdint>
#include <cstdlib>

namespace {

void check(bool condition)
{
    if (!condition)
        std::abort();
}

void checkKolor(Kolor kolor)
{
    check(KolorFromString(KolorToString(kolor)) == kolor);
    const QColor color = ColorFromKolor(kolor);
    if (kolor.isDrawable())
        check(KolorFromColor(color) == kolor);
    else
        check(color.alpha() == 0);
    const Kolor light = LightenKolor(kolor);
    check(light.red >= 64 && light.green >= 64 && light.blue >= 64 &&
          light.alphaPercent == kolor.alphaPercent);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QString text = QString::fromUtf8(reinterpret_cast<const char *>(data), qsizetype(size));
    checkKolor(KolorFromString(text));
    if (size >= 4)
        checkKolor(Kolor::fromWord(quint32(data[0]) | quint32(data[1]) << 8 | quint32(data[2]) << 16 |
                                   quint32(data[3]) << 24));
    return 0;
}
