#include "GRCleanName.h"

namespace {

bool needsCleaning(QChar c)
{
    const char16_t u = c.unicode();
    return u < 0x20 || (u >= 0x7F && u <= 0x9F) || c.isSurrogate();
}

} // namespace

QString GRCleanName(const QString &name)
{
    const qsizetype size = name.size();
    bool clean = size == 0 || (!name.front().isSpace() && !name.back().isSpace());
    for (qsizetype i = 0; clean && i < size; ++i)
        clean = !needsCleaning(name[i]);
    if (clean)
        return name;

    QString result = name;
    for (qsizetype i = 0; i < size; ++i) {
        const QChar c = result[i];
        if (c.isHighSurrogate() && i + 1 < size && result[i + 1].isLowSurrogate())
            ++i;
        else if (c.isSurrogate())
            result[i] = QChar::ReplacementCharacter;
        else if (needsCleaning(c))
            result[i] = u' ';
    }
    return result.trimmed();
}
