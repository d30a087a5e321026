#include "GRCategory.h"
#include "GRDatabaseFile.h"
#include "GRLists.h"
#include "GRPrefController.h"
#include "GRTagKeys.h"
#include "GRTemplateDialog.h"
#include "MGAlertController.h"

#include <QApplication>
#include <QMainWindow>
#include <QStatusBar>

int main(int argc, char *argv[])
{
    QApplication app(argc, argv);
    QApplication::setOrganizationName(QStringLiteral("Marlowick"));
    QApplication::setApplicationName(QStringLiteral("Groceries"));
    QApplication::setApplicationDisplayName(QStringLiteral("Groceries"));
    QApplication::setApplicationVersion(QStringLiteral(GR_VERSION));
    MGAlertController::installPresenter();

    GRPrefController &prefs = GRPrefController::sharedInstance();
    RegisterGroceryTags();
    switch (OpenGroceryDatabase(&GRTemplateDialog::selectTemplate)) {
    case GROpenResult::Quit:
    case GROpenResult::StartupFailed:
        return 0;
    case GROpenResult::Loaded:
    case GROpenResult::Created:
        break;
    }

    qsizetype itemCount = 0;
    for (const GRCategoryPtr &category : GRLists::shared().categories())
        itemCount += category->items().size();

    QMainWindow window;
    window.setWindowTitle(QStringLiteral("Groceries[*]"));
    window.setWindowModified(g_dirty || prefs.dirty());
    window.statusBar()->showMessage(QStringLiteral("%1 items in %2 categories")
                                        .arg(itemCount)
                                        .arg(GRLists::shared().categories().size()));
    window.resize(900, 600);
    window.show();
    const int status = app.exec();
    prefs.savePreferences();
    return status;
}
