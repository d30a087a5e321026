#pragma once

#include "GRGroceryDatabase.h"
#include "GRSnapshotUndo.h"
#include "GRTypes.h"
#include "GRUndoKinds.h"

#include <QList>
#include <QObject>
#include <QPointer>
#include <QString>

#include <functional>
#include <memory>

class GRDatabaseLock;
class GRPreferencesWindow;
class GRWindowController;
class QAction;

// The application's single controller and the one owner of the grocery list: start-up, the
// database, the list on show and its undo, saving, page set-up, store installation, key strings
// and the quit question. Everything below it is handed what it works on.
class GRAppController : public QObject
{
    Q_OBJECT

public:
    static GRAppController &sharedInstance();

    GRAppController(const GRAppController &) = delete;
    GRAppController &operator=(const GRAppController &) = delete;

    // The start-up sequence; false when the application must quit (no data folder, or the
    // template dialog was cancelled). Creates and shows the main window.
    bool applicationDidFinishLaunching();
    // Asks the main window whether it may close (the save question); true to quit now.
    bool applicationShouldTerminate();
    // Writes the preferences; connected to QCoreApplication::aboutToQuit.
    void applicationWillTerminate();
    // The desktop session is about to end: unsaved changes get the quit question when the session
    // lets us ask; false asks the session to cancel the logout.
    bool commitData(bool allowsInteraction);

    GRGroceryDatabase &database() { return m_database; }
    QList<GRItemPtr> &displayItems() { return m_displayItems; }
    GRWindowController *windowController() const;
    // Makes window the main window: gives it the undo, its application commands and their
    // validation, and the signals below.
    void attachWindow(GRWindowController *window);

    // The selected row of the groups table in category / store mode, otherwise -1.
    qint64 currentCategory() const;
    qint64 currentStore() const;

    bool saveDocument();
    // The page set-up dialog over the preferences' page layout; OK writes the layout back.
    void doPageLayout();
    void showPreferences();
    // Asks for a folder (a sheet on the main window) and writes "Groceries.rtf" into it.
    void exportList();
    // Writes the export into folder; on failure logs it and tells the user. False then.
    bool exportPanelEnded(const QString &folder);
    // Opens a new message of the needed items in the user's mail program.
    void emailList();
    // The next export goes to folder without asking (tests).
    void setNextExportFolder(const QString &folder) { m_nextExportFolder = folder; }
    // Asks to quit, through applicationShouldTerminate.
    void terminate();
    void showGroceriesHelp();
    static QString aboutString();

    // Replaces the store list with undo: sorts it (the first store stays first, the others by
    // name), re-points every item by GUID, and sends the deleted stores' items to the first store.
    bool installNewStores(const QList<GRStorePtr> &newStores, GRUndoDescriptor undoDescriptor);
    // Rebuilds the six legend lines.
    void setKeyStrings();

    // Enables the application-level actions (named by their objectName).
    bool validateMenuItem(const QAction *action) const;
    void validateMenus();

    // A window-modal dialog is open on the main window.
    bool isSheetUp() const;
    static bool isModalUp();

    // Start-up asks this instead of the template dialog (tests); null restores the dialog.
    void setTemplateChooser(std::function<int(bool offerRestore)> chooser);

signals:
    void saved();
    void keyStringsChanged();

private:
    GRAppController();
    ~GRAppController() override;

    GRGroceryDatabase m_database;
    QList<GRItemPtr> m_displayItems;
    GRSnapshotUndo m_undo;
    QPointer<GRWindowController> m_windowController;
    QPointer<GRPreferencesWindow> m_preferences;
    std::function<int(bool)> m_templateChooser;
    QString m_nextExportFolder;
    std::unique_ptr<GRDatabaseLock> m_lock; // held from start-up to quitting
    bool m_launched = false;
};
