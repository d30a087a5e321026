#pragma once

#include <QList>
#include <QMimeData>
#include <QVariant>

#include <optional>

// The private pasteboard of a drag inside the application. It keeps every value written, in
// order: a type written twice answers its latest value and is listed twice.
class MGDragPasteboard : public QMimeData
{
    Q_OBJECT

public:
    struct Entry
    {
        QVariant data;
        QString type;
    };

    MGDragPasteboard() = default;
    static MGDragPasteboard *dragPasteboard() { return new MGDragPasteboard; }
    // The decimal integer that text (UTF-8, as retrieveData gives a string) holds, white space
    // around it allowed; nothing for any other text.
    static std::optional<qint64> integerFromData(const QByteArray &text);

    bool setData(const QByteArray &data, const QString &type);
    bool setString(const QString &string, const QString &type);
    bool setPropertyList(const QVariant &propertyList, const QString &type);
    void setValue(const QVariant &value, const QString &type);

    QVariant valueForType(const QString &type) const;
    // Null unless the latest value of type is a string / a byte array.
    QString stringForType(const QString &type) const;
    QByteArray dataForType(const QString &type) const;
    QVariant propertyListForType(const QString &type) const { return valueForType(type); }

    qint64 changeCount() const { return m_changeCount; }
    // Every entry's type in the order written, repeats included.
    QStringList writableTypes() const;
    const QList<Entry> &entries() const { return m_types; }

    // QMimeData: each type once, and its latest value as bytes (strings in UTF-8).
    QStringList formats() const override;
    bool hasFormat(const QString &mimeType) const override;

protected:
    QVariant retrieveData(const QString &mimeType, QMetaType type) const override;

private:
    QList<Entry> m_types;
    qint64 m_changeCount = 0;
};
