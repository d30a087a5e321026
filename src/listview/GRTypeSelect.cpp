#include "GRTypeSelect.h"

#include "GRItem.h"

#include <QDateTime>

GRTypeSelect::GRTypeSelect() : m_clock([] { return double(QDateTime::currentMSecsSinceEpoch()) / 1000.0; }) {}

GRTypeSelect::Outcome GRTypeSelect::insertText(const QString &text, const QList<GRItemPtr> &items,
                                               quint64 selected)
{
    if (items.isEmpty() || text.isEmpty())
        return {};
    const double now = m_clock();
    if (now - m_lastCharacterTime > Pause && !m_typedString.isEmpty()) {
        m_typedString.clear();
        m_lastCharacterTime = now;
    }
    if (m_typedString.isEmpty() && text == QLatin1String(" "))
        return {Outcome::Toggle, selected};

    m_typedString += text.toLower();
    for (qsizetype i = 0; i < items.size(); ++i) {
        if (!items[i]->name().toLower().startsWith(m_typedString))
            continue;
        if (quint64(i) == selected)
            return {};
        return {Outcome::Select, quint64(i)};
    }
    return {};
}
