#include "GRAppController.h"

#include "GRDatabaseFile.h"
#include "GRDatabaseLock.h"
#include "GRGroceryQueries.h"
#include "GRGroupsController.h"
#include "GRKeyNames.h"
#include "GRListExport.h"
#include "GRNames.h"
#include "GRPrefController.h"
#include "GRPreferencesWindow.h"
#include "GRRedoItems.h"
#include "GRTagKeys.h"
#include "GRTemplateDialog.h"
#include "GRWindowController.h"
#include "GRWindowMenus.h"
#include "MGAlert.h"
#include "MGLog.h"
#include "MGNotificationCenter.h"
#include "MGUndoManager.h"
#include "MGXmlDecoder.h"

#include <QAction>
#include <QApplication>
#include <QDesktopServices>
#include <QDialog>
#include <QDir>
#include <QFileDialog>
#include <QPageSetupDialog>
#include <QPrinter>
#include <QSessionManager>
#include <QSettings>
#include <QUrl>

#include <algorithm>
#include <utility>

namespace {

const char FirstRunKey[] = "com.marlowick.groceries.run";

// The application's own commands among the window's actions, and the function each runs.
const std::pair<const char *, void (GRAppController::*)()> Commands[] = {
    {"doPageLayout", &GRAppController::doPageLayout},
    {"terminate", &GRAppController::terminate},
    {"showPreferences", &GRAppController::showPreferences},
    {"showGroceriesHelp", &GRAppController::showGroceriesHelp},
    {"exportList", &GRAppController::exportList},
    {"emailList", &GRAppController::emailList},
};

} // namespace

GRAppController &GRAppController::sharedInstance()
{
    // Never destroyed: the database it owns outlives every window.
    static GRAppController *const instance = new GRAppController;
    return *instance;
}

GRAppController::GRAppController() : m_undo(m_database, m_displayItems)
{
    MGUndoManager::setBeepHandler([] { QApplication::beep(); });
    MGUndoManager::setModalCheck([] { return isModalUp(); });
    MGNotificationCenter::defaultCenter().addObserver(
        GRUpdateCatsNotification, this,
        [this](const QVariantMap &) { GRPrefController::sharedInstance().updateCategories(m_database); });
}

GRAppController::~GRAppController() = default;

void GRAppController::setTemplateChooser(std::function<int(bool)> chooser)
{
    m_templateChooser = std::move(chooser);
}

bool GRAppController::applicationDidFinishLaunching()
{
    if (m_launched)
        return true;
    GRPrefController::sharedInstance(); // the preferences are read before anything else
    m_displayItems.clear();
    setKeyStrings();
    RegisterGroceryTags();

    const auto chooser = m_templateChooser ? m_templateChooser : &GRTemplateDialog::selectTemplate;
    const QString folder = DatabaseFolder();
    if (!folder.isEmpty()) {
        QDir().mkpath(folder);
        m_lock = std::make_unique<GRDatabaseLock>(folder);
        if (!LockDatabaseFolder(*m_lock))
            return false;
    }
    switch (OpenGroceryDatabase(m_database, folder, chooser)) {
    case GROpenResult::Quit:
    case GROpenResult::StartupFailed:
        m_lock.reset();
        return false;
    case GROpenResult::Loaded:
    case GROpenResult::Created:
        break;
    }
    m_launched = true;

    if (!m_windowController)
        attachWindow(new GRWindowController(m_database, m_displayItems));
    GRWindowController *window = m_windowController;
    connect(qApp, &QCoreApplication::aboutToQuit, this, &GRAppController::applicationWillTerminate,
            Qt::UniqueConnection);
    connect(qApp, &QGuiApplication::commitDataRequest, this, [this](QSessionManager &manager) {
        if (!commitData(manager.allowsInteraction()))
            manager.cancel();
        manager.release();
    });

    MGNotificationCenter &center = MGNotificationCenter::defaultCenter();
    center.post(GRReloadCatsNotification, {{GRSelectionKey, 0}});
    center.post(GRUpdateStoresNotification);
    center.post(GRUpdateCatsNotification);
    window->setWindowModified(DatabaseChanged());

    // The help viewer's document engine would make its own tag table current here; an empty one
    // stands in for it, so every later reader of grocery text must make the grocery table current.
    MGXmlDecoder::setKeyDecoder(std::make_shared<MGXmlDecoder::KeyTable>());

    QSettings settings(QStringLiteral("Marlowick"), QStringLiteral("Groceries"));
    if (!settings.value(QLatin1String(FirstRunKey), false).toBool()) {
        window->showMaximized();
        settings.setValue(QLatin1String(FirstRunKey), true);
    } else {
        window->show();
    }
    window->raise();
    window->activateWindow();
    return true;
}

