#pragma once

#include "GRTypes.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

class GRGroceryDatabase;

// Shared test set-up: isolated user folders and small fixtures.
class GRTestSupport
{
public:
    // Stores Corner Shop, Bakery Bros, Market; categories Dairy (Milk*, Buttermilk, Cheese), Fruit
    // (Apples*, Bananas), Pantry (Flour); * needed.
    static QByteArray sampleDatabase();
    // "Category: item@store*, ... | ... / stores" (* = needed); an item whose category or store is
    // not right shows "!wrong-category" or "!dead-store".
    static QString dump(const GRGroceryDatabase &database);
    // Turns on QStandardPaths test mode; call before the first QSettings is made.
    static void initEnvironment();
    // A path under the source tree's tests/ folder.
    static QString dataPath(const QString &relative);
    // Clears both dirty flags, the alert service's queued answers and record (and records from
    // now on), and the file-operations seam. Leaves an empty tag table current, as start-up
    // does, so that a reader of grocery text that forgets to make its own table current fails.
    static void resetState();
    // Each alert shown since the last reset as its message, further text and button titles, "|"
    // between them.
    static QStringList alerts();
    static QByteArray readFile(const QString &path);
    // The first item of that name in category order, or null.
    static GRItemPtr item(const GRGroceryDatabase &database, const QString &name);
    // The Edit menu's undo (or redo) title: "Undo" alone when there is nothing to undo.
    static QString undoTitle(bool redo = false);
    // No beeps and no modal window in the way of the undo manager.
    static void quietUndo();
    static bool writeFile(const QString &path, const QByteArray &bytes);
};

// Collects the warning lines written while it lives (MGLog writes warnings).
class GRLogCapture
{
public:
    GRLogCapture();
    ~GRLogCapture();
    GRLogCapture(const GRLogCapture &) = delete;
    GRLogCapture &operator=(const GRLogCapture &) = delete;

    const QStringList &lines() const;
    bool contains(const QString &fragment) const;
    void clear();
};
