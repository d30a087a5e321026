#include "GRAppController.h"
#include "GRCommandLine.h"
#include "MGAlertController.h"

#include <QApplication>

int main(int argc, char *argv[])
{
    const GRCommandLine commandLine(argc, argv);
    if (commandLine.mode() != GRCommandLine::Mode::Window)
        return commandLine.run(argc, argv);
    if (!GRCommandLine::prepareWindow())
        return 1;

    QApplication app(argc, argv);
    GRCommandLine::windowStarted();
    QApplication::setOrganizationName(QStringLiteral("Marlowick"));
    QApplication::setApplicationName(QStringLiteral("Groceries"));
    QApplication::setApplicationDisplayName(QStringLiteral("Groceries"));
    QApplication::setApplicationVersion(QStringLiteral(GR_VERSION));
    MGAlertController::installPresenter();

    if (!GRAppController::sharedInstance().applicationDidFinishLaunching())
        return 0;
    return app.exec();
}
