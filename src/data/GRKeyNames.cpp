#include "GRKeyNames.h"

const QString &keyCharacters()
{
    static const QString characters = QStringLiteral("\u301C\u25C9\u263C\u2740\u2744\u25D2");
    return characters;
}

const QStringList g_defaultKeyNames = {QStringLiteral("Beverage"), QStringLiteral("Canned"),
                                       QStringLiteral("Dry"),      QStringLiteral("Fresh"),
                                       QStringLiteral("Frozen"),   QStringLiteral("Organic")};

QStringList g_customKeyNames;

QString KeyNameAt(qsizetype index)
{
    if (index < 0 || index >= g_defaultKeyNames.size())
        return QString();
    if (g_customKeyNames.size() == g_defaultKeyNames.size())
        return g_customKeyNames.at(index);
    return g_defaultKeyNames.at(index);
}
