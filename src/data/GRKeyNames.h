#pragma once

#include <QString>
#include <QStringList>

// The six key marks, in key order (one UTF-16 unit each).
const QString &keyCharacters();

extern const QStringList g_defaultKeyNames;
// The user's names for the keys: empty (the defaults apply) or exactly six entries.
extern QStringList g_customKeyNames;

// The name in use for key index (0-5): the custom name when there are exactly six custom names.
QString KeyNameAt(qsizetype index);

// What the user's names become when the keys dialog's OK is pressed with edited: the edited
// names, except that OK on names that were already custom and are unchanged brings back the
// defaults (an empty list). So OK twice without changes resets the names.
QStringList CustomKeyNamesAfterOK(const QStringList &custom, const QStringList &edited);

// The six legend lines, each "<key character>\t<name in use>"; rebuilt by BuildKeyStrings().
extern QStringList g_keyStrings;
void BuildKeyStrings();
// True when text holds any of the six key marks.
bool ContainsKeyMark(const QString &text);
