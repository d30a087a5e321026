#include "GRCommandLine.h"

#include "GRDatabaseFile.h"
#include "GRListText.h"
#include "GRPrefController.h"
#include "GRTagKeys.h"

#include <QCommandLineParser>
#include <QFileInfo>
#include <QGuiApplication>

#include <cstdio>

static void setApplicationNames()
{
    QCoreApplication::setOrganizationName(QStringLiteral("Marlowick"));
    QCoreApplication::setApplicationName(QStringLiteral("Groceries"));
    QCoreApplication::setApplicationVersion(QStringLiteral(GR_VERSION));
}

bool GRCommandLine::wantsCommandLine(int argc, char *argv[])
{
    for (int i = 1; i < argc; ++i) {
        const QByteArray argument(argv[i]);
        if (argument == "--list" || argument == "--needed" || argument == "--help" || argument == "-h" ||
            argument == "--version" || argument == "-v")
            return true;
    }
    return false;
}

static void writeOut(FILE *stream, const QString &text)
{
    const QByteArray bytes = text.toUtf8();
    std::fwrite(bytes.constData(), 1, size_t(bytes.size()), stream);
    std::fflush(stream);
}

int GRCommandLine::run(int argc, char *argv[])
{
    // Fonts in the preferences need a GUI application, but nothing here may need a display.
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication app(argc, argv);
    setApplicationNames();

    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("Groceries keeps a household's grocery list."));
    parser.addHelpOption();
    parser.addVersionOption();
    const QCommandLineOption listOption(QStringLiteral("list"),
                                        QStringLiteral("Print the grocery list to standard output."));
    const QCommandLineOption neededOption(QStringLiteral("needed"),
                                          QStringLiteral("With --list, print only the needed items."));
    parser.addOption(listOption);
    parser.addOption(neededOption);
    parser.process(app); // answers --help and --version itself, and unknown options with status 1

    if (!parser.isSet(listOption)) {
        writeOut(stderr, QStringLiteral("groceries: --needed goes with --list\n"));
        return 1;
    }

    GRPrefController::setReadOnly(true);
    RegisterGroceryTags();
    const QString folder = DatabaseFolder();
    if (folder.isEmpty()) {
        writeOut(stderr, QStringLiteral("groceries: no data folder to read the grocery list from\n"));
        return 1;
    }
    const QString path = folder + QStringLiteral("/Groceries.xml");
    if (!QFileInfo(path).isFile() || !ReadModernDatabase(path)) {
        QString message = QStringLiteral("groceries: no readable grocery list at %1\n").arg(path);
        const QString backup = DatabaseBackupPath(path);
        if (IsReadableDatabase(backup))
            message += QStringLiteral("The version saved before it, %1, can be restored by starting "
                                      "Groceries.\n")
                           .arg(backup);
        writeOut(stderr, message);
        return 1;
    }
    writeOut(stdout, GroceryListText(parser.isSet(neededOption)));
    return 0;
}
