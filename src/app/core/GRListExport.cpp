#include "GRListExport.h"

#include "GRCategory.h"
#include "GRGroceryDatabase.h"
#include "GRGroceryQueries.h"
#include "GRItem.h"
#include "GRKeyNames.h"
#include "GRNameSorter.h"
#include "GRRtfWriter.h"
#include "GRStore.h"

#include <QDir>
#include <QFile>
#include <QSaveFile>
#include <QUrl>

#include <algorithm>

namespace {

// The same font whether the export runs in the window or on the command line, so both write the
// same bytes; readers fall back to their own sans-serif.
const char *const ExportFontFamily = "Helvetica";
constexpr int ExportPointSize = 12;

} // namespace

QByteArray GRListExport::exportRtf(GRGroceryDatabase &database)
{
    GRRtfWriter writer(QString::fromLatin1(ExportFontFamily), ExportPointSize);
    for (const GRCategoryPtr &category : database.categories()) {
        writer.addParagraph(GRRtfWriter::Style::Heading, category->name());
        SortByName(category->items());
        for (const GRItemPtr &item : category->items()) {
            const QString store = item->store() ? item->store()->name() : QString();
            writer.addParagraph(GRRtfWriter::Style::Line, item->name() + QLatin1Char('\t') + store);
        }
    }
    writer.addParagraph(GRRtfWriter::Style::Heading, QStringLiteral("Key"));
    for (const QString &line : g_keyStrings)
        writer.addParagraph(GRRtfWriter::Style::Line, line);
    return writer.rtf();
}

bool GRListExport::exportToFolder(GRGroceryDatabase &database, const QString &folder, QString *error)
{
    const QString path = QDir(folder).filePath(QLatin1String(FileName));
    QFile::remove(path);
    const QByteArray rtf = exportRtf(database);
    QSaveFile file(path);
    QString reason;
    if (!file.open(QIODevice::WriteOnly))
        reason = file.errorString();
    else if (file.write(rtf) != rtf.size())
        reason = file.errorString().isEmpty() ? QStringLiteral("the disk took only part of it")
                                              : file.errorString();
    else if (!file.commit())
        reason = file.errorString();
    if (reason.isEmpty())
        return true;
    file.cancelWriting();
    if (error)
        *error = reason;
    return false;
}

QString GRListExport::neededItemsText(const GRGroceryDatabase &database)
{
    QList<GRItemPtr> needed = GRGroceryQueries::neededItems(database);
    std::stable_sort(needed.begin(), needed.end(), [](const GRItemPtr &a, const GRItemPtr &b) {
        return QString::compare(a->name(), b->name()) < 0;
    });
    QString body;
    QString previous;
    for (const GRItemPtr &item : needed) {
        if (item->name() != previous)
            body += item->displayName() + QLatin1Char('\n');
        previous = item->name();
    }
    return body;
}

QString GRListExport::mailtoLink(const GRGroceryDatabase &database, const QString &address)
{
    if (GRGroceryQueries::neededItems(database).isEmpty())
        return {};
    const QString body = neededItemsText(database);
    const QStringList addresses = address.isEmpty() ? QStringList() : QStringList{address};
    QString link = QStringLiteral("mailto:");
    for (qsizetype i = 0; i < addresses.size(); ++i) {
        if (i > 0)
            link += (i == 1 ? QStringLiteral("?") : QStringLiteral("&")) + QStringLiteral("cc=");
        link += addresses[i];
    }
    link += addresses.size() < 2 ? QLatin1Char('?') : QLatin1Char('&');
    link += QStringLiteral("subject=") +
            QString::fromLatin1(QUrl::toPercentEncoding(QStringLiteral("Grocery list")));
    link += QStringLiteral("&body=") + QString::fromLatin1(QUrl::toPercentEncoding(body));
    return QUrl(link, QUrl::StrictMode).isValid() ? link : QString();
}
