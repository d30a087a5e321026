#pragma once

#include <QByteArray>
#include <QString>

#include <functional>

class GRFileOps;
class MGXmlDecoder;

// The database changed since the last save (the preferences keep a flag of their own).
extern bool g_dirty;
// Full path of "Groceries.xml"; set once at start-up, SaveGroceries writes there.
extern QString g_databasePath;

// The folder "Marlowick" in the user's data location; empty when the platform reports none.
QString DatabaseFolder();
// "Groceries~.xml" beside the database path.
QString DatabaseBackupPath(const QString &databasePath);

// Appends the file's stores, categories and items to the live lists and sets the database-held
// preferences. False when the file can't be opened, its root is not "groceries", or its version
// is newer than 1 (which also shows the compatibility alert).
bool ReadModernDatabase(const QString &path);
// The same reading from a decoder standing before the root tag, or from raw file bytes; the
// grocery key table is made current first.
bool ReadModernDatabase(MGXmlDecoder &decoder);
bool ReadModernDatabaseData(const QByteArray &bytes);
// The silent check used at start-up: true when the file opens, its root is "groceries" with a
// version of at most 1 and every tag reads without error. Touches neither lists nor preferences.
bool IsReadableDatabase(const QString &path);

// The whole document of the live database, exactly the text a save writes.
QString GroceriesXml();
// Writes GroceriesXml() to g_databasePath, keeping the previous version as "Groceries~.xml".
// On success clears g_dirty and the preferences' dirty flag and posts "mwgroceries.saved".
bool SaveGroceries();

// The file-system operations SaveGroceries goes through; nullptr restores the real ones. The
// caller keeps ownership.
void SetDatabaseFileOps(GRFileOps *ops);

// Template numbers answered by the template dialog.
enum GRTemplateOption
{
    GRTemplateNone = 0,
    GRTemplateOmnivore = 1,
    GRTemplateVegetarian = 2,
    GRTemplateVegan = 3,
    GRTemplateCancel = 4,
    GRTemplateRestore = 5,
};

// The resource path of templates 1 to 3, empty for any other number.
QString TemplateResourcePath(int option);
// One store "Grocery Store" and one category "Groceries", appended to the lists.
void CreateMinimalDatabase();

enum class GROpenResult
{
    Loaded,       // the database file was read; not dirty
    Created,      // made from a template, the minimal database or the backup; dirty
    Quit,         // the template dialog was cancelled
    StartupFailed // no data folder; the alert was shown
};

// The start-up sequence: find the folder, read "Groceries.xml", otherwise ask selectTemplate
// (told whether the readable backup can be offered) and build the database from the answer.
GROpenResult OpenGroceryDatabase(const std::function<int(bool offerRestore)> &selectTemplate);
