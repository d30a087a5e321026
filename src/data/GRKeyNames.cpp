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

QStringList CustomKeyNamesAfterOK(const QStringList &custom, const QStringList &edited)
{
    if (custom.size() != g_defaultKeyNames.size())
        return edited;
    return custom == edited ? QStringList() : edited;
}

QStringList g_keyStrings;

void BuildKeyStrings()
{
    QStringList strings;
    for (qsizetype i = 0; i < keyCharacters().size(); ++i)
        strings.append(keyCharacters().at(i) + QLatin1Char('\t') + KeyNameAt(i));
    g_keyStrings = strings;
}

bool ContainsKeyMark(const QString &text)
{
    for (const QChar c : keyCharacters()) {
        if (text.contains(c))
            return true;
    }
    return false;
}
