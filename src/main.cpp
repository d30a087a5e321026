#include <QApplication>
#include <QMainWindow>

int main(int argc, char *argv[])
{
    QApplication app(argc, argv);
    QApplication::setOrganizationName(QStringLiteral("Marlowick"));
    QApplication::setApplicationName(QStringLiteral("Groceries"));
    QApplication::setApplicationDisplayName(QStringLiteral("Groceries"));
    QApplication::setApplicationVersion(QStringLiteral(GR_VERSION));
    QMainWindow window;
    window.setWindowTitle(QStringLiteral("Groceries[*]"));
    window.resize(900, 600);
    window.show();
    return app.exec();
}
