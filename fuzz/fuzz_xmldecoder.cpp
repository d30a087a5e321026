#include "MGXmlDecoder.h"
#include "MGXmlEncoder.h"

#include <QByteArray>

#include <cstdint>
#include <cstdlib>

// Escaping then decoding gives the text back, with control characters turned into spaces.
static void checkRoundTrip(const QString &text)
{
    QString expected = text;
    for (QChar &c : expected) {
        const char16_t u = c.unicode();
        if ((u < 0x20 && u != u'\t' && u != u'\n' && u != u'\r') || (u >= 0x7F && u <= 0x9F))
            c = u' ';
    }
    if (MGXmlDecoder::decodeEscapes(MGXmlEncoder::createEscapedStringForHtml(text)) != expected)
        abort();
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    static const bool keysRegistered = [] {
        const char *names[] = {"aisle", "categories", "category", "groceries",
                               "item",  "items",      "name",     "store"};
        quint32 key = 0;
        for (const char *name : names)
            MGXmlDecoder::addDecoderKey(key++, QString::fromLatin1(name));
        return true;
    }();
    (void)keysRegistered;

    if (size == 0)
        return 0;
    // The first byte picks the decoder's options; the rest is the text.
    const uint8_t options = data[0];
    const QByteArray bytes(reinterpret_cast<const char *>(data + 1), qsizetype(size - 1));

    const QString decoded = MGXmlDecoder::decodeEscapes(QString::fromUtf8(bytes));
    (void)decoded;

    auto decoder = MGXmlDecoder::fromData(bytes);
    if (!decoder)
        return 0;
    decoder->setAllowNumericTags(options & 1);
    decoder->setAllowSpaceInAttr(options & 2);

    quint64 checksum = 0;
    qsizetype tags = 0;
    while (decoder->getNextTag()) {
        if (++tags > bytes.size())
            abort(); // every tag consumes at least one character
        checksum += decoder->key() + quint64(decoder->level()) + quint64(decoder->integerValue()) +
                    quint64(decoder->longValue());
        checksum += decoder->xmlTag().size() + decoder->value().size();
        checksum += decoder->startTag() + decoder->endTag() + decoder->tagHasAttributes();
        for (const auto &[name, value] : decoder->orderedAttributes()) {
            checksum += quint64(decoder->integerAttributeForTag(name));
            checksum += decoder->stringAttributeForTag(name).size();
            checksum += quint64(decoder->decodeAttribute(name, {value}));
        }
        checksum += decoder->attributes().size();
        checksum += quint64(decoder->decodeValueFromValues({QStringLiteral("a"), decoder->value()}));
        if (options & 4)
            checkRoundTrip(decoder->value());
        if ((options & 8) && decoder->isDone())
            decoder->forceDone();
    }
    if (!decoder->isDone())
        abort();
    checksum += decoder->error().size();
    volatile quint64 sink = checksum;
    (void)sink;
    return 0;
}
