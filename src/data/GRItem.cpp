#include "GRItem.h"

#include "GRCategory.h"
#include "GRGroceryDatabase.h"
#include "GRRecordPositions.h"
#include "GRStore.h"
#include "GRTagKeys.h"
#include "MGXmlDecoder.h"
#include "MGXmlEncoder.h"

namespace {

// A file position into a list: past the end or negative picks the first entry, and an
// empty list gives null for the database reader to deal with.
template <typename T> std::shared_ptr<T> entryAt(const QList<std::shared_ptr<T>> &list, qint64 index)
{
    if (list.isEmpty())
        return nullptr;
    if (index < 0 || index >= list.size())
        index = 0;
    return list.at(qsizetype(index));
}

} // namespace

GRItemPtr GRItem::fromXml(MGXmlDecoder &decoder, const GRGroceryDatabase &database)
{
    GRItemPtr item = create();
    const qint64 level = decoder.level();
    while (decoder.getNextTag() && decoder.level() >= level) {
        switch (decoder.key()) {
        case GRTagName:
            item->setName(decoder.value());
            break;
        case GRTagCount:
            item->setNeedCount(quint64(decoder.integerValue()));
            break;
        case GRTagNeed:
            item->setNeeded(quint8(decoder.integerValue()) != 0);
            break;
        case GRTagStore:
            item->setStore(entryAt(database.stores(), decoder.integerValue()));
            break;
        case GRTagCategory:
            item->setCategory(entryAt(database.categories(), decoder.integerValue()));
            break;
        case GRTagAisle: // also every tag that is not registered at all
            item->setAisle(decoder.integerValue());
            break;
        default:
            break;
        }
    }
    return item;
}

void GRItem::archiveToXml(MGXmlEncoder &encoder, const GRRecordPositions &positions) const
{
    encoder.openTag(QStringLiteral("item"));
    encoder.addTag(QStringLiteral("name"), m_name);
    encoder.addTag(QStringLiteral("category"), positions.categoryIndex(category().get()));
    encoder.addTag(QStringLiteral("store"), positions.storeIndex(m_store.get()));
    if (m_aisle != 0)
        encoder.addTag(QStringLiteral("aisle"), m_aisle);
    if (m_needed)
        encoder.addTag(QStringLiteral("need"), 1);
    if (m_needCount >= 2)
        encoder.addTag(QStringLiteral("count"), qint64(m_needCount));
    encoder.closeTag(QStringLiteral("item"));
}

GRItemPtr GRItem::copy() const
{
    return std::make_shared<GRItem>(*this);
}

QString GRItem::displayName() const
{
    if (m_needed && m_needCount > 1)
        return QStringLiteral("(%1) %2").arg(QString::number(m_needCount), m_name);
    return m_name;
}
