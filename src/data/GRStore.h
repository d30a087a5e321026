#pragma once

#include "GRCleanName.h"
#include "GRTypes.h"
#include "Kolor.h"

#include <QString>

class MGXmlDecoder;
class MGXmlEncoder;

class GRStore
{
public:
    GRStore(); // a fresh GUID and the default colour

    static GRStorePtr create() { return std::make_shared<GRStore>(); }
    // initWithXml: — the decoder stands on the "store" start tag; never fails.
    static GRStorePtr fromXml(MGXmlDecoder &decoder);
    void archiveToXml(MGXmlEncoder &encoder) const;
    GRStorePtr copy() const; // keeps the GUID

    const QString &name() const { return m_name; }
    // Cleaned, whichever way the name comes in: file, pasteboard, sheet or dialog.
    void setName(const QString &name) { m_name = GRCleanName(name); }
    const QString &guid() const { return m_guid; }
    void setGuid(const QString &guid) { m_guid = guid; }
    Kolor kolor() const { return m_kolor; }
    void setKolor(Kolor kolor) { m_kolor = kolor; }
    qint32 printOption() const { return m_printOption; }
    void setPrintOption(qint32 printOption) { m_printOption = printOption; }
    bool topOfPage() const { return m_topOfPage; }
    void setTopOfPage(bool topOfPage) { m_topOfPage = topOfPage; }

private:
    QString m_name;
    QString m_guid;
    Kolor m_kolor = Kolor::defaultKolor();
    qint32 m_printOption = 0;
    bool m_topOfPage = false;
};
