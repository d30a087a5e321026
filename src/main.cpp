#include "GRCommandLine.h"
#include "GRDatabaseFile.h"
#include "GRPrefController.h"
#include "GRTagKeys.h"
#include "GRTemplateDialog.h"
#include "MGAlertController.h"

#include <QApplication>
#include <QMainWindow>

int main(int argc, char *argv[])
{
    if (GRCommandLine::wantsCommandLine(argc, argv))
        return GRCommandLine::run(argc, argv);

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

    QMainWindow window;
    window.setWindowTitle(QStringLiteral("Groceries[*]"));
    window.setWindowModified(g_dirty || prefs.dirty());
    window.resize(900, 600);
    window.show();
    const int status = app.exec();
    prefs.savePreferences();
    return status;
}
