#include "GRCategory.h"

#include "GRGuid.h"
#include "GRItem.h"
#include "GRTagKeys.h"
#include "MGXmlDecoder.h"
#include "MGXmlEncoder.h"

GRCategory::GRCategory() : m_guid(GRNewGuid()) {}

GRCategoryPtr GRCategory::fromXml(MGXmlDecoder &decoder)
{
    GRCategoryPtr category = create();
    const qint64 level = decoder.level();
    while (decoder.getNextTag() && decoder.level() >= level) {
        if (decoder.key() == GRTagName)
            category->setName(decoder.value());
    }
    return category;
}

void GRCategory::archiveToXml(MGXmlEncoder &encoder) const
{
    encoder.openTag(QStringLiteral("category"));
    encoder.addTag(QStringLiteral("name"), m_name);
    encoder.closeTag(QStringLiteral("category"));
}

GRCategoryPtr GRCategory::copy() const
{
    GRCategoryPtr category = create();
    category->m_guid = m_guid;
    category->m_name = m_name;
    category->m_items.reserve(m_items.size());
    for (const GRItemPtr &item : m_items) {
        if (!item)
            continue;
        GRItemPtr itemCopy = item->copy();
        itemCopy->setCategory(category);
        category->m_items.append(itemCopy);
    }
    return category;
}
