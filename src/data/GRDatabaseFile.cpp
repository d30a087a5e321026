#include "GRDatabaseFile.h"

#include "GRCategory.h"
#include "GRDatabaseLock.h"
#include "GRDiskStamp.h"
#include "GRGroceryDatabase.h"
#include "GRItem.h"
#include "GRPosixFileOps.h"
#include "GRPrefController.h"
#include "GRRecordPositions.h"
#include "GRSafeWriter.h"
#include "GRStore.h"
#include "GRTagKeys.h"
#include "MGAlert.h"
#include "MGLog.h"
#include "MGUndoManager.h"
#include "MGXmlDecoder.h"
#include "MGXmlEncoder.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSet>
#include <QStandardPaths>

#include <algorithm>

bool g_dirty = false;
QString g_databasePath;
GRDiskStamp g_databaseStamp;

namespace {

const QString DatabaseFileName = QStringLiteral("Groceries.xml");
const QString BackupFileName = QStringLiteral("Groceries~.xml");
constexpr qint64 DatabaseVersion = 1;
// Anything wider is no list a person would use, and the layout divides by it.
constexpr qint64 MaxColumnCount = 100;
constexpr qsizetype AisleGroupCount = 7;

GRFileOps *s_fileOps = nullptr;

GRFileOps &fileOps()
{
    return s_fileOps ? *s_fileOps : GRPosixFileOps::shared();
}

GRPrefController &prefs()
{
    return GRPrefController::sharedInstance();
}

void saveFailedAlert()
{
    MGAlert::sharedInstance().giveAlertMessage(QStringLiteral("Save failed."),
                                               QStringLiteral("I can't save the groceries database."), {});
}

// Another program changed the file since this copy read it: replace its changes only when the
// user says so (they are kept as the backup either way).
bool overwriteChangedFile(const QString &path)
{
    MGLog(QStringLiteral("Database %1 changed on disk since it was read").arg(path));
    const int answer = MGAlert::sharedInstance().giveAlertMessage(
        QStringLiteral("The groceries database changed on disk."),
        QStringLiteral(
            "Another program changed \u201C%1\u201D since Groceries read it. If you save, this list "
            "replaces those changes; the file as it is now is kept as \u201C%2\u201D.")
            .arg(DatabaseFileName, BackupFileName),
        {QStringLiteral("Cancel"), QStringLiteral("Save Anyway")});
    return answer == 1;
}

// Where a save writes: through a symbolic link to the file it names, so the link stays a link.
QString writeTarget(const QString &path)
{
    const QFileInfo info(path);
    if (!info.isSymLink())
        return path;
    const QString canonical = info.canonicalFilePath();
    return canonical.isEmpty() ? info.symLinkTarget() : canonical;
}

bool isAisleOrder(const QList<qint64> &order)
{
    if (order.size() != AisleGroupCount)
        return false;
    QList<qint64> sorted = order;
    std::sort(sorted.begin(), sorted.end());
    for (qsizetype k = 0; k < AisleGroupCount; ++k) {
        if (sorted.at(k) != k)
            return false;
    }
    return true;
}

bool isIdentityOrder(const QList<qint64> &order)
{
    for (qsizetype k = 0; k < order.size(); ++k) {
        if (order.at(k) != k)
            return false;
    }
    return true;
}

// An item always ends up with a category and a store; one that can't is dropped.
void appendItem(GRGroceryDatabase &lists, const GRItemPtr &item)
{
    if (!item || lists.categories().isEmpty() || lists.stores().isEmpty())
        return;
    GRCategoryPtr category = item->category();
    if (!category) {
        category = lists.categories().first();
        item->setCategory(category);
    }
    if (!item->store())
        item->setStore(lists.stores().first());
    category->items().append(item);
}

// Reads the store, category and item records of a "stores", "categories" or "items" section.
void readRecords(MGXmlDecoder &decoder, GRGroceryDatabase &lists)
{
    if (decoder.endTag())
        return;
    const qint64 level = decoder.level();
    while (decoder.getNextTag() && decoder.level() >= level) {
        if (!decoder.startTag())
            continue;
        // A self-closing record has no children; reading on would take its siblings for them. An
        // item without any of its fields is nothing worth keeping.
        const bool empty = decoder.endTag();
        switch (decoder.key()) {
        case GRTagStore:
            lists.stores().append(empty ? GRStore::create() : GRStore::fromXml(decoder));
            break;
        case GRTagCategory:
            lists.categories().append(empty ? GRCategory::create() : GRCategory::fromXml(decoder));
            break;
        case GRTagItem:
            if (!empty)
                appendItem(lists, GRItem::fromXml(decoder, lists));
            break;
        default:
            break;
        }
    }
}

// Calls read for every "i" of the section the decoder stands on.
template <typename Read> void readIndexList(MGXmlDecoder &decoder, Read read)
{
    if (decoder.endTag())
        return;
    const qint64 level = decoder.level();
    while (decoder.getNextTag() && decoder.level() >= level) {
        if (decoder.startTag() && decoder.key() == GRTagI)
            read(decoder.integerValue());
    }
}

void readAisleOrder(MGXmlDecoder &decoder, GRGroceryDatabase &database)
{
    QList<qint64> order;
    readIndexList(decoder, [&order](qint64 value) {
        if (order.size() <= AisleGroupCount)
            order.append(value);
    });
    // Printing indexes the aisle groups with these numbers: only a permutation of them will do.
    database.aisleOrder() = isAisleOrder(order) ? order : GRGroceryDatabase::defaultAisleOrder();
}

void readCategoryOrder(MGXmlDecoder &decoder, GRGroceryDatabase &database)
{
    database.setManualOrder(true);
    database.categoryOrder().clear();
    const QList<GRCategoryPtr> &categories = database.categories();
    QSet<qint64> used;
    readIndexList(decoder, [&](qint64 index) {
        if (index < 0 || index >= categories.size() || used.contains(index))
            return;
        used.insert(index);
        const GRCategoryPtr &category = categories.at(index);
        database.categoryOrder().append(GRCategoryOrderEntry{category, category->guid()});
    });
}

bool readRootTag(MGXmlDecoder &decoder, bool alertIfNewer)
{
    if (!decoder.getNextTag() || decoder.key() != GRTagGroceries || !decoder.startTag())
        return false;
    if (decoder.integerAttributeForTag(QStringLiteral("version")) > DatabaseVersion) {
        if (alertIfNewer) {
            MGAlert::sharedInstance().giveAlertMessage(
                QStringLiteral("Groceries compatibility problem."),
                QStringLiteral("The groceries database is newer than this version of Groceries. You need to "
                               "upgrade to the latest version."),
                {});
        }
        return false;
    }
    return true;
}

// Keeps the lists usable: store 0 is everyone's fallback and new items need a category.
void ensureStoreAndCategory(GRGroceryDatabase &lists)
{
    if (lists.stores().isEmpty()) {
        GRStorePtr store = GRStore::create();
        store->setName(QStringLiteral("Grocery Store"));
        lists.stores().append(store);
    }
    if (lists.categories().isEmpty()) {
        GRCategoryPtr category = GRCategory::create();
        category->setName(QStringLiteral("Groceries"));
        lists.categories().append(category);
    }
}

bool readTemplate(int option, GRGroceryDatabase &database)
{
    QFile file(TemplateResourcePath(option));
    if (!file.open(QIODevice::ReadOnly))
        return false;
    return ReadModernDatabaseData(file.readAll(), database);
}

// Whatever was read stays; the file as it was is kept beside it before any save can replace it.
void reportDamagedDatabase(const QString &path, const GRReadReport &report)
{
    MGLog(QStringLiteral("Groceries database %1 read only in part: %2").arg(path, report.error));
    const QString copyPath = DamagedCopyPath(path);
    QString where;
    if (QFile::copy(path, copyPath)) {
        where = QStringLiteral("The file as it was is kept unchanged as \"%1\".").arg(copyPath);
    } else {
        MGLog(QStringLiteral("Can't keep damaged database %1 as %2").arg(path, copyPath));
        where = QStringLiteral("I couldn't keep a copy of the file as it was; until the next save it stays "
                               "as \"%1\".")
                    .arg(path);
    }
    const QString read = report.itemCount == 1
                             ? QStringLiteral("I could read only 1 item of it.")
                             : QStringLiteral("I could read only %1 items of it.").arg(report.itemCount);
    MGAlert::sharedInstance().giveAlertMessage(QStringLiteral("The groceries database is damaged."),
                                               read + u' ' + where, {});
}

} // namespace

