#pragma once

#include "GRPrintSettings.h"

#include <QFont>
#include <QList>
#include <QObject>
#include <QString>

// Settings keys, spelled as stored.
inline constexpr char GRPrefDisplayFontKey[] = "mwgroceries.displayFont";
inline constexpr char GRPrefPrintFontKey[] = "com.marlowick.groceries.font";
inline constexpr char GRPrefPrintInfoKey[] = "com.marlowick.groceries.print";
inline constexpr char GRPrefPrintScopeKey[] = "com.marlowick.groceries.printNeeded";
inline constexpr char GRPrefIgnorePageStartsKey[] = "com.marlowick.groceries.ignorePageStarts";
inline constexpr char GRPrefShowKeysKey[] = "mwgroceries.showKeys";
inline constexpr char GRPrefConfirmDeleteKey[] = "com.marlowick.groceries.confirm";
// The e-mail target really lives under this name; it is not the delete confirmation.
inline constexpr char GRPrefEmailTargetKey[] = "mwgroceries.confirm";
inline constexpr char GRPrefKeyNamesKey[] = "mwgroceries.keys";
inline constexpr char GRPrefPrintHeaderAndFooterKey[] = "NSPrintHeaderAndFooter";

// The general system font at 12 points.
QFont DefaultUserFont();
// The font stored under key, or DefaultUserFont() when the key is absent or unreadable.
QFont LoadFontFromPrefs(const QString &key);

class GRGroceryDatabase;

// Every user setting, read from the settings at creation and written back by savePreferences();
// the column count, aisle order and category order travel in the database (GRGroceryDatabase)
// instead, and dirty tells that one of those changed since the last save.
class GRPrefController : public QObject
{
    Q_OBJECT

public:
    static GRPrefController &sharedInstance();
    // Read-only use (the command line): nothing is ever written to the settings. Set it before
    // the first instance is made.
    static void setReadOnly(bool readOnly);

    // Reads the settings; tests make their own instances, the application uses sharedInstance().
    explicit GRPrefController(QObject *parent = nullptr);

    void savePreferences();

    const QFont &printFont() const { return m_printFont; }
    void setPrintFont(const QFont &font) { m_printFont = font; }
    const QFont &displayFont() const { return m_displayFont; }
    void setDisplayFont(const QFont &font) { m_displayFont = font; }
    GRPrintSettings &printInfo() { return m_printInfo; }
    const QString &printStoreGuid() const { return m_printStoreGuid; }
    void setPrintStoreGuid(const QString &guid) { m_printStoreGuid = guid; }
    const QString &emailTarget() const { return m_emailTarget; }
    void setEmailTarget(const QString &target) { m_emailTarget = target; }
    qint32 printScope() const { return m_printScope; }
    void setPrintScope(qint32 scope) { m_printScope = scope; }
    bool ignorePageStarts() const { return m_ignorePageStarts; }
    void setIgnorePageStarts(bool ignore) { m_ignorePageStarts = ignore; }
    bool confirmDelete() const { return m_confirmDelete; }
    void setConfirmDelete(bool confirm) { m_confirmDelete = confirm; }
    bool showKeys() const { return m_showKeys; }
    void setShowKeys(bool show) { m_showKeys = show; }
    bool dirty() const { return m_dirty; }
    void setDirty(bool dirty) { m_dirty = dirty; }
    bool changingDisplay() const { return m_changingDisplay; }
    void setChangingDisplay(bool changing) { m_changingDisplay = changing; }

    // Brings the database's category order up to date (on "mwgroceries.updateCats") and tells
    // the preferences window.
    void updateCategories(GRGroceryDatabase &database);
    // Back to automatic category order; the database counts as changed.
    void resetOrder(GRGroceryDatabase &database);

signals:
    void categoryTableChanged();
    void markWindowEdited();

private:
    QFont m_printFont;
    QFont m_displayFont;
    GRPrintSettings m_printInfo;
    QString m_printStoreGuid;
    QString m_emailTarget;
    qint32 m_printScope = 0;
    bool m_ignorePageStarts = false;
    bool m_confirmDelete = true;
    bool m_showKeys = true;
    bool m_dirty = false;
    bool m_changingDisplay = false;
};