void GRAppController::attachWindow(GRWindowController *window)
{
    m_windowController = window;
    m_undo.setView(window);
    m_undo.install();
    // The window goes before the undo history that may still name it.
    connect(window, &QObject::destroyed, this, [this] { m_undo.setView(nullptr); });
    for (const auto &[name, command] : Commands)
        connect(window->action(QLatin1String(name)), &QAction::triggered, this, command);
    connect(window->action(QStringLiteral("saveDocument")), &QAction::triggered, this,
            &GRAppController::saveDocument);
    connect(window, &GRWindowController::menusValidated, this, &GRAppController::validateMenus);
    connect(this, &GRAppController::saved, window, &GRWindowController::updateEditedMark);
    connect(this, &GRAppController::keyStringsChanged, window, &GRWindowController::refreshLegend);
    window->updateMenus();
}

bool GRAppController::applicationShouldTerminate()
{
    return !m_windowController || m_windowController->windowShouldClose();
}

void GRAppController::applicationWillTerminate()
{
    GRPrefController::sharedInstance().savePreferences();
    delete m_preferences; // a window of its own, not owned by the main window
    m_lock.reset();       // this controller is never destroyed, so the lock file goes here
}

bool GRAppController::commitData(bool allowsInteraction)
{
    if (!DatabaseChanged())
        return true;
    // Without leave to ask, refusing keeps the edits; the session may end us all the same.
    return allowsInteraction && applicationShouldTerminate();
}

GRWindowController *GRAppController::windowController() const
{
    return m_windowController;
}

qint64 GRAppController::currentCategory() const
{
    return m_windowController ? m_windowController->groups()->currentCategory() : -1;
}

qint64 GRAppController::currentStore() const
{
    return m_windowController ? m_windowController->groups()->currentStore() : -1;
}

bool GRAppController::saveDocument()
{
    if (!SaveGroceries(m_database))
        return false;
    emit saved();
    return true;
}

void GRAppController::doPageLayout()
{
    GRPrintSettings &settings = GRPrefController::sharedInstance().printInfo();
    auto *printer = new QPrinter(QPrinter::HighResolution);
    printer->setPageLayout(settings.pageLayout());
    auto *dialog = new QPageSetupDialog(printer, m_windowController);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setWindowModality(m_windowController ? Qt::WindowModal : Qt::ApplicationModal);
    connect(dialog, &QDialog::accepted, this, [printer] {
        GRPrefController::sharedInstance().printInfo().setPageLayout(printer->pageLayout());
    });
    connect(dialog, &QObject::destroyed, this, [printer] { delete printer; });
    dialog->open();
}

void GRAppController::exportList()
{
    if (!m_nextExportFolder.isEmpty()) {
        exportPanelEnded(std::exchange(m_nextExportFolder, QString()));
        return;
    }
    auto *panel = new QFileDialog(m_windowController, tr("Where do you want the export file to go?"));
    panel->setFileMode(QFileDialog::Directory);
    panel->setOption(QFileDialog::ShowDirsOnly);
    panel->setAcceptMode(QFileDialog::AcceptOpen);
    panel->setLabelText(QFileDialog::Accept, tr("Export"));
    panel->setAttribute(Qt::WA_DeleteOnClose);
    panel->setWindowModality(m_windowController ? Qt::WindowModal : Qt::ApplicationModal);
    connect(panel, &QFileDialog::fileSelected, this, &GRAppController::exportPanelEnded);
    panel->open();
}

