#pragma once

#include <QByteArray>
#include <QString>

#include <functional>

class GRDatabaseLock;
class GRDiskStamp;
class GRFileOps;
class GRGroceryDatabase;
class MGXmlDecoder;

// The database changed since the last save (the preferences keep a flag of their own).
extern bool g_dirty;
// The database counts as changed when g_dirty or the preferences' dirty flag is set.
bool DatabaseChanged();
// Full path of "Groceries.xml"; set once at start-up, SaveGroceries writes there.
extern QString g_databasePath;

// The database file as this copy of the program last read or wrote it: SaveGroceries asks before
// replacing a file that another program changed since. Set by OpenGroceryDatabase.
extern GRDiskStamp g_databaseStamp;

// The folder "Marlowick" in the user's data location; empty when the platform reports none.
QString DatabaseFolder();
// "Groceries~.xml" beside the database path.
QString DatabaseBackupPath(const QString &databasePath);
// Where the original of a database that read only in part is kept: "Groceries (damaged).xml"
// beside it, or "Groceries (damaged 2).xml" and so on when that name is taken.
QString DamagedCopyPath(const QString &databasePath);

// What a read that succeeded met on the way: the reader's complaint when the text broke off
// part-way (what came before it was kept), and how many items were read.
struct GRReadReport
{
    QString error;
    qsizetype itemCount = 0;
    bool damaged() const { return !error.isEmpty(); }
};

// Appends the file's stores, categories and items to database and sets its settings. False when
// the file can't be opened, its root is not "groceries", or its version is newer than 1 (which
// also shows the compatibility alert).
bool ReadModernDatabase(const QString &path, GRGroceryDatabase &database, GRReadReport *report = nullptr);
// The same reading from a decoder standing before the root tag, or from raw file bytes; the
// grocery key table is made current first.
bool ReadModernDatabase(MGXmlDecoder &decoder, GRGroceryDatabase &database);
bool ReadModernDatabaseData(const QByteArray &bytes, GRGroceryDatabase &database,
                            GRReadReport *report = nullptr);
// The silent check used at start-up: true when the file opens, its root is "groceries" with a
// version of at most 1 and every tag reads without error.
bool IsReadableDatabase(const QString &path);

// The whole document of the database, exactly the text a save writes.
QString GroceriesXml(const GRGroceryDatabase &database);
// Writes GroceriesXml() to g_databasePath, keeping the previous version as "Groceries~.xml".
// On success clears g_dirty and the preferences' dirty flag and empties the undo history. When
// the file changed on disk since it was read, asks first; a database path that is a symbolic
// link is written through, so the link stays.
bool SaveGroceries(const GRGroceryDatabase &database);

// The file-system operations SaveGroceries goes through; nullptr restores the real ones. The
// caller keeps ownership.
void SetDatabaseFileOps(GRFileOps *ops);

// Takes the data folder's lock for this copy of the program and clears what an interrupted save
// left behind. False, once the user has been told the list is open elsewhere, when another
// running copy holds it; a folder where no lock can be made is used without one.
bool LockDatabaseFolder(GRDatabaseLock &lock);

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
void CreateMinimalDatabase(GRGroceryDatabase &database);

enum class GROpenResult
{
    Loaded,       // the database file was read; dirty only when it read in part
    Created,      // made from a template, the minimal database or the backup; dirty
    Quit,         // the template dialog was cancelled
    StartupFailed // no data folder; the alert was shown
};

// The start-up sequence over the data folder (DatabaseFolder(), empty when there is none): read
// "Groceries.xml", otherwise ask selectTemplate (told whether the readable backup can be offered)
// and build the database from the answer.
GROpenResult OpenGroceryDatabase(GRGroceryDatabase &database, const QString &folder,
                                 const std::function<int(bool offerRestore)> &selectTemplate);
