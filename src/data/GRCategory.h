#pragma once

#include "GRCleanName.h"
#include "GRTypes.h"

#include <QList>
#include <QString>

class MGXmlDecoder;
class MGXmlEncoder;

class GRCategory : public std::enable_shared_from_this<GRCategory>
{
public:
    GRCategory(); // a fresh GUID and no items

    static GRCategoryPtr create() { return std::make_shared<GRCategory>(); }
    static GRCategoryPtr fromXml(MGXmlDecoder &decoder);
    void archiveToXml(MGXmlEncoder &encoder) const;
    // Same GUID and name; every item copied in order, each copy pointing at the new category.
    GRCategoryPtr copy() const;

    const QString &name() const { return m_name; }
    // Cleaned, whichever way the name comes in: file, pasteboard, sheet or dialog.
    void setName(const QString &name) { m_name = GRCleanName(name); }
    const QString &guid() const { return m_guid; }
    void setGuid(const QString &guid) { m_guid = guid; }
    QList<GRItemPtr> &items() { return m_items; }
    const QList<GRItemPtr> &items() const { return m_items; }

private:
    QString m_name;
    QString m_guid;
    QList<GRItemPtr> m_items;
};
