#include "MGDragPasteboard.h"

std::optional<qint64> MGDragPasteboard::integerFromData(const QByteArray &text)
{
    bool ok = false;
    const qint64 value = QString::fromUtf8(text).trimmed().toLongLong(&ok);
    if (!ok)
        return std::nullopt;
    return value;
}

bool MGDragPasteboard::setData(const QByteArray &data, const QString &type)
{
    setValue(data, type);
    return true;
}

bool MGDragPasteboard::setString(const QString &string, const QString &type)
{
    setValue(string, type);
    return true;
}

bool MGDragPasteboard::setPropertyList(const QVariant &propertyList, const QString &type)
{
    setValue(propertyList, type);
    return true;
}

void MGDragPasteboard::setValue(const QVariant &value, const QString &type)
{
    m_types.append({value, type});
    ++m_changeCount;
}

QVariant MGDragPasteboard::valueForType(const QString &type) const
{
    for (auto entry = m_types.crbegin(); entry != m_types.crend(); ++entry) {
        if (entry->type == type)
            return entry->data;
    }
    return {};
}

QString MGDragPasteboard::stringForType(const QString &type) const
{
    const QVariant value = valueForType(type);
    return value.typeId() == QMetaType::QString ? value.toString() : QString();
}

QByteArray MGDragPasteboard::dataForType(const QString &type) const
{
    const QVariant value = valueForType(type);
    return value.typeId() == QMetaType::QByteArray ? value.toByteArray() : QByteArray();
}

QStringList MGDragPasteboard::writableTypes() const
{
    QStringList types;
    for (const Entry &entry : m_types)
        types << entry.type;
    return types;
}

QStringList MGDragPasteboard::formats() const
{
    QStringList types = writableTypes();
    types.removeDuplicates();
    return types;
}

bool MGDragPasteboard::hasFormat(const QString &mimeType) const
{
    return writableTypes().contains(mimeType);
}

QVariant MGDragPasteboard::retrieveData(const QString &mimeType, QMetaType type) const
{
    const QVariant value = valueForType(mimeType);
    if (value.typeId() == QMetaType::QString && type.id() == QMetaType::QByteArray)
        return value.toString().toUtf8();
    return value;
}