bool DatabaseChanged()
{
    return g_dirty || prefs().dirty();
}

QString DatabaseFolder()
{
    const QString base = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
    if (base.isEmpty())
        return {};
    return base + QLatin1String("/Marlowick");
}

QString DatabaseBackupPath(const QString &databasePath)
{
    return QFileInfo(databasePath).absolutePath() + QLatin1Char('/') + BackupFileName;
}

QString DamagedCopyPath(const QString &databasePath)
{
    const QString folder = QFileInfo(databasePath).absolutePath() + QLatin1Char('/');
    QString path = folder + QStringLiteral("Groceries (damaged).xml");
    for (int n = 2; QFileInfo::exists(path) || QFileInfo(path).isSymLink(); ++n)
        path = folder + QStringLiteral("Groceries (damaged %1).xml").arg(n);
    return path;
}

bool ReadModernDatabase(MGXmlDecoder &decoder, GRGroceryDatabase &database)
{
    RegisterGroceryTags();
    if (!readRootTag(decoder, true))
        return false;

    while (decoder.getNextTag()) {
        if (!decoder.startTag())
            continue;
        switch (decoder.key()) {
        case GRTagStores:
        case GRTagCategories:
        case GRTagItems:
            readRecords(decoder, database);
            break;
        case GRTagAisleOrder:
            readAisleOrder(decoder, database);
            break;
        case GRTagCategoryOrder:
            readCategoryOrder(decoder, database);
            break;
        case GRTagColumns:
            database.setColumnCount(quint64(qBound<qint64>(1, decoder.integerValue(), MaxColumnCount)));
            break;
        default:
            break;
        }
    }
    return true;
}

