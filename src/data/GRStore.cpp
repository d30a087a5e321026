#include "GRStore.h"

#include "GRGuid.h"
#include "GRTagKeys.h"
#include "MGXmlDecoder.h"
#include "MGXmlEncoder.h"

GRStore::GRStore() : m_guid(GRNewGuid()) {}

GRStorePtr GRStore::fromXml(MGXmlDecoder &decoder)
{
    GRStorePtr store = create();
    const qint64 level = decoder.level();
    while (decoder.getNextTag() && decoder.level() >= level) {
        switch (decoder.key()) {
        case GRTagColor:
            store->setKolor(KolorFromString(decoder.value()));
            break;
        case GRTagName:
            store->setName(decoder.value());
            break;
        case GRTagPrint:
            store->setPrintOption(qint32(decoder.integerValue()));
            break;
        case GRTagTop:
            store->setTopOfPage(quint8(decoder.integerValue()) != 0);
            break;
        default:
            break;
        }
    }
    return store;
}

void GRStore::archiveToXml(MGXmlEncoder &encoder) const
{
    encoder.openTag(QStringLiteral("store"));
    encoder.addTag(QStringLiteral("name"), m_name);
    encoder.addTag(QStringLiteral("print"), int(m_printOption));
    if (m_kolor.word() != Kolor::DefaultWord)
        encoder.addTag(QStringLiteral("color"), KolorToString(m_kolor));
    if (m_topOfPage)
        encoder.addTag(QStringLiteral("top"), 1);
    encoder.closeTag(QStringLiteral("store"));
}

GRStorePtr GRStore::copy() const
{
    return std::make_shared<GRStore>(*this);
}
