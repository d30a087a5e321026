#include "MGXmlDecoder.h"

#include <QFile>
#include <QStringDecoder>

#include <limits>

static std::shared_ptr<MGXmlDecoder::KeyTable> &currentKeyTable()
{
    static std::shared_ptr<MGXmlDecoder::KeyTable> table = std::make_shared<MGXmlDecoder::KeyTable>();
    return table;
}

static bool isNameStart(QChar c, bool allowDigit)
{
    return c.isLetter() || c == u'_' || c == u':' || (allowDigit && c.isDigit());
}

static bool isNameChar(QChar c)
{
    return c.isLetter() || c.isDigit() || c == u'_' || c == u':' || c == u'-' || c == u'.';
}

static bool startsWithAt(const QString &text, qsizetype at, QStringView prefix)
{
    return QStringView(text).sliced(at).startsWith(prefix);
}

// strtoll-like: white space, an optional sign, then decimal digits up to the first non-digit.
static qint64 parseInteger(QStringView s)
{
    qsizetype i = 0;
    const qsizetype n = s.size();
    while (i < n && (s[i] == u' ' || (s[i] >= u'\t' && s[i] <= u'\r')))
        ++i;
    bool negative = false;
    if (i < n && (s[i] == u'+' || s[i] == u'-')) {
        negative = s[i] == u'-';
        ++i;
    }
    const quint64 limit = negative ? quint64(std::numeric_limits<qint64>::max()) + 1
                                   : quint64(std::numeric_limits<qint64>::max());
    quint64 result = 0;
    bool overflow = false;
    for (; i < n && s[i] >= u'0' && s[i] <= u'9'; ++i) {
        const unsigned digit = s[i].unicode() - u'0';
        if (overflow || result > (limit - digit) / 10) {
            overflow = true;
            continue;
        }
        result = result * 10 + digit;
    }
    if (overflow)
        return negative ? std::numeric_limits<qint64>::min() : std::numeric_limits<qint64>::max();
    if (!negative)
        return qint64(result);
    return result == limit ? std::numeric_limits<qint64>::min() : -qint64(result);
}

std::unique_ptr<MGXmlDecoder> MGXmlDecoder::fromFile(const QString &path, QString *error)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        if (error)
            *error = file.errorString();
        return nullptr;
    }
    const QByteArray data = file.readAll();
    if (file.error() != QFileDevice::NoError) {
        if (error)
            *error = file.errorString();
        return nullptr;
    }
    auto decoder = fromData(data);
    if (!decoder && error)
        *error = QStringLiteral("I don't understand the file format");
    return decoder;
}

