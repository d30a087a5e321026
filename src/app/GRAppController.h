#pragma once

#include "GRTypes.h"

#include <QList>
#include <QObject>
#include <QPointer>
#include <QString>

class GRWindowController;
class QAction;

// The application's single controller: start-up, the shared lists, saving, page set-up, store
// installation, key strings and the quit question.
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

    GRWindowController *windowController() const;
    // The main window registers itself when it is made.
    void setWindowController(GRWindowController *windowController);

    QList<GRCategoryPtr> &categories();
    // Swaps the contents of the live list; the list object stays the same.
    void setCategories(QList<GRCategoryPtr> &categories);
    QList<GRStorePtr> &stores();
    void setStores(QList<GRStorePtr> &stores);
    QList<GRItemPtr> &displayItems();

    // The selected row of the groups table in category / store mode, otherwise -1.
    qint64 currentCategory() const;
    qint64 currentStore() const;

    bool saveDocument();
    // The page set-up dialog over the preferences' page layout; OK writes the layout back.
    void doPageLayout();
    void showPreferences();
    // Asks to quit, through applicationShouldTerminate.
    void terminate();
    void showGroceriesHelp();
    static QString aboutString();

    // Replaces the store list with undo: sorts it (the first store stays first, the others by
    // name), re-points every item by GUID, and sends the deleted stores' items to the first store.
    bool installNewStores(QList<GRStorePtr> newStores, quint32 undoDescriptor);
    // Rebuilds the six legend lines and refreshes the legend.
    void setKeyStrings();

    // Enables the application-level actions (named by their objectName).
    bool validateMenuItem(const QAction *action) const;

    // A window-modal dialog is open on the main window.
    bool isSheetUp() const;
    static bool isModalUp();

private:
    GRAppController();

    QPointer<GRWindowController> m_windowController;
    bool m_launched = false;
};