static bool readAndReport(std::unique_ptr<MGXmlDecoder> decoder, GRGroceryDatabase &database,
                          GRReadReport *report)
{
    if (!decoder || !ReadModernDatabase(*decoder, database))
        return false;
    if (report) {
        report->error = decoder->error();
        // A file cut off between two tags reads without complaint; only its open elements tell.
        if (report->error.isEmpty() && decoder->level() > 0)
            report->error = QStringLiteral("the file ends before its elements are closed");
        report->itemCount = database.itemCount();
    }
    return true;
}

bool ReadModernDatabase(const QString &path, GRGroceryDatabase &database, GRReadReport *report)
{
    RegisterGroceryTags();
    return readAndReport(MGXmlDecoder::fromFile(path), database, report);
}

bool ReadModernDatabaseData(const QByteArray &bytes, GRGroceryDatabase &database, GRReadReport *report)
{
    RegisterGroceryTags();
    return readAndReport(MGXmlDecoder::fromData(bytes), database, report);
}

bool IsReadableDatabase(const QString &path)
{
    RegisterGroceryTags();
    std::unique_ptr<MGXmlDecoder> decoder = MGXmlDecoder::fromFile(path);
    if (!decoder || !readRootTag(*decoder, false))
        return false;
    while (decoder->getNextTag()) {
    }
    return decoder->error().isEmpty();
}

