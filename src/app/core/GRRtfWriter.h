#pragma once

#include <QByteArray>
#include <QString>

// A small RTF writer: paragraphs in one of two styles, every character kept (beyond ASCII as
// \uN? with the UTF-16 unit, so key marks and any script survive), tabs as \tab.
class GRRtfWriter
{
public:
    enum class Style
    {
        Heading, // bold
        Line,    // indented 18 pt, one left tab stop at 216 pt
    };

    // The document's one font: its family name and size in points.
    GRRtfWriter(const QString &fontFamily, int pointSize);

    // Appends one paragraph; text holds no line break.
    void addParagraph(Style style, const QString &text);
    // The finished document.
    QByteArray rtf() const;

    static QByteArray escaped(const QString &text);

private:
    QByteArray m_body;
    QString m_fontFamily;
    int m_pointSize;
};
