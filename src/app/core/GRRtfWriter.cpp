#include "GRRtfWriter.h"

GRRtfWriter::GRRtfWriter(const QString &fontFamily, int pointSize)
    : m_fontFamily(fontFamily), m_pointSize(pointSize)
{
}

QByteArray GRRtfWriter::escaped(const QString &text)
{
    QByteArray out;
    out.reserve(text.size() + 8);
    for (const QChar c : text) {
        const char16_t unit = c.unicode();
        if (unit == u'\\' || unit == u'{' || unit == u'}') {
            out += '\\';
            out += char(unit);
        } else if (unit == u'\t') {
            out += "\\tab ";
        } else if (unit < 0x20 || unit == 0x7F) {
            out += ' '; // other control characters have no place in a paragraph
        } else if (unit < 0x80) {
            out += char(unit);
        } else {
            // RTF numbers are signed 16-bit; "?" is what a reader without Unicode shows.
            out += "\\u" + QByteArray::number(qint16(unit)) + '?';
        }
    }
    return out;
}

void GRRtfWriter::addParagraph(Style style, const QString &text)
{
    // 216 pt = 4320 twips, 18 pt = 360 twips.
    if (style == Style::Heading)
        m_body += "\\pard\\ql\\b ";
    else
        m_body += "\\pard\\ql\\tx4320\\fi0\\li360\\b0 ";
    m_body += escaped(text);
    m_body += "\\par\n";
}

QByteArray GRRtfWriter::rtf() const
{
    QByteArray document = "{\\rtf1\\ansi\\ansicpg1252\\uc1\\deff0{\\fonttbl{\\f0\\fswiss\\fcharset0 ";
    document += escaped(m_fontFamily);
    document += ";}}\n\\f0\\fs" + QByteArray::number(m_pointSize * 2) + '\n';
    document += m_body;
    document += "}\n";
    return document;
}
