#include "GRCommandLine.h"

#include "GRDatabaseFile.h"
#include "GRGroceryDatabase.h"
#include "GRGroceryQueries.h"
#include "GRKeyNames.h"
#include "GRListExport.h"
#include "GRListText.h"
#include "GRPrefController.h"
#include "GRPrintView.h"
#include "GRStore.h"
#include "GRTagKeys.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QGuiApplication>

#include <algorithm>
#include <cstdio>
#include <cstdlib>

namespace {

void writeOut(FILE *stream, const QString &text)
{
    const QByteArray bytes = text.toUtf8();
    std::fwrite(bytes.constData(), 1, size_t(bytes.size()), stream);
    std::fflush(stream);
}

// Headless commands speak only through their own output: Qt's notes (a missing runtime folder,
// say) and the log lines of a read are not for the terminal.
void discardMessages(QtMsgType, const QMessageLogContext &, const QString &) {}

// While the window's application object is made, a display that refuses us is fatal to Qt; the
// user gets one line and status 1 instead of a core dump.
void trapDisplayFailure(QtMsgType type, const QMessageLogContext &, const QString &message)
{
    if (type != QtFatalMsg)
        return;
    const QByteArray display = qgetenv("DISPLAY");
    writeOut(
        stderr,
        QStringLiteral("groceries: can't open a window: %1\n")
            .arg(display.isEmpty()
                     ? message.section(u'\n', 0, 0).trimmed()
                     : QStringLiteral("no connection to display %1").arg(QString::fromLocal8Bit(display))));
    std::_Exit(1);
}

} // namespace

GRCommandLine::GRCommandLine(int argc, char *argv[])
{
    QList<Mode> commands;
    int i = 1;
    // An option's value is the next argument; false when there is none or it is empty.
    const auto takeValue = [&](QString &value) {
        if (i + 1 < argc)
            value = QString::fromLocal8Bit(argv[++i]);
        return !value.isEmpty();
    };
    for (; i < argc && m_error.isEmpty(); ++i) {
        const QString argument = QString::fromLocal8Bit(argv[i]);
        if (argument == QLatin1String("--list")) {
            commands << Mode::List;
        } else if (argument == QLatin1String("--needed")) {
            m_neededOnly = true;
        } else if (argument == QLatin1String("--export-rtf")) {
            commands << Mode::ExportRtf;
            if (!takeValue(m_target))
                m_error = QStringLiteral("--export-rtf needs a folder");
        } else if (argument == QLatin1String("--mailto")) {
            commands << Mode::Mailto;
        } else if (argument == QLatin1String("--print-pdf")) {
            commands << Mode::PrintPdf;
            if (!takeValue(m_target))
                m_error = QStringLiteral("--print-pdf needs a file");
        } else if (argument == QLatin1String("--scope")) {
            takeValue(m_scope);
            if (m_scope != QLatin1String("entire") && m_scope != QLatin1String("needed") &&
                !(m_scope.startsWith(QLatin1String("store=")) && m_scope.size() > 6))
                m_error = QStringLiteral("--scope takes entire, needed or store=NAME");
        } else if (argument == QLatin1String("--ignore-page-starts")) {
            m_ignorePageStarts = true;
        } else if (argument == QLatin1String("--help") || argument == QLatin1String("-h")) {
            commands << Mode::Help;
        } else if (argument == QLatin1String("--version") || argument == QLatin1String("-v")) {
            commands << Mode::Version;
        } else if (argument.startsWith(u'-')) {
            m_error = QStringLiteral("unknown option '%1'").arg(argument);
        } else {
            m_error = QStringLiteral("unexpected argument '%1'").arg(argument);
        }
    }
    // Help and version answer whatever else was asked; the other commands go one at a time.
    if (m_error.isEmpty() && !commands.contains(Mode::Help) && !commands.contains(Mode::Version)) {
        QList<Mode> distinct = commands;
        distinct.erase(std::unique(distinct.begin(), distinct.end()), distinct.end());
        if (distinct.size() > 1)
            m_error = QStringLiteral("one command at a time");
        else if (m_neededOnly && !commands.contains(Mode::List))
            m_error = QStringLiteral("--needed goes with --list");
        else if ((!m_scope.isEmpty() || m_ignorePageStarts) && !commands.contains(Mode::PrintPdf))
            m_error = QStringLiteral("--scope and --ignore-page-starts go with --print-pdf");
    }
    if (!m_error.isEmpty())
        m_mode = Mode::UsageError;
    else if (commands.contains(Mode::Help))
        m_mode = Mode::Help;
    else if (commands.contains(Mode::Version))
        m_mode = Mode::Version;
    else if (!commands.isEmpty())
        m_mode = commands.first();
}

