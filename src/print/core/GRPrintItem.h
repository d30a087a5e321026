#pragma once

#include <QPointF>
#include <QString>

// One printed line: a grocery, a heading, a key legend line or an empty spacer, with its place on
// its page once the pages are laid out.
class GRPrintItem
{
public:
    enum class Type : qint32
    {
        Spacer = 0, // pushes a group heading to the top of the next column
        GroupHeading = 1,
        Grocery = 2,
        KeyLegend = 3,
        StoreHeading = 4,
    };

    GRPrintItem() = default;
    GRPrintItem(Type type, const QString &name, quint64 storeIndex) : m_name(name), m_storeIndex(storeIndex), m_type(type) {}

    const QString &name() const { return m_name; }
    void setName(const QString &name) { m_name = name; }
    // What the line sorts by: the plain item name when the printed name carries a count.
    const QString &sortName() const { return m_sortName.isNull() ? m_name : m_sortName; }
    void setSortName(const QString &sortName) { m_sortName = sortName; }
    quint64 storeIndex() const { return m_storeIndex; }
    void setStoreIndex(quint64 storeIndex) { m_storeIndex = storeIndex; }
    quint64 categoryIndex() const { return m_categoryIndex; }
    void setCategoryIndex(quint64 categoryIndex) { m_categoryIndex = categoryIndex; }
    qint64 aisle() const { return m_aisle; }
    void setAisle(qint64 aisle) { m_aisle = aisle; }
    Type type() const { return m_type; }
    void setType(Type type) { m_type = type; }
    bool isNeeded() const { return m_needed; }
    void setNeeded(bool needed) { m_needed = needed; }
    QPointF position() const { return m_position; }
    void setPosition(QPointF position) { m_position = position; }

private:
    QString m_name;
    QString m_sortName;
    quint64 m_storeIndex = 0;
    quint64 m_categoryIndex = 0;
    qint64 m_aisle = 0;
    Type m_type = Type::Grocery;
    bool m_needed = false;
    QPointF m_position;
};