bool GRAppController::exportPanelEnded(const QString &folder)
{
    if (folder.isEmpty())
        return false;
    QString reason;
    const bool written = GRListExport::exportToFolder(m_database, folder, &reason);
    // The export sorts each category's items; the list on show follows.
    PostRedoItems();
    if (written)
        return true;
    MGLog(QStringLiteral("RTF export failed to %1: %2")
              .arg(QDir(folder).filePath(QLatin1String(GRListExport::FileName)), reason));
    MGAlert::sharedInstance().giveAlertMessage(
        QStringLiteral("Export failed."),
        QStringLiteral("I could not export the grocery list. Please try again to another location."), {});
    return false;
}

void GRAppController::emailList()
{
    if (GRGroceryQueries::neededItems(m_database).isEmpty()) {
        MGAlert::sharedInstance().giveAlertMessage(
            QStringLiteral("No needed items."),
            QStringLiteral("No items are marked as needed, so the email was not sent."), {});
        return;
    }
    const QString link =
        GRListExport::mailtoLink(m_database, GRPrefController::sharedInstance().emailTarget());
    if (link.isEmpty() || QDesktopServices::openUrl(QUrl(link)))
        return;
    MGLog(QStringLiteral("No program opened the e-mail link %1").arg(link));
    MGAlert::sharedInstance().giveAlertMessage(
        QStringLiteral("The e-mail could not be started."),
        QStringLiteral(
            "No mail program answered. Choose a default e-mail program in your desktop's settings, "
            "then try again."),
        {});
}

void GRAppController::showPreferences()
{
    if (!m_preferences) {
        m_preferences = new GRPreferencesWindow(m_database);
        m_preferences->setAttribute(Qt::WA_QuitOnClose, false);
        connect(m_preferences, &GRPreferencesWindow::showKeysChanged, this, [this] {
            if (m_windowController)
                m_windowController->toggleKeys(m_windowController);
        });
    }
    m_preferences->showPreferences();
}

void GRAppController::terminate()
{
    // Closing the main window asks the save question; the last window closing quits.
    if (m_windowController && m_windowController->isVisible())
        m_windowController->close();
    else if (applicationShouldTerminate())
        QCoreApplication::quit();
}

void GRAppController::showGroceriesHelp()
{
    // The help viewer is not built yet.
}

QString GRAppController::aboutString()
{
    return QStringLiteral("Grocery list manager.");
}

bool GRAppController::installNewStores(const QList<GRStorePtr> &newStores, GRUndoDescriptor undoDescriptor)
{
    return m_windowController && m_windowController->groups()->installStores(newStores, undoDescriptor);
}

void GRAppController::setKeyStrings()
{
    BuildKeyStrings();
    emit keyStringsChanged();
}

bool GRAppController::isModalUp()
{
    return QApplication::activeModalWidget() != nullptr;
}

bool GRAppController::isSheetUp() const
{
    if (!m_windowController)
        return false;
    const QList<QDialog *> dialogs = m_windowController->findChildren<QDialog *>();
    return std::any_of(dialogs.begin(), dialogs.end(), [](const QDialog *dialog) {
        return dialog->isVisible() && dialog->windowModality() == Qt::WindowModal;
    });
}

bool GRAppController::validateMenuItem(const QAction *action) const
{
    if (!action)
        return false;
    const QString name = action->objectName();
    const bool modal = isModalUp();
    const bool sheet = isSheetUp();
    // Not built yet: shown, never enabled.
    if (name == QLatin1String("showGroceriesHelp"))
        return false;
    if (name == QLatin1String("showPreferences"))
        return !modal;
    if (name == QLatin1String("saveDocument"))
        return !modal && !sheet && DatabaseChanged();
    if (name == QLatin1String("doPageLayout") || name == QLatin1String("exportList") ||
        name == QLatin1String("emailList"))
        return !modal && !sheet;
    if (name == QLatin1String("terminate"))
        return !sheet;
    return true;
}

void GRAppController::validateMenus()
{
    if (!m_windowController)
        return;
    for (QAction *action : m_windowController->menus()->actions()) {
        if (GRWindowMenus::isAppCommand(action->objectName()))
            action->setEnabled(validateMenuItem(action));
    }
}