QString GRCommandLine::usage()
{
    return QStringLiteral(
        "Usage: groceries [--list [--needed] | --export-rtf FOLDER | --mailto |\n"
        "                  --print-pdf FILE [--scope entire|needed|store=NAME] [--ignore-page-starts]]\n"
        "\n"
        "Groceries keeps a household's grocery list. Without options it opens the list in a "
        "window.\n"
        "\n"
        "Options:\n"
        "  --list         Print the grocery list to standard output.\n"
        "  --needed       With --list, print only the needed items.\n"
        "  --export-rtf FOLDER\n"
        "                 Write the whole list as Groceries.rtf into FOLDER.\n"
        "  --mailto       Print the mailto: link that e-mails the needed items.\n"
        "  --print-pdf FILE\n"
        "                 Write the printed list to FILE as PDF, with the saved print font,\n"
        "                 columns and page set-up.\n"
        "  --scope entire|needed|store=NAME\n"
        "                 With --print-pdf, print the entire list, the needed items only, or\n"
        "                 the store named NAME (default: the scope chosen when last printing).\n"
        "  --ignore-page-starts\n"
        "                 With --print-pdf, let stores that start a new page run on.\n"
        "  -h, --help     Print this help.\n"
        "  -v, --version  Print the version.\n");
}

int GRCommandLine::run(int argc, char *argv[]) const
{
    qInstallMessageHandler(discardMessages);
    switch (m_mode) {
    case Mode::Help:
        writeOut(stdout, usage());
        return 0;
    case Mode::Version:
        writeOut(stdout, QStringLiteral("Groceries %1\n").arg(QStringLiteral(GR_VERSION)));
        return 0;
    case Mode::UsageError:
        writeOut(stderr, QStringLiteral("groceries: %1\n\n").arg(m_error) + usage());
        return 2;
    case Mode::List:
    case Mode::ExportRtf:
    case Mode::Mailto: {
        QCoreApplication app(argc, argv);
        return runOnDatabase();
    }
    case Mode::PrintPdf: {
        // Drawing pages needs fonts, never a display.
        qputenv("QT_QPA_PLATFORM", "offscreen");
        QGuiApplication app(argc, argv);
        return runOnDatabase();
    }
    case Mode::Window:
        break;
    }
    return 2;
}

int GRCommandLine::runOnDatabase() const
{
    // Nothing on this path may write the settings.
    GRPrefController::setReadOnly(true);
    RegisterGroceryTags();
    const QString folder = DatabaseFolder();
    if (folder.isEmpty()) {
        writeOut(stderr, QStringLiteral("groceries: no data folder to read the grocery list from\n"));
        return 1;
    }
    const QString path = folder + QStringLiteral("/Groceries.xml");
    GRGroceryDatabase database;
    GRReadReport report;
    if (!QFileInfo(path).isFile() || !ReadModernDatabase(path, database, &report)) {
        QString message = QStringLiteral("groceries: no readable grocery list at %1\n").arg(path);
        const QString backup = DatabaseBackupPath(path);
        if (IsReadableDatabase(backup))
            message += QStringLiteral("The version saved before it, %1, can be restored by starting "
                                      "Groceries.\n")
                           .arg(backup);
        writeOut(stderr, message);
        return 1;
    }
    int status = 0;
    if (m_mode == Mode::ExportRtf)
        status = exportRtf(database);
    else if (m_mode == Mode::Mailto)
        status = printMailto(database);
    else if (m_mode == Mode::PrintPdf)
        status = printPdf(database);
    else
        writeOut(stdout, GroceryListText(database, m_neededOnly));
    if (status == 0 && report.damaged())
        writeOut(stderr, QStringLiteral("groceries: %1 is damaged; only the %2 items before the damage were "
                                        "read (%3)\n")
                             .arg(path)
                             .arg(report.itemCount)
                             .arg(report.error));
    return status;
}

