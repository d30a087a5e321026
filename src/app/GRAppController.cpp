#include "GRAppController.h"

#include "GRCategory.h"
#include "GRDatabaseFile.h"
#include "GRItem.h"
#include "GRKeyNames.h"
#include "GRLists.h"
#include "GRPrefController.h"
#include "GRStore.h"
#include "GRTagKeys.h"
#include "GRTemplateDialog.h"
#include "GRWindowController.h"
#include "MGNotificationCenter.h"
#include "MGUndoManager.h"

#include <QAction>
#include <QApplication>
#include <QDialog>
#include <QHash>
#include <QPageSetupDialog>
#include <QPrinter>
#include <QSettings>

#include <algorithm>

namespace {

const char FirstRunKey[] = "com.marlowick.groceries.run";

} // namespace

GRAppController &GRAppController::sharedInstance()
{
    // Never destroyed: the lists it hands out outlive every window.
    static GRAppController *const instance = new GRAppController;
    return *instance;
}

GRAppController::GRAppController()
{
    MGUndoManager::setBeepHandler([] { QApplication::beep(); });
    MGUndoManager::setModalCheck([] { return isModalUp(); });
    MGNotificationCenter::defaultCenter().addObserver(QStringLiteral("mwgroceries.saved"), this,
                                                      [this](const QVariantMap &) {
                                                          MGUndoManager::sharedInstance().clearUndo();
                                                          if (m_windowController)
                                                              m_windowController->updateEditedMark();
                                                      });
}

bool GRAppController::applicationDidFinishLaunching()
{
    if (m_launched)
        return true;
    GRPrefController &prefs = GRPrefController::sharedInstance();
    setKeyStrings();
    RegisterGroceryTags();

    switch (OpenGroceryDatabase(&GRTemplateDialog::selectTemplate)) {
    case GROpenResult::Quit:
    case GROpenResult::StartupFailed:
        return false;
    case GROpenResult::Loaded:
    case GROpenResult::Created:
        break;
    }
    m_launched = true;

    if (!m_windowController)
        new GRWindowController;
    GRWindowController *window = m_windowController;
    connect(qApp, &QCoreApplication::aboutToQuit, this, &GRAppController::applicationWillTerminate,
            Qt::UniqueConnection);

    MGNotificationCenter &center = MGNotificationCenter::defaultCenter();
    center.post(QStringLiteral("mwgroceries.reloadCats"), {{QStringLiteral("selection"), 0}});
    center.post(QStringLiteral("mwgroceries.updateStores"));
    center.post(QStringLiteral("mwgroceries.updateCats"));
    window->setWindowModified(g_dirty || prefs.dirty());

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

bool GRAppController::applicationShouldTerminate()
{
    return !m_windowController || m_windowController->windowShouldClose();
}

void GRAppController::applicationWillTerminate()
{
    GRPrefController::sharedInstance().savePreferences();
}

GRWindowController *GRAppController::windowController() const
{
    return m_windowController;
}

void GRAppController::setWindowController(GRWindowController *windowController)
{
    m_windowController = windowController;
}

QList<GRCategoryPtr> &GRAppController::categories()
{
    return GRLists::shared().categories();
}

void GRAppController::setCategories(QList<GRCategoryPtr> &categories)
{
    GRLists::shared().categories().swap(categories);
}

QList<GRStorePtr> &GRAppController::stores()
{
    return GRLists::shared().stores();
}

void GRAppController::setStores(QList<GRStorePtr> &stores)
{
    GRLists::shared().stores().swap(stores);
}

QList<GRItemPtr> &GRAppController::displayItems()
{
    return GRLists::shared().displayItems();
}

qint64 GRAppController::currentCategory() const
{
    return m_windowController ? m_windowController->currentCategory() : -1;
}

qint64 GRAppController::currentStore() const
{
    return m_windowController ? m_windowController->currentStore() : -1;
}

bool GRAppController::saveDocument()
{
    return SaveGroceries();
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

void GRAppController::showPreferences()
{
    // The preferences window is not built yet.
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

bool GRAppController::installNewStores(QList<GRStorePtr> newStores, quint32 undoDescriptor)
{
    if (newStores.isEmpty() || !newStores.first())
        return false;
    const GRStorePtr fallback = newStores.first();
    if (!MGUndoManager::sharedInstance().setUndoAction(2, undoDescriptor))
        return false;
    std::stable_sort(newStores.begin() + 1, newStores.end(), [](const GRStorePtr &a, const GRStorePtr &b) {
        return QString::compare(a ? a->name() : QString(), b ? b->name() : QString()) < 0;
    });
    QHash<QString, GRStorePtr> byGuid;
    for (const GRStorePtr &store : std::as_const(newStores)) {
        if (store && !byGuid.contains(store->guid()))
            byGuid.insert(store->guid(), store);
    }
    for (const GRCategoryPtr &category : std::as_const(categories())) {
        for (const GRItemPtr &item : std::as_const(category->items())) {
            const QString guid = item->store() ? item->store()->guid() : QString();
            item->setStore(byGuid.value(guid, fallback));
        }
    }
    stores() = newStores;
    MGNotificationCenter &center = MGNotificationCenter::defaultCenter();
    center.post(QStringLiteral("mwgroceries.redoItems"));
    center.post(QStringLiteral("mwgroceries.updateStores"));
    return true;
}

void GRAppController::setKeyStrings()
{
    BuildKeyStrings();
    if (m_windowController)
        m_windowController->refreshLegend();
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
    if (name == QLatin1String("showPreferences"))
        return !modal;
    if (name == QLatin1String("saveDocument"))
        return !modal && !sheet && (g_dirty || GRPrefController::sharedInstance().dirty());
    if (name == QLatin1String("emailList") || name == QLatin1String("exportList") ||
        name == QLatin1String("doPageLayout"))
        return !modal && !sheet;
    if (name == QLatin1String("terminate"))
        return !sheet;
    return true;
}
