#pragma once

#include <QList>
#include <QPair>
#include <QString>

// Builds an indented XML document in one growing string: one element per line, one tab per
// open level. It writes one fixed layout and never fails.
class MGXmlEncoder
{
public:
    explicit MGXmlEncoder(qsizetype capacity = 0);

    // Queued attributes decorate the next start tag (openTag or an addTag form).
    void addAttribute(const QString &name, qint64 number);
    void addAttribute(const QString &name, const QString &string); // empty or null: nothing queued

    void openTag(const QString &name);
    void addTag(const QString &name, int number);
    void addTag(const QString &name, qint64 longNumber);
    void addTag(const QString &name, const QString &string); // null name or string: nothing written
    void openAndCloseTag(const QString &name);
    void closeTag(const QString &name);

    const QString &xml() const { return m_xml; }
    bool isEmpty() const { return m_isEmpty; }

    // Control characters other than tab, LF and CR become spaces; & > < " are escaped.
    static QString createEscapedStringForHtml(const QString &string);

private:
    void writeIndent();
    void writeStartTag(const QString &name, bool selfClosing);

    QString m_xml;
    QList<QPair<QString, QString>> m_pendingAttributes;
    quint32 m_depth = 0;
    bool m_justOpened = false;
    bool m_isEmpty = true;
};