QString GroceriesXml(const GRGroceryDatabase &lists)
{
    const GRRecordPositions positions(lists);
    MGXmlEncoder encoder;

    encoder.addAttribute(QStringLiteral("version"), DatabaseVersion);
    encoder.openTag(QStringLiteral("groceries"));

    encoder.openTag(QStringLiteral("stores"));
    for (const GRStorePtr &store : std::as_const(lists.stores())) {
        if (store)
            store->archiveToXml(encoder);
    }
    encoder.closeTag(QStringLiteral("stores"));

    QList<GRItemPtr> items;
    encoder.openTag(QStringLiteral("categories"));
    for (const GRCategoryPtr &category : std::as_const(lists.categories())) {
        if (!category)
            continue;
        category->archiveToXml(encoder);
        for (const GRItemPtr &item : std::as_const(category->items())) {
            if (item)
                items.append(item);
        }
    }
    encoder.closeTag(QStringLiteral("categories"));

    encoder.addTag(QStringLiteral("columns"), qint64(lists.columnCount()));

    if (!isIdentityOrder(lists.aisleOrder())) {
        encoder.openTag(QStringLiteral("aisleOrder"));
        for (qint64 group : std::as_const(lists.aisleOrder()))
            encoder.addTag(QStringLiteral("i"), group);
        encoder.closeTag(QStringLiteral("aisleOrder"));
    }

    if (lists.manualOrder()) {
        encoder.openTag(QStringLiteral("categoryOrder"));
        for (const GRCategoryOrderEntry &entry : std::as_const(lists.categoryOrder())) {
            const qint64 index = positions.categoryIndex(entry.cat.get());
            if (index >= 0)
                encoder.addTag(QStringLiteral("i"), index);
        }
        encoder.closeTag(QStringLiteral("categoryOrder"));
    }

    // Stable, so items of equal names keep the category order and a reload saves the same bytes.
    std::stable_sort(items.begin(), items.end(), [](const GRItemPtr &a, const GRItemPtr &b) {
        return QString::compare(a->name(), b->name(), Qt::CaseInsensitive) < 0;
    });
    encoder.openTag(QStringLiteral("items"));
    for (const GRItemPtr &item : std::as_const(items))
        item->archiveToXml(encoder, positions);
    encoder.closeTag(QStringLiteral("items"));

    encoder.closeTag(QStringLiteral("groceries"));
    return encoder.xml();
}

void SetDatabaseFileOps(GRFileOps *ops)
{
    s_fileOps = ops;
}

bool SaveGroceries(const GRGroceryDatabase &database)
{
    const QString path = g_databasePath;
    if (path.isEmpty()) {
        MGLog(QStringLiteral("Can't write database %1: %2").arg(path, QStringLiteral("no database path")));
        saveFailedAlert();
        return false;
    }
    if (!g_databaseStamp.matches(path) && !overwriteChangedFile(path))
        return false;
    const QString backupPath = DatabaseBackupPath(path);

    const QByteArray text = GroceriesXml(database).toUtf8();
    GRSafeWriter writer(fileOps());
    if (!writer.save(writeTarget(path), backupPath, text)) {
        if (writer.failure() == GRSafeWriter::BackupFailed) {
            MGLog(QStringLiteral("Can't rename previous version %1 to %2: %3")
                      .arg(path, backupPath, writer.reason()));
        } else {
            MGLog(QStringLiteral("Can't write database %1: %2").arg(path, writer.reason()));
            if (writer.restoreFailed()) {
                MGLog(QStringLiteral("Can't restore database after failure %1: %2")
                          .arg(backupPath, writer.restoreReason()));
            }
        }
        saveFailedAlert();
        return false;
    }

    g_databaseStamp = GRDiskStamp::ofWritten(path, text);
    g_dirty = false;
    prefs().setDirty(false);
    MGUndoManager::sharedInstance().clearUndo(); // no undo crosses a save
    return true;
}