std::unique_ptr<MGXmlDecoder> MGXmlDecoder::fromData(const QByteArray &utf8)
{
    QStringDecoder toUtf16(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    const QString text = toUtf16(utf8);
    if (toUtf16.hasError())
        return nullptr;
    return fromString(text);
}

std::unique_ptr<MGXmlDecoder> MGXmlDecoder::fromString(const QString &text)
{
    auto decoder = std::make_unique<MGXmlDecoder>(text);
    if (!decoder->m_accepted)
        return nullptr;
    return decoder;
}

MGXmlDecoder::MGXmlDecoder(const QString &text) : m_text(text)
{
    m_accepted = readPrologue();
    if (!m_accepted)
        fail(m_position);
}

bool MGXmlDecoder::readPrologue()
{
    if (m_text.isEmpty() || !skipToNextTag())
        return false;
    if (!startsWithAt(m_text, m_position, u"<?xml"))
        return false;
    const qsizetype end = m_text.indexOf(u"?>", m_position + 5);
    if (end < 0)
        return false;
    m_position = end + 2;
    return true;
}

bool MGXmlDecoder::isDone() const
{
    return m_done || m_position >= m_text.size() || !m_error.isEmpty();
}

void MGXmlDecoder::forceDone()
{
    m_position = m_text.size();
}

void MGXmlDecoder::setError(const QString &error)
{
    if (m_error.isEmpty())
        m_error = error;
}

bool MGXmlDecoder::fail(qsizetype offset)
{
    setError(QStringLiteral("this is not a valid XML file (offset 0x%1)").arg(offset, 0, 16));
    m_done = true;
    return false;
}

static QString emptyValue()
{
    return QString(0, QChar());
}

void MGXmlDecoder::clearTag()
{
    m_key = 0;
    m_xmlTag.clear();
    m_startTag = false;
    m_endTag = false;
    m_value.clear();
    m_orderedAttributes.clear();
}

bool MGXmlDecoder::getNextTag()
{
    if (isDone())
        return false;
    clearTag();
    if (!skipToNextTag())
        return fail(m_position);
    if (m_position >= m_text.size()) {
        m_done = true;
        return false;
    }
    if (m_text.at(m_position) != u'<')
        return fail(m_position);
    return readTag();
}

bool MGXmlDecoder::skipToNextTag()
{
    const qsizetype length = m_text.size();
    while (m_position < length) {
        const QChar c = m_text.at(m_position);
        if (c.isSpace()) {
            ++m_position;
        } else if (c == u'<') {
            if (length - m_position < 7 || m_text.at(m_position + 1) != u'!')
                return true;
            if (startsWithAt(m_text, m_position, u"<!--")) {
                const qsizetype end = m_text.indexOf(u"-->", m_position + 4);
                if (end < 0)
                    return false;
                m_position = end + 3;
                continue;
            }
            qsizetype depth = 1;
            qsizetype i = m_position + 2;
            for (; i < length; ++i) {
                const QChar d = m_text.at(i);
                if (d == u'<')
                    ++depth;
                else if (d == u'>' && --depth == 0)
                    break;
            }
            if (i >= length)
                return false;
            m_position = i + 1;
        } else if (c == u'&') {
            if (m_position + 1 >= length)
                return true;
            const QChar next = m_text.at(m_position + 1);
            if (next == u'<' || next.isSpace())
                return true;
            const qsizetype end = m_text.indexOf(u';', m_position + 1);
            if (end < 0)
                return true;
            m_position = end + 1;
        } else {
            return true;
        }
    }
    return true;
}

qsizetype MGXmlDecoder::scanName(qsizetype from, bool allowDigitStart) const
{
    const qsizetype length = m_text.size();
    if (from >= length || !isNameStart(m_text.at(from), allowDigitStart))
        return from;
    qsizetype i = from + 1;
    while (i < length && isNameChar(m_text.at(i)))
        ++i;
    return i;
}

qsizetype MGXmlDecoder::skipSpace(qsizetype from) const
{
    while (from < m_text.size() && m_text.at(from).isSpace())
        ++from;
    return from;
}

bool MGXmlDecoder::readTag()
{
    if (m_position + 1 >= m_text.size())
        return fail(m_position);
    const QChar next = m_text.at(m_position + 1);
    if (next == u'/')
        return readEndTag();
    if (next == u'?')
        return readProcessingInstruction();
    return readStartTag();
}

bool MGXmlDecoder::readEndTag()
{
    const qsizetype nameStart = m_position + 2;
    const qsizetype nameEnd = scanName(nameStart, m_allowNumericTags);
    if (nameEnd == nameStart)
        return fail(m_position);
    const qsizetype close = skipSpace(nameEnd);
    if (close >= m_text.size() || m_text.at(close) != u'>')
        return fail(m_position);
    m_xmlTag = m_text.sliced(nameStart, nameEnd - nameStart);
    m_key = keyForName(m_xmlTag);
    m_endTag = true;
    --m_level;
    m_position = close + 1;
    return true;
}

bool MGXmlDecoder::readProcessingInstruction()
{
    const qsizetype end = m_text.indexOf(u"?>", m_position + 2);
    if (end < 0)
        return fail(m_position);
    m_xmlTag = QStringLiteral("?");
    m_key = ProcessingInstructionKey;
    m_value = m_text.sliced(m_position + 2, end - m_position - 2).trimmed();
    m_startTag = true;
    m_endTag = true;
    m_position = end + 2;
    return true;
}

bool MGXmlDecoder::readStartTag()
{
    const qsizetype length = m_text.size();
    const qsizetype nameStart = m_position + 1;
    const qsizetype nameEnd = scanName(nameStart, m_allowNumericTags);
    if (nameEnd == nameStart)
        return fail(m_position);

    QList<QPair<QString, QString>> attributes;
    bool selfClosing = false;
    qsizetype i = nameEnd;
    for (;;) {
        i = skipSpace(i);
        if (i >= length)
            return fail(m_position);
        const QChar c = m_text.at(i);
        if (c == u'>') {
            ++i;
            break;
        }
        if (c == u'/') {
            if (i + 1 >= length || m_text.at(i + 1) != u'>')
                return fail(m_position);
            selfClosing = true;
            i += 2;
            break;
        }
        const qsizetype attributeEnd = scanName(i, false);
        if (attributeEnd == i)
            return fail(m_position);
        const QString attributeName = m_text.sliced(i, attributeEnd - i);
        i = m_allowSpaceInAttr ? skipSpace(attributeEnd) : attributeEnd;
        if (i >= length || m_text.at(i) != u'=')
            return fail(m_position);
        i = m_allowSpaceInAttr ? skipSpace(i + 1) : i + 1;
        if (i >= length || (m_text.at(i) != u'"' && m_text.at(i) != u'\''))
            return fail(m_position);
        const qsizetype valueEnd = m_text.indexOf(m_text.at(i), i + 1);
        if (valueEnd < 0)
            return fail(m_position);
        attributes.append({attributeName, decodeEscapes(m_text.sliced(i + 1, valueEnd - i - 1))});
        i = valueEnd + 1;
    }

    m_xmlTag = m_text.sliced(nameStart, nameEnd - nameStart);
    m_key = keyForName(m_xmlTag);
    m_orderedAttributes = std::move(attributes);
    m_startTag = true;
    if (selfClosing) {
        // Present but empty, unlike an absent element, so an empty name survives a round trip.
        m_value = emptyValue();
        m_endTag = true;
        m_position = i;
        return true;
    }
    return readTextContent(i);
}

// Decides whether the element that starts at `from` holds only text (possibly with CDATA and
// comments) up to an end tag. If so the whole element is consumed; otherwise it is a container
// and the read position stays after its start tag.
bool MGXmlDecoder::readTextContent(qsizetype from)
{
    const qsizetype length = m_text.size();
    QString value;
    qsizetype segmentStart = from;
    qsizetype i = from;
    for (;;) {
        const qsizetype lt = m_text.indexOf(u'<', i);
        if (lt < 0)
            break;
        if (startsWithAt(m_text, lt, u"<![CDATA[")) {
            const qsizetype end = m_text.indexOf(u"]]>", lt + 9);
            if (end < 0) {
                setError(QStringLiteral("malformed CDATA at offset 0x%1").arg(lt, 0, 16));
                m_done = true;
                return false;
            }
            value += decodeEscapes(m_text.sliced(segmentStart, lt - segmentStart));
            value += QStringView(m_text).sliced(lt + 9, end - lt - 9);
            i = segmentStart = end + 3;
            continue;
        }
        if (startsWithAt(m_text, lt, u"<!--")) {
            const qsizetype end = m_text.indexOf(u"-->", lt + 4);
            if (end < 0)
                break;
            value += decodeEscapes(m_text.sliced(segmentStart, lt - segmentStart));
            i = segmentStart = end + 3;
            continue;
        }
        if (lt + 1 < length && m_text.at(lt + 1) == u'/') {
            const qsizetype nameEnd = scanName(lt + 2, m_allowNumericTags);
            const qsizetype close = skipSpace(nameEnd);
            if (nameEnd == lt + 2 || close >= length || m_text.at(close) != u'>')
                return fail(lt);
            value += decodeEscapes(m_text.sliced(segmentStart, lt - segmentStart));
            m_value = value.isNull() ? emptyValue() : std::move(value);
            m_endTag = true;
            m_position = close + 1;
            return true;
        }
        break;
    }
    ++m_level;
    m_position = from;
    return true;
}

quint32 MGXmlDecoder::keyForName(const QString &name) const
{
    const KeyTable *table = m_ownKeys ? m_ownKeys.get() : currentKeyTable().get();
    return table ? table->value(name, 0) : 0;
}

qint64 MGXmlDecoder::integerValue() const
{
    return parseInteger(m_value);
}

QHash<QString, QString> MGXmlDecoder::attributes() const
{
    QHash<QString, QString> result;
    for (const auto &[name, value] : m_orderedAttributes) {
        if (!result.contains(name))
            result.insert(name, value);
    }
    return result;
}

qint64 MGXmlDecoder::integerAttributeForTag(const QString &name) const
{
    const QString value = stringAttributeForTag(name);
    return value.isNull() ? 0 : parseInteger(value);
}

QString MGXmlDecoder::stringAttributeForTag(const QString &name) const
{
    for (const auto &[attributeName, value] : m_orderedAttributes) {
        if (attributeName == name)
            return value.isNull() ? QStringLiteral("") : value;
    }
    return QString();
}

qint64 MGXmlDecoder::decodeValueFromValues(const QStringList &values) const
{
    return decodeValue(m_value, values);
}

qint64 MGXmlDecoder::decodeAttribute(const QString &name, const QStringList &values) const
{
    const QString value = stringAttributeForTag(name);
    return value.isNull() ? -1 : decodeValue(value, values);
}

qint64 MGXmlDecoder::decodeValue(const QString &value, const QStringList &values)
{
    return values.indexOf(value);
}

void MGXmlDecoder::setKeyDecoder(std::shared_ptr<KeyTable> table)
{
    currentKeyTable() = std::move(table);
}

std::shared_ptr<MGXmlDecoder::KeyTable> MGXmlDecoder::keyDecoder()
{
    return currentKeyTable();
}

void MGXmlDecoder::addDecoderKey(quint32 key, const QString &tag)
{
    auto &table = currentKeyTable();
    if (!table)
        table = std::make_shared<KeyTable>();
    table->insert(tag, key);
}

static int hexDigit(QChar c)
{
    const char16_t u = c.unicode();
    if (u >= u'0' && u <= u'9')
        return u - u'0';
    if (u >= u'a' && u <= u'f')
        return u - u'a' + 10;
    if (u >= u'A' && u <= u'F')
        return u - u'A' + 10;
    return -1;
}

// Reads "&#x41;" or "&#65;" (ended by ";" or a space) at `at`; answers the index after the
// reference and the code point, or -1 when there is none.
static qsizetype numericReference(QStringView s, qsizetype at, char32_t *code)
{
    qsizetype i = at + 2;
    const bool hex = i < s.size() && (s[i] == u'x' || s[i] == u'X');
    if (hex)
        ++i;
    const int base = hex ? 16 : 10;
    const qsizetype digitsStart = i;
    char32_t value = 0;
    for (; i < s.size(); ++i) {
        const int digit = hex ? hexDigit(s[i]) : (s[i] >= u'0' && s[i] <= u'9' ? s[i].unicode() - u'0' : -1);
        if (digit < 0)
            break;
        if (value <= 0x10FFFF)
            value = value * base + char32_t(digit);
    }
    if (i == digitsStart || i >= s.size() || (s[i] != u';' && s[i] != u' '))
        return -1;
    *code = value;
    return i + 1;
}

// The first pass: "&#65;" and "&#x41;" (ended by ";" or a space) become their characters.
static QString decodeNumericReferences(const QString &string)
{
    const QStringView s(string);
    QString result;
    result.reserve(s.size());
    qsizetype i = 0;
    while (i < s.size()) {
        const qsizetype amp = s.indexOf(u"&#", i);
        if (amp < 0) {
            result += s.sliced(i);
            break;
        }
        result += s.sliced(i, amp - i);
        char32_t code = 0;
        const qsizetype after = numericReference(s, amp, &code);
        if (after < 0) {
            result += u'&';
            i = amp + 1;
            continue;
        }
        const bool valid = code != 0 && code <= 0x10FFFF && !(code >= 0xD800 && code <= 0xDFFF);
        if (valid)
            result += QString::fromUcs4(&code, 1);
        else
            result += QChar(QChar::ReplacementCharacter);
        i = after;
    }
    return result;
}

// The second pass, over what the first one left: named references, unknown ones deleted.
static QString decodeNamedReferences(const QString &string)
{
    // The longest reference replaced, "&" and ";" included.
    constexpr qsizetype maxReference = 14;
    const QStringView s(string);
    QString result;
    result.reserve(s.size());
    qsizetype i = 0;
    while (i < s.size()) {
        const qsizetype amp = s.indexOf(u'&', i);
        if (amp < 0) {
            result += s.sliced(i);
            break;
        }
        result += s.sliced(i, amp - i);
        qsizetype semicolon = -1;
        const qsizetype searchEnd = qMin(s.size(), amp + maxReference);
        for (qsizetype j = amp + 1; j < searchEnd; ++j) {
            const QChar c = s[j];
            if (c == u';') {
                semicolon = j;
                break;
            }
            if (c == u'<' || c == u'>' || c.isSpace())
                break;
        }
        if (semicolon < 0) {
            result += u'&';
            i = amp + 1;
            continue;
        }
        const QStringView name = s.sliced(amp + 1, semicolon - amp - 1);
        if (name == u"quot")
            result += u'"';
        else if (name == u"lt")
            result += u'<';
        else if (name == u"gt")
            result += u'>';
        else if (name == u"apos")
            result += u'\'';
        else if (name == u"nbsp")
            result += u' ';
        else if (name == u"amp")
            result += u'&';
        i = semicolon + 1;
    }
    return result;
}

QString MGXmlDecoder::decodeEscapes(const QString &string)
{
    if (!string.contains(u'&'))
        return string;
    // Two passes, so a numeric reference that spells out a named one ("&#38;amp;") ends as its character.
    return decodeNamedReferences(decodeNumericReferences(string));
}
