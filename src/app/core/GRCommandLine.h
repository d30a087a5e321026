#pragma once

#include <QString>
#include <QStringList>

class GRGroceryDatabase;

// The program's command line. Without arguments it starts the window; --help, --version,
// --list [--needed] (the grocery list on standard output), --export-rtf FOLDER, --mailto and
// --print-pdf FILE [--scope entire|needed|store=NAME] [--ignore-page-starts] run without one and
// write nothing to the database, its backup or the settings. Anything else is a usage error: the
// usage on standard error and status 2.
class GRCommandLine
{
public:
    enum class Mode
    {
        Window,
        Help,
        Version,
        List,
        ExportRtf,
        Mailto,
        PrintPdf,
        UsageError,
    };

    GRCommandLine(int argc, char *argv[]);

    Mode mode() const { return m_mode; }

    // Runs a command that needs no window; the exit status.
    int run(int argc, char *argv[]) const;
    static QString usage();

    // Before the window's application object is made: false, with a line on standard error,
    // when no display can be reached. Until windowStarted(), a display that refuses the
    // connection ends the program with that line and status 1 instead of an abort.
    static bool prepareWindow();
    static void windowStarted();
    // Whether the platform that a window would use has a display to talk to; why not, if not.
    static bool displayReachable(const QStringList &platforms, const QString &display,
                                 const QString &waylandDisplay, QString *why);

private:
    int runOnDatabase() const;
    int exportRtf(GRGroceryDatabase &database) const;
    int printMailto(const GRGroceryDatabase &database) const;
    int printPdf(GRGroceryDatabase &database) const;

    Mode m_mode = Mode::Window;
    QString m_target; // the folder of --export-rtf, the file of --print-pdf
    bool m_neededOnly = false;
    QString m_scope;
    bool m_ignorePageStarts = false;
    QString m_error; // what was wrong with the arguments
};
