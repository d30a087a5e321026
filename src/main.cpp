#include "GRAppController.h"
#include "GRCommandLine.h"
#include "MGAlertController.h"

#include <QApplication>

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

    if (!GRAppController::sharedInstance().applicationDidFinishLaunching())
        return 0;
    return app.exec();
}
