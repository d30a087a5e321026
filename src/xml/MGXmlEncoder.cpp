#include "MGXmlEncoder.h"

MGXmlEncoder::MGXmlEncoder(qsizetype capacity)
{
    if (capacity > 0)
        m_xml.reserve(capacity);
    m_xml += QStringLiteral("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n");
}

void MGXmlEncoder::addAttribute(const QString &name, qint64 number)
{
    m_pendingAttributes.append({name, QString::number(number)});
}

void MGXmlEncoder::addAttribute(const QString &name, const QString &string)
{
    if (string.isEmpty())
        return;
    m_pendingAttributes.append({name, createEscapedStringForHtml(string)});
}

void MGXmlEncoder::writeIndent()
{
    m_xml += QString(qsizetype(m_depth), u'\t');
}

void MGXmlEncoder::writeStartTag(const QString &name, bool selfClosing)
{
    writeIndent();
    m_xml += u'<';
    m_xml += name;
    for (const auto &[attributeName, value] : std::as_const(m_pendingAttributes)) {
        m_xml += u' ';
        m_xml += attributeName;
        m_xml += u"=\"";
        m_xml += value;
        m_xml += u'"';
    }
    m_pendingAttributes.clear();
    m_xml += selfClosing ? QStringView(u"/>") : QStringView(u">");
    m_isEmpty = false;
}

void MGXmlEncoder::openTag(const QString &name)
{
    writeStartTag(name, false);
    m_xml += u'\n';
    ++m_depth;
    m_justOpened = true;
}

void MGXmlEncoder::addTag(const QString &name, int number)
{
    addTag(name, qint64(number));
}

void MGXmlEncoder::addTag(const QString &name, qint64 longNumber)
{
    writeStartTag(name, false);
    m_xml += QString::number(longNumber);
    m_xml += u"</";
    m_xml += name;
    m_xml += u">\n";
    m_justOpened = false;
}

void MGXmlEncoder::addTag(const QString &name, const QString &string)
{
    if (name.isNull() || string.isNull())
        return;
    if (string.isEmpty()) {
        openAndCloseTag(name);
        return;
    }
    writeStartTag(name, false);
    m_xml += createEscapedStringForHtml(string);
    m_xml += u"</";
    m_xml += name;
    m_xml += u">\n";
    m_justOpened = false;
}

void MGXmlEncoder::openAndCloseTag(const QString &name)
{
    writeStartTag(name, true);
    m_xml += u'\n';
    m_justOpened = false;
}

void MGXmlEncoder::closeTag(const QString &name)
{
    if (m_depth > 0)
        --m_depth;
    if (m_justOpened && m_xml.endsWith(u'\n'))
        m_xml.chop(1);
    else
        writeIndent();
    m_xml += u"</";
    m_xml += name;
    m_xml += u">\n";
    m_justOpened = false;
    m_isEmpty = false;
}

QString MGXmlEncoder::createEscapedStringForHtml(const QString &string)
{
    if (string.isEmpty())
        return string;
    QString result;
    result.reserve(string.size() + string.size() / 8);
    for (const QChar c : string) {
        const char16_t u = c.unicode();
        switch (u) {
        case u'&':
            result += u"&amp;";
            break;
        case u'>':
            result += u"&gt;";
            break;
        case u'<':
            result += u"&lt;";
            break;
        case u'"':
            result += u"&quot;";
            break;
        case u'\t':
        case u'\n':
        case u'\r':
            result += c;
            break;
        default:
            // C0 and C1 controls (and DEL) have no place in XML text.
            if (u < 0x20 || (u >= 0x7F && u <= 0x9F))
                result += u' ';
            else
                result += c;
        }
    }
    return result;
}