bool LockDatabaseFolder(GRDatabaseLock &lock)
{
    switch (lock.acquire()) {
    case GRDatabaseLock::Result::Unavailable:
        MGLog(QStringLiteral("Can't lock %1; saving goes on without the lock").arg(lock.path()));
        return true;
    case GRDatabaseLock::Result::HeldElsewhere:
        MGLog(QStringLiteral("Database %1 is open elsewhere: %2").arg(lock.folder(), lock.holder()));
        MGAlert::sharedInstance().giveAlertMessage(
            QStringLiteral("The grocery list is open elsewhere."),
            QStringLiteral("Another copy of Groceries (%1) has the list open. Only one copy at a time can "
                           "change it, so this one closes and leaves the list as it is.")
                .arg(lock.holder()),
            {});
        return false;
    case GRDatabaseLock::Result::Acquired:
        break;
    }
    // With the lock held no save is under way, so a temporary file here is what a crash left.
    const QDir dir(lock.folder());
    const QStringList leftovers =
        dir.entryList({GRPosixFileOps::temporaryNameFilter(DatabaseFileName)}, QDir::Files | QDir::Hidden);
    for (const QString &name : leftovers)
        QFile::remove(dir.filePath(name));
    return true;
}

QString TemplateResourcePath(int option)
{
    switch (option) {
    case GRTemplateOmnivore:
        return QStringLiteral(":/templates/Groceries Omnivore.xml");
    case GRTemplateVegetarian:
        return QStringLiteral(":/templates/Groceries Vegetarian.xml");
    case GRTemplateVegan:
        return QStringLiteral(":/templates/Groceries Vegan.xml");
    default:
        return {};
    }
}

void CreateMinimalDatabase(GRGroceryDatabase &database)
{
    GRStorePtr store = GRStore::create();
    store->setName(QStringLiteral("Grocery Store"));
    store->setPrintOption(0);
    database.stores().append(store);

    GRCategoryPtr category = GRCategory::create();
    category->setName(QStringLiteral("Groceries"));
    database.categories().append(category);
}

GROpenResult OpenGroceryDatabase(GRGroceryDatabase &database, const QString &folder,
                                 const std::function<int(bool offerRestore)> &selectTemplate)
{
    RegisterGroceryTags();
    if (folder.isEmpty()) {
        MGLog(QStringLiteral("Can't find ~/Library/Application Support"));
        MGAlert::sharedInstance().giveAlertMessage(
            QStringLiteral("Startup failed."),
            QStringLiteral(
                "I couldn't open the grocery list or create a new one. Please contact us for help at "
                "https://marlowick.example/help."),
            {});
        return GROpenResult::StartupFailed;
    }
    QDir().mkpath(folder);
    g_databasePath = folder + QLatin1Char('/') + DatabaseFileName;
    // The stamp and the list come from one reading of the file, so they agree.
    QByteArray bytes;
    g_databaseStamp = GRDiskStamp::ofFile(g_databasePath, &bytes);

    GRReadReport report;
    if (g_databaseStamp.exists() && ReadModernDatabaseData(bytes, database, &report)) {
        ensureStoreAndCategory(database);
        if (report.damaged()) {
            g_dirty = true;
            reportDamagedDatabase(g_databasePath, report);
        }
        return GROpenResult::Loaded;
    }

    g_dirty = true;
    const QString backupPath = DatabaseBackupPath(g_databasePath);
    const bool offerRestore = IsReadableDatabase(backupPath);
    const int option = selectTemplate ? selectTemplate(offerRestore) : int(GRTemplateCancel);

    bool read = false;
    switch (option) {
    case GRTemplateCancel:
        g_dirty = false;
        return GROpenResult::Quit;
    case GRTemplateRestore:
        read = offerRestore && ReadModernDatabase(backupPath, database);
        break;
    case GRTemplateOmnivore:
    case GRTemplateVegetarian:
    case GRTemplateVegan:
        read = readTemplate(option, database);
        break;
    default:
        break;
    }
    if (!read)
        CreateMinimalDatabase(database);
    ensureStoreAndCategory(database);
    return GROpenResult::Created;
}
