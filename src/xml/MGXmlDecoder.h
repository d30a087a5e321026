#pragma once

#include <QHash>
#include <QList>
#include <QPair>
#include <QString>
#include <QStringList>

#include <memory>

// Walks an XML text tag by tag, turning each tag name into a small integer key through a
// process-wide table so that record readers can dispatch on numbers. Not a general XML parser:
// it reads what MGXmlEncoder writes, and survives anything else without crashing.
class MGXmlDecoder
{
public:
    using KeyTable = QHash<QString, quint32>;

    // The key reported for a processing instruction after the declaration.
    static constexpr quint32 ProcessingInstructionKey = 55555;

    // initWithFile:error: — nullptr on failure; *error gets the file system's reason, or
    // "I don't understand the file format" when the text was read but refused.
    static std::unique_ptr<MGXmlDecoder> fromFile(const QString &path, QString *error = nullptr);
    // initWithStringOrData: for data — undecodable UTF-8 gives nullptr.
    static std::unique_ptr<MGXmlDecoder> fromData(const QByteArray &utf8);
    // initWithString: — nullptr for empty text or text that does not begin with "<?xml"
    // (after leading comments).
    static std::unique_ptr<MGXmlDecoder> fromString(const QString &text);

    // Reads past leading comments and the declaration. A text that fromString would refuse gives
    // a decoder that is already done, with its error set.
    explicit MGXmlDecoder(const QString &text);

    bool getNextTag();
    bool isDone() const;
    void forceDone();

    quint32 key() const { return m_key; }
    const QString &xmlTag() const { return m_xmlTag; }
    bool startTag() const { return m_startTag; }
    bool endTag() const { return m_endTag; }
    qint64 level() const { return m_level; }
    const QString &value() const { return m_value; }
    // The value read as a signed 64-bit number the way a C library reads it: leading white
    // space, an optional sign, then digits up to the first non-digit; 0 for text; clamped on
    // overflow.
    qint64 integerValue() const;
    qint64 longValue() const { return integerValue(); }

    QHash<QString, QString> attributes() const;
    const QList<QPair<QString, QString>> &orderedAttributes() const { return m_orderedAttributes; }
    bool tagHasAttributes() const { return !m_orderedAttributes.isEmpty(); }
    qint64 integerAttributeForTag(const QString &name) const; // 0 when absent
    QString stringAttributeForTag(const QString &name) const; // null when absent

    const QString &error() const { return m_error; }
    void setError(const QString &error); // the first error stays

    void setAllowNumericTags(bool allow) { m_allowNumericTags = allow; }
    // White space around an attribute's "=".
    void setAllowSpaceInAttr(bool allow) { m_allowSpaceInAttr = allow; }
    // A table of this decoder's own, used instead of the process-wide one.
    void setOwnKeyTable(std::shared_ptr<const KeyTable> table) { m_ownKeys = std::move(table); }

    qint64 decodeValueFromValues(const QStringList &values) const;
    qint64 decodeAttribute(const QString &name, const QStringList &values) const;
    static qint64 decodeValue(const QString &value, const QStringList &values); // -1 when absent

    static void setKeyDecoder(std::shared_ptr<KeyTable> table);
    static std::shared_ptr<KeyTable> keyDecoder();
    static void addDecoderKey(quint32 key, const QString &tag);
    static QString decodeEscapes(const QString &string);

private:
    bool readPrologue();
    bool skipToNextTag();
    bool readTag();
    bool readEndTag();
    bool readProcessingInstruction();
    bool readStartTag();
    bool readTextContent(qsizetype from);
    qsizetype scanName(qsizetype from, bool allowDigitStart) const;
    qsizetype skipSpace(qsizetype from) const;
    bool fail(qsizetype offset);
    void clearTag();
    quint32 keyForName(const QString &name) const;

    QString m_text;
    qsizetype m_position = 0;
    quint32 m_key = 0;
    QString m_xmlTag;
    bool m_startTag = false;
    bool m_endTag = false;
    qint64 m_level = 0;
    QString m_value;
    QList<QPair<QString, QString>> m_orderedAttributes;
    QString m_error;
    bool m_done = false;
    bool m_accepted = false;
    bool m_allowNumericTags = false;
    bool m_allowSpaceInAttr = false;
    std::shared_ptr<const KeyTable> m_ownKeys;
};