int GRCommandLine::exportRtf(GRGroceryDatabase &database) const
{
    GRPrefController::sharedInstance(); // reads the user's key names
    BuildKeyStrings();
    QString reason;
    if (GRListExport::exportToFolder(database, m_target, &reason))
        return 0;
    writeOut(stderr,
             QStringLiteral("groceries: Export failed. I could not export the grocery list to %1 (%2).\n")
                 .arg(QDir(m_target).filePath(QLatin1String(GRListExport::FileName)), reason));
    return 1;
}

int GRCommandLine::printMailto(const GRGroceryDatabase &database) const
{
    if (GRGroceryQueries::neededItems(database).isEmpty()) {
        writeOut(stderr, QStringLiteral("groceries: No needed items.\n"));
        return 1;
    }
    const QString link = GRListExport::mailtoLink(database, GRPrefController::sharedInstance().emailTarget());
    if (link.isEmpty()) {
        writeOut(stderr,
                 QStringLiteral("groceries: the e-mail address in the preferences makes no valid link\n"));
        return 1;
    }
    writeOut(stdout, link + QLatin1Char('\n'));
    return 0;
}

int GRCommandLine::printPdf(GRGroceryDatabase &database) const
{
    GRPrefController &preferences = GRPrefController::sharedInstance();
    BuildKeyStrings();
    database.updateCategoryOrder(); // as the window does when it opens the list
    auto scope = GRPrintScope(preferences.printScope());
    QString storeGuid = preferences.printStoreGuid();
    if (m_scope == QLatin1String("entire")) {
        scope = GRPrintScope::EntireList;
    } else if (m_scope == QLatin1String("needed")) {
        scope = GRPrintScope::NeededItems;
    } else if (!m_scope.isEmpty()) {
        const QString name = m_scope.mid(6);
        const auto found = std::find_if(database.stores().cbegin(), database.stores().cend(),
                                        [&name](const GRStorePtr &store) { return store->name() == name; });
        if (found == database.stores().cend()) {
            writeOut(stderr, QStringLiteral("groceries: there is no store named \"%1\"\n").arg(name));
            return 1;
        }
        scope = GRPrintScope::OneStore;
        storeGuid = (*found)->guid();
    } else if (scope == GRPrintScope::OneStore) {
        // The store last printed is not remembered between runs; the print window then offers the first.
        storeGuid = GRPrintPagination::storeGuidOrFirst(database, storeGuid);
    }

    GRPrintView view(database);
    view.setScope(scope, storeGuid, m_ignorePageStarts || preferences.ignorePageStarts());
    view.setPrintFont(preferences.printFont());
    QString reason;
    if (view.writePdf(m_target, preferences.printInfo().pageLayout(), preferences.printInfo().scale(),
                      &reason))
        return 0;
    writeOut(stderr, QStringLiteral("groceries: could not write %1 (%2)\n").arg(m_target, reason));
    return 1;
}

bool GRCommandLine::displayReachable(const QStringList &platforms, const QString &display,
                                     const QString &waylandDisplay, QString *why)
{
    for (const QString &entry : platforms) {
        const QString platform = entry.section(u':', 0, 0).trimmed();
        if (platform == QLatin1String("xcb")) {
            if (!display.isEmpty())
                return true;
        } else if (platform.startsWith(QLatin1String("wayland"))) {
            if (!waylandDisplay.isEmpty())
                return true;
        } else if (!platform.isEmpty()) {
            return true; // offscreen, vnc, eglfs ... need no display variable
        }
    }
    if (why)
        *why = QStringLiteral("no display (DISPLAY is not set)");
    return false;
}

bool GRCommandLine::prepareWindow()
{
    QString platforms = qEnvironmentVariable("QT_QPA_PLATFORM");
    if (platforms.isEmpty()) {
        platforms = QStringLiteral("xcb");
        if (qEnvironmentVariable("XDG_SESSION_TYPE") == QLatin1String("wayland"))
            platforms.prepend(QStringLiteral("wayland;"));
    }
    QString why;
    if (!displayReachable(platforms.split(u';'), qEnvironmentVariable("DISPLAY"),
                          qEnvironmentVariable("WAYLAND_DISPLAY"), &why)) {
        writeOut(stderr, QStringLiteral("groceries: can't open a window: %1\n").arg(why));
        return false;
    }
    qInstallMessageHandler(trapDisplayFailure);
    return true;
}

void GRCommandLine::windowStarted()
{
    qInstallMessageHandler(nullptr);
}
