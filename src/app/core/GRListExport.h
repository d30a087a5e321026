#pragma once

#include <QByteArray>
#include <QString>

class GRGroceryDatabase;

// The whole list as a rich-text file, and the needed items as an e-mail link.
class GRListExport
{
public:
    static constexpr const char *FileName = "Groceries.rtf";

    // Every category's name in bold, each of its items with its store after a tab, then the key
    // legend. Sorts each category's items by name (case-insensitively) in place, as the export
    // has always done: the list shows them so afterwards.
    static QByteArray exportRtf(GRGroceryDatabase &database);
    // Writes the export into folder as "Groceries.rtf", replacing one that is there. False, with
    // the reason in error, when it could not be written.
    static bool exportToFolder(GRGroceryDatabase &database, const QString &folder, QString *error);

    // The body of the e-mail: the needed items' display names, sorted by name (case matters), a
    // name right after the same name left out.
    static QString neededItemsText(const GRGroceryDatabase &database);
    // "mailto:<address>?subject=Grocery%20list&body=...", or without an address "mailto:?...".
    // Empty when nothing is needed or the link would not be a valid URL.
    static QString mailtoLink(const GRGroceryDatabase &database, const QString &address);
};
