#pragma once

#include "GRCleanName.h"
#include "GRTypes.h"

#include <QString>

class GRGroceryDatabase;
class GRRecordPositions;
class MGXmlDecoder;
class MGXmlEncoder;

class GRItem
{
public:
    GRItem() = default;

    static GRItemPtr create() { return std::make_shared<GRItem>(); }
    // Reads the item's children; store and category positions resolve against the database's
    // lists (an index past the end picks the first entry). The item is not added to its category.
    static GRItemPtr fromXml(MGXmlDecoder &decoder, const GRGroceryDatabase &database);
    // Writes the positions of the item's category and store that positions gives.
    void archiveToXml(MGXmlEncoder &encoder, const GRRecordPositions &positions) const;
    GRItemPtr copy() const; // same category and store references

    // "(3) Apples" when needed with a count above 1, otherwise the name.
    QString displayName() const;

    const QString &name() const { return m_name; }
    // Cleaned, whichever way the name comes in: file, pasteboard, sheet or dialog.
    void setName(const QString &name) { m_name = GRCleanName(name); }
    GRCategoryPtr category() const { return m_category.lock(); }
    void setCategory(const GRCategoryPtr &category) { m_category = category; }
    const GRStorePtr &store() const { return m_store; }
    void setStore(const GRStorePtr &store) { m_store = store; }
    qint64 aisle() const { return m_aisle; }
    void setAisle(qint64 aisle) { m_aisle = aisle; }
    quint64 needCount() const { return m_needCount; }
    void setNeedCount(quint64 needCount) { m_needCount = needCount; }
    bool isNeeded() const { return m_needed; }
    void setNeeded(bool needed) { m_needed = needed; }

private:
    QString m_name;
    std::weak_ptr<GRCategory> m_category;
    GRStorePtr m_store;
    qint64 m_aisle = 0;
    quint64 m_needCount = 0;
    bool m_needed = false;
};
