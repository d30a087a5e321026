// Times laying out the printed pages of a 10,000-item list in every scope, and writing the whole
// list as a PDF; prints milliseconds per operation.
#include "GRBenchData.h"
#include "GRGroceryDatabase.h"
#include "GRKeyNames.h"
#include "GRPrintSettings.h"
#include "GRPrintView.h"
#include "GRStore.h"

#include <QFont>
#include <QGuiApplication>
#include <QTemporaryDir>

#include <cstdio>

namespace {

constexpr int Repetitions = 15;

} // namespace

int main(int argc, char *argv[])
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication app(argc, argv);
    BuildKeyStrings();
    GRGroceryDatabase database;
    BuildBenchDatabase(database);
    // Every grouping, and a forced page start every third store.
    for (qsizetype s = 0; s < database.stores().size(); ++s) {
        database.stores()[s]->setPrintOption(qint32(s % 3));
        database.stores()[s]->setTopOfPage(s % 3 == 1);
    }
    const QString thirdStore = database.stores().at(2)->guid();
    const QPageLayout page = GRPrintView::printPageLayout(GRPrintSettings::defaultSettings().pageLayout());

    struct Scope
    {
        const char *name;
        GRPrintScope scope;
        bool ignoreStarts;
    };
    const Scope scopes[] = {
        {"entire list", GRPrintScope::EntireList, false},
        {"needed items", GRPrintScope::NeededItems, false},
        {"needed, no page starts", GRPrintScope::NeededItems, true},
        {"one store (by aisle)", GRPrintScope::OneStore, false},
    };
    std::printf("print layout: %d items, %d categories, %d stores, %d columns, 12-point %s on A4 or Letter; "
                "median of %d\n",
                BenchItemCount, BenchCategoryCount, BenchStoreCount, int(database.columnCount()),
                qPrintable(QFont().family()), Repetitions);
    QFont font;
    font.setPointSize(12);
    for (const Scope &scope : scopes) {
        GRPrintView view(database);
        view.setScope(scope.scope, thirdStore, scope.ignoreStarts);
        view.setPrintFont(font);
        qsizetype pages = 0;
        const double ms = MedianMs(Repetitions, [] {}, [&] { pages = view.knowsPageRange(page, 1.0); });
        std::printf("%-24s %8.2f ms  %4lld pages\n", scope.name, ms, static_cast<long long>(pages));
    }

    QTemporaryDir dir;
    GRPrintView view(database);
    view.setScope(GRPrintScope::EntireList, QString(), false);
    view.setPrintFont(font);
    QString reason;
    const double pdf = MedianMs(3, [] {}, [&] {
        if (!view.writePdf(dir.filePath(QStringLiteral("list.pdf")), page, 1.0, &reason))
            std::fprintf(stderr, "PDF failed: %s\n", qPrintable(reason));
    });
    std::printf("%-24s %8.2f ms  %4lld pages\n", "entire list as PDF", pdf, static_cast<long long>(view.pageCount()));
    return 0;
}
