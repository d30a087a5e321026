#include "GRCategory.h"
#include "GRDatabaseFile.h"
#include "GRItem.h"
#include "GRLists.h"
#include "GRPosixFileOps.h"
#include "GRPrefController.h"
#include "GRStore.h"
#include "GRTestSupport.h"
#include "MGAlert.h"
#include "MGNotificationCenter.h"

#include <QDir>
#include <QFile>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTest>

#include <csignal>
#include <sys/resource.h>
#include <unistd.h>

namespace {

QStringList s_log;
QtMessageHandler s_previousHandler = nullptr;

void recordMessage(QtMsgType type, const QMessageLogContext &context, const QString &message)
{
    if (type == QtWarningMsg)
        s_log.append(message);
    if (s_previousHandler)
        s_previousHandler(type, context, message);
}

bool logHas(const QString &prefix)
{
    return std::any_of(s_log.cbegin(), s_log.cend(),
                       [&](const QString &line) { return line.startsWith(prefix); });
}

QByteArray readBytes(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void writeBytes(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
    QCOMPARE(file.write(bytes), bytes.size());
}

QByteArray document(const QByteArray &body, const QByteArray &rootAttributes = " version=\"1\"")
{
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<groceries" + rootAttributes + ">\n" + body +
           "</groceries>\n";
}

void resetDatabase()
{
    GRLists::shared().clear();
    GRPrefController &prefs = GRPrefController::sharedInstance();
    prefs.setColumnCount(GRPrefController::DefaultColumnCount);
    prefs.aisleOrder() = GRPrefController::defaultAisleOrder();
    prefs.categoryOrder().clear();
    prefs.setManualOrder(false);
    prefs.setDirty(false);
    g_dirty = false;
    MGAlert::sharedInstance().clearNextAnswers();
    MGAlert::sharedInstance().clearShownAlerts();
    SetDatabaseFileOps(nullptr);
    s_log.clear();
}

GRStorePtr addStore(const QString &name, quint32 kolor = Kolor::DefaultWord, int printOption = 0,
                    bool top = false)
{
    GRStorePtr store = GRStore::create();
    store->setName(name);
    store->setKolor(Kolor::fromWord(kolor));
    store->setPrintOption(printOption);
    store->setTopOfPage(top);
    GRLists::shared().stores().append(store);
    return store;
}

GRCategoryPtr addCategory(const QString &name)
{
    GRCategoryPtr category = GRCategory::create();
    category->setName(name);
    GRLists::shared().categories().append(category);
    return category;
}

void addItem(const GRCategoryPtr &category, const QString &name, const GRStorePtr &store, qint64 aisle = 0,
             bool needed = false, quint64 count = 0)
{
    GRItemPtr item = GRItem::create();
    item->setName(name);
    item->setCategory(category);
    item->setStore(store);
    item->setAisle(aisle);
    item->setNeeded(needed);
    item->setNeedCount(count);
    category->items().append(item);
}

QString randomName(QRandomGenerator &random)
{
    static const QStringList pieces = {
        QStringLiteral("Milk"),          QStringLiteral("apple"),     QStringLiteral("Apple"),
        QStringLiteral("Fish & Chips"),  QStringLiteral("Tom's <b>"), QStringLiteral("\"quoted\""),
        QStringLiteral("Crème fraîche"), QStringLiteral("日本茶"),    QStringLiteral("〜Rice"),
        QStringLiteral("a;b"),           QStringLiteral("x"),         QStringLiteral("Zucchini"),
    };
    QString name = pieces.at(random.bounded(int(pieces.size())));
    if (random.bounded(2))
        name += QLatin1Char(' ') + QString::number(random.bounded(50));
    return name;
}

// A database of every shape the writer distinguishes, from a fixed seed.
void buildRandomDatabase(quint32 seed)
{
    QRandomGenerator random(seed);
    GRLists &lists = GRLists::shared();
    const int storeCount = 1 + random.bounded(5);
    for (int s = 0; s < storeCount; ++s) {
        const quint32 kolors[] = {Kolor::DefaultWord, Kolor::NoColorWord, 0x64102030u, 0x320A0B0Cu};
        addStore(randomName(random), kolors[random.bounded(4)], random.bounded(3), random.bounded(2));
    }
    const int categoryCount = 1 + random.bounded(6);
    for (int c = 0; c < categoryCount; ++c)
        addCategory(randomName(random));
    const int itemCount = random.bounded(60);
    for (int i = 0; i < itemCount; ++i) {
        addItem(lists.categories().at(random.bounded(categoryCount)), randomName(random),
                lists.stores().at(random.bounded(storeCount)), random.bounded(-6, 30), random.bounded(2),
                random.bounded(5));
    }
    GRPrefController &prefs = GRPrefController::sharedInstance();
    prefs.setColumnCount(1 + random.bounded(9));
    if (random.bounded(2)) {
        QList<qint64> order = GRPrefController::defaultAisleOrder();
        std::shuffle(order.begin(), order.end(), random);
        prefs.aisleOrder() = order;
    }
    if (random.bounded(2)) {
        prefs.setManualOrder(true);
        QList<GRCategoryPtr> shuffled = lists.categories();
        std::shuffle(shuffled.begin(), shuffled.end(), random);
        for (const GRCategoryPtr &category : shuffled)
            prefs.categoryOrder().append(GRCategoryOrderEntry{category, category->guid()});
    }
}

// Makes chosen steps of a save fail the way a broken or full device would.
class FaultyFileOps : public GRPosixFileOps
{
public:
    enum Step
    {
        CreateFails,
        WriteFails,
        ShortWrite,
        SyncFails,
        CloseFails,
        BackupFails,
        RenameFails,
        FolderSyncFails,
        FolderSyncAndRestoreFail,
    };
    explicit FaultyFileOps(Step step) : m_step(step) {}

    int createTemporary(const QString &folder, const QString &baseName, QString *path,
                        QString *error) override
    {
        if (m_step == CreateFails)
            return refuse(error, -1);
        return GRPosixFileOps::createTemporary(folder, baseName, path, error);
    }
    qint64 write(int handle, const char *data, qint64 size, QString *error) override
    {
        if (m_step == WriteFails)
            return refuse(error, -1);
        if (m_step == ShortWrite)
            size = qMin<qint64>(size, 10);
        return GRPosixFileOps::write(handle, data, size, error);
    }
    bool sync(int handle, QString *error) override
    {
        return m_step == SyncFails ? refuse(error, false) : GRPosixFileOps::sync(handle, error);
    }
    bool close(int handle, QString *error) override
    {
        const bool closed = GRPosixFileOps::close(handle, error);
        return m_step == CloseFails ? refuse(error, false) : closed;
    }
    bool link(const QString &from, const QString &to, QString *error) override
    {
        return m_step == BackupFails ? refuse(error, false) : GRPosixFileOps::link(from, to, error);
    }
    bool copy(const QString &from, const QString &to, QString *error) override
    {
        return m_step == BackupFails ? refuse(error, false) : GRPosixFileOps::copy(from, to, error);
    }
    bool rename(const QString &from, const QString &to, QString *error) override
    {
        const bool restoring = from.endsWith(QLatin1String("Groceries~.xml"));
        if ((m_step == RenameFails && !restoring) || (m_step == FolderSyncAndRestoreFail && restoring))
            return refuse(error, false);
        return GRPosixFileOps::rename(from, to, error);
    }
    bool syncFolder(const QString &folder, QString *error) override
    {
        if (m_step == FolderSyncFails || m_step == FolderSyncAndRestoreFail)
            return refuse(error, false);
        return GRPosixFileOps::syncFolder(folder, error);
    }

private:
    template <typename T> static T refuse(QString *error, T result)
    {
        if (error)
            *error = QStringLiteral("Injected failure");
        return result;
    }

    Step m_step;
};

} // namespace

class TestDatabaseFile : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void writesExactDocument_data();
    void writesExactDocument();
    void readsSections_data();
    void readsSections();
    void version_data();
    void version();
    void roundTripIsByteIdentical_data();
    void roundTripIsByteIdentical();
    void saveKeepsOneBackupOfThePreviousVersion();
    void failedSaveLeavesFileAlone_data();
    void failedSaveLeavesFileAlone();
    void folderWhereTheDatabaseShouldBe();
    void readOnlyFolder();
    void fileSizeLimitGivesShortWrite();
    void opening_data();
    void opening();

private:
    QString folderEntries() const;

    std::unique_ptr<QTemporaryDir> m_dir;
    int m_savedNotifications = 0;
    QObject m_observer;
};

void TestDatabaseFile::initTestCase()
{
    GRTestSupport::initEnvironment();
    s_previousHandler = qInstallMessageHandler(recordMessage);
    MGNotificationCenter::defaultCenter().addObserver(
        QStringLiteral("mwgroceries.saved"), &m_observer,
        [this](const QVariantMap &) { ++m_savedNotifications; });
}

void TestDatabaseFile::init()
{
    resetDatabase();
    m_dir = std::make_unique<QTemporaryDir>();
    QVERIFY(m_dir->isValid());
    g_databasePath = m_dir->filePath(QStringLiteral("Groceries.xml"));
    m_savedNotifications = 0;
}

void TestDatabaseFile::cleanup()
{
    SetDatabaseFileOps(nullptr);
    QFile::setPermissions(m_dir->path(),
                          QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner);
}

QString TestDatabaseFile::folderEntries() const
{
    return QDir(m_dir->path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot).join(u',');
}

void TestDatabaseFile::writesExactDocument_data()
{
    QTest::addColumn<bool>("full");
    QTest::addColumn<QString>("expected");

    QTest::newRow("empty lists, identity aisles, automatic order")
        << false
        << QStringLiteral("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                          "<groceries version=\"1\">\n"
                          "\t<stores></stores>\n"
                          "\t<categories></categories>\n"
                          "\t<columns>5</columns>\n"
                          "\t<items></items>\n"
                          "</groceries>\n");
    QTest::newRow("every optional part")
        << true
        << QStringLiteral("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                          "<groceries version=\"1\">\n"
                          "\t<stores>\n"
                          "\t\t<store>\n\t\t\t<name>Corner &amp; Co</name>\n\t\t\t<print>1</print>\n"
                          "\t\t\t<color>{10, 20, 30}</color>\n\t\t\t<top>1</top>\n\t\t</store>\n"
                          "\t\t<store>\n\t\t\t<name>Market</name>\n\t\t\t<print>0</print>\n"
                          "\t\t\t<color>{1, 2, 3, 50}</color>\n\t\t</store>\n"
                          "\t</stores>\n"
                          "\t<categories>\n"
                          "\t\t<category>\n\t\t\t<name>Fruit</name>\n\t\t</category>\n"
                          "\t\t<category>\n\t\t\t<name>Dairy</name>\n\t\t</category>\n"
                          "\t</categories>\n"
                          "\t<columns>3</columns>\n"
                          "\t<aisleOrder>\n\t\t<i>0</i>\n\t\t<i>2</i>\n\t\t<i>1</i>\n\t\t<i>3</i>\n"
                          "\t\t<i>4</i>\n\t\t<i>5</i>\n\t\t<i>6</i>\n\t</aisleOrder>\n"
                          "\t<categoryOrder>\n\t\t<i>1</i>\n\t\t<i>0</i>\n\t</categoryOrder>\n"
                          "\t<items>\n"
                          "\t\t<item>\n\t\t\t<name>Apple</name>\n\t\t\t<category>1</category>\n"
                          "\t\t\t<store>0</store>\n\t\t\t<aisle>-2</aisle>\n\t\t\t<need>1</need>\n"
                          "\t\t\t<count>3</count>\n\t\t</item>\n"
                          "\t\t<item>\n\t\t\t<name>banana</name>\n\t\t\t<category>0</category>\n"
                          "\t\t\t<store>1</store>\n\t\t</item>\n"
                          "\t\t<item>\n\t\t\t<name>Cherry</name>\n\t\t\t<category>0</category>\n"
                          "\t\t\t<store>1</store>\n\t\t\t<aisle>4</aisle>\n\t\t\t<count>5</count>\n"
                          "\t\t</item>\n"
                          "\t</items>\n"
                          "</groceries>\n");
}

void TestDatabaseFile::writesExactDocument()
{
    QFETCH(bool, full);
    QFETCH(QString, expected);

    if (full) {
        GRStorePtr corner = addStore(QStringLiteral("Corner & Co"), 0x641E140Au, 1, true);
        GRStorePtr market = addStore(QStringLiteral("Market"), 0x32030201u);
        GRCategoryPtr fruit = addCategory(QStringLiteral("Fruit"));
        GRCategoryPtr dairy = addCategory(QStringLiteral("Dairy"));
        addItem(fruit, QStringLiteral("Cherry"), market, 4, false, 5);
        addItem(fruit, QStringLiteral("banana"), market);
        addItem(dairy, QStringLiteral("Apple"), corner, -2, true, 3);
        GRPrefController &prefs = GRPrefController::sharedInstance();
        prefs.setColumnCount(3);
        prefs.aisleOrder() = {0, 2, 1, 3, 4, 5, 6};
        prefs.setManualOrder(true);
        prefs.categoryOrder() = {GRCategoryOrderEntry{dairy, dairy->guid()},
                                 GRCategoryOrderEntry{fruit, fruit->guid()}};
    }
    QCOMPARE(GroceriesXml(), expected);
    QVERIFY(SaveGroceries());
    QCOMPARE(readBytes(g_databasePath), expected.toUtf8());
}

void TestDatabaseFile::readsSections_data()
{
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<QString>("stores");     // names, comma separated
    QTest::addColumn<QString>("categories"); // "name:item+item" per category
    QTest::addColumn<quint64>("columns");
    QTest::addColumn<QString>("aisleOrder");
    QTest::addColumn<QString>("categoryOrder"); // "-" when manual order stays off

    const QByteArray twoStores =
        "<stores><store><name>S0</name></store><store><name>S1</name></store></stores>\n";
    const QByteArray twoCategories = "<categories><category><name>C0</name></category>"
                                     "<category><name>C1</name></category></categories>\n";
    const QString kept = QStringLiteral("6 5 4 3 2 1 0");

    QTest::newRow("empty sections") << QByteArray("<stores></stores><categories/><items></items>")
                                    << QString() << QString() << quint64(7) << kept << QStringLiteral("-");
    QTest::newRow("items in file order, first store and category as fallback")
        << twoStores + twoCategories +
               "<items><item><name>b</name><category>1</category><store>1</store></item>"
               "<item><name>a</name><category>9</category><store>-4</store></item>"
               "<item><name>c</name><category>1</category></item></items>"
        << QStringLiteral("S0,S1") << QStringLiteral("C0:a,C1:b+c") << quint64(7) << kept
        << QStringLiteral("-");
    QTest::newRow("items before stores and categories are dropped")
        << "<items><item><name>lost</name><category>0</category><store>0</store></item></items>" + twoStores +
               twoCategories
        << QStringLiteral("S0,S1") << QStringLiteral("C0:,C1:") << quint64(7) << kept << QStringLiteral("-");
    QTest::newRow("self-closing records")
        << QByteArray("<stores><store/><store><name>S1</name></store></stores>"
                      "<categories><category/></categories>"
                      "<items><item/><item><name>x</name></item></items>")
        << QStringLiteral(",S1") << QStringLiteral(":x") << quint64(7) << kept << QStringLiteral("-");
    QTest::newRow("category order drops bad, repeated and early indices")
        << "<categoryOrder><i>0</i></categoryOrder>" + twoStores + twoCategories +
               "<categoryOrder><i>1</i><i>5</i><i>-1</i><i>1</i><i>0</i></categoryOrder>"
        << QStringLiteral("S0,S1") << QStringLiteral("C0:,C1:") << quint64(7) << kept
        << QStringLiteral("C1 C0");
    QTest::newRow("empty category order turns manual order on")
        << twoCategories + "<categoryOrder></categoryOrder>" << QString() << QStringLiteral("C0:,C1:")
        << quint64(7) << kept << QString();
    QTest::newRow("aisle order permutation")
        << QByteArray("<aisleOrder><i>3</i><i>0</i><i>1</i><i>2</i><i>6</i><i>5</i><i>4</i></aisleOrder>")
        << QString() << QString() << quint64(7) << QStringLiteral("3 0 1 2 6 5 4") << QStringLiteral("-");
    QTest::newRow("aisle order with a repeat falls back to the default")
        << QByteArray("<aisleOrder><i>0</i><i>0</i><i>1</i><i>2</i><i>3</i><i>4</i><i>5</i></aisleOrder>")
        << QString() << QString() << quint64(7) << QStringLiteral("0 1 2 3 4 5 6") << QStringLiteral("-");
    QTest::newRow("empty aisle order falls back to the default")
        << QByteArray("<aisleOrder/>") << QString() << QString() << quint64(7)
        << QStringLiteral("0 1 2 3 4 5 6") << QStringLiteral("-");
    QTest::newRow("columns") << QByteArray("<columns>3</columns>") << QString() << QString() << quint64(3)
                             << kept << QStringLiteral("-");
    QTest::newRow("columns zero") << QByteArray("<columns>0</columns>") << QString() << QString()
                                  << quint64(1) << kept << QStringLiteral("-");
    QTest::newRow("columns beyond 2^64")
        << QByteArray("<columns>99999999999999999999999</columns>") << QString() << QString() << quint64(100)
        << kept << QStringLiteral("-");
    QTest::newRow("unknown sections ignored")
        << "<notes><store><name>N</name></store></notes>" + twoStores << QStringLiteral("S0,S1") << QString()
        << quint64(7) << kept << QStringLiteral("-");
}

void TestDatabaseFile::readsSections()
{
    QFETCH(QByteArray, body);
    QFETCH(QString, stores);
    QFETCH(QString, categories);
    QFETCH(quint64, columns);
    QFETCH(QString, aisleOrder);
    QFETCH(QString, categoryOrder);

    GRPrefController &prefs = GRPrefController::sharedInstance();
    prefs.setColumnCount(7);
    prefs.aisleOrder() = {6, 5, 4, 3, 2, 1, 0};
    writeBytes(g_databasePath, document(body));
    QVERIFY(ReadModernDatabase(g_databasePath));

    QStringList storeNames;
    for (const GRStorePtr &store : GRLists::shared().stores())
        storeNames.append(store->name());
    QCOMPARE(storeNames.join(u','), stores);

    QStringList categoryTexts;
    for (const GRCategoryPtr &category : GRLists::shared().categories()) {
        QStringList itemNames;
        for (const GRItemPtr &item : category->items()) {
            itemNames.append(item->name());
            QCOMPARE(item->category(), category);
            QVERIFY(GRLists::shared().stores().contains(item->store()));
        }
        categoryTexts.append(category->name() + u':' + itemNames.join(u'+'));
    }
    QCOMPARE(categoryTexts.join(u','), categories);

    QCOMPARE(prefs.columnCount(), columns);
    QStringList aisles;
    for (qint64 group : prefs.aisleOrder())
        aisles.append(QString::number(group));
    QCOMPARE(aisles.join(u' '), aisleOrder);

    if (categoryOrder == QLatin1String("-")) {
        QVERIFY(!prefs.manualOrder());
    } else {
        QVERIFY(prefs.manualOrder());
        QStringList order;
        for (const GRCategoryOrderEntry &entry : prefs.categoryOrder()) {
            QCOMPARE(entry.guid, entry.cat->guid());
            order.append(entry.cat->name());
        }
        QCOMPARE(order.join(u' '), categoryOrder);
    }
}

void TestDatabaseFile::version_data()
{
    QTest::addColumn<QByteArray>("attributes");
    QTest::addColumn<bool>("accepted");

    QTest::newRow("none") << QByteArray() << true;
    QTest::newRow("0") << QByteArray(" version=\"0\"") << true;
    QTest::newRow("1") << QByteArray(" version=\"1\"") << true;
    QTest::newRow("not a number") << QByteArray(" version=\"one\"") << true;
    QTest::newRow("2") << QByteArray(" version=\"2\"") << false;
    QTest::newRow("2 after another attribute") << QByteArray(" lang=\"en\" version=\"2\"") << false;
    QTest::newRow("huge") << QByteArray(" version=\"18446744073709551617\"") << false;
}

void TestDatabaseFile::version()
{
    QFETCH(QByteArray, attributes);
    QFETCH(bool, accepted);

    writeBytes(g_databasePath, document("<stores><store><name>S</name></store></stores>", attributes));
    MGAlert::sharedInstance().setNextAnswer(0);
    QCOMPARE(ReadModernDatabase(g_databasePath), accepted);
    QCOMPARE(GRLists::shared().stores().size(), accepted ? 1 : 0);

    const QList<MGAlert::Request> &alerts = MGAlert::sharedInstance().shownAlerts();
    QCOMPARE(alerts.size(), accepted ? 0 : 1);
    if (!accepted) {
        QCOMPARE(alerts.first().message, QStringLiteral("Groceries compatibility problem."));
        QCOMPARE(alerts.first().moreInfo,
                 QStringLiteral("The groceries database is newer than this version of "
                                "Groceries. You need to upgrade to the latest version."));
    }
    QCOMPARE(IsReadableDatabase(g_databasePath), accepted);
    QCOMPARE(MGAlert::sharedInstance().shownAlerts().size(), accepted ? 0 : 1);
}

void TestDatabaseFile::roundTripIsByteIdentical_data()
{
    QTest::addColumn<quint32>("seed");
    QTest::addColumn<QString>("resource");

    for (quint32 seed = 1; seed <= 12; ++seed)
        QTest::addRow("random %u", seed) << seed << QString();
    for (int option = GRTemplateOmnivore; option <= GRTemplateVegan; ++option)
        QTest::addRow("template %d", option) << 0u << TemplateResourcePath(option);
}

void TestDatabaseFile::roundTripIsByteIdentical()
{
    QFETCH(quint32, seed);
    QFETCH(QString, resource);

    if (resource.isEmpty()) {
        buildRandomDatabase(seed);
    } else {
        if (!QFile::exists(resource))
            QSKIP("template resource not built in");
        QVERIFY(ReadModernDatabase(resource));
        QVERIFY(!GRLists::shared().stores().isEmpty());
        QVERIFY(!GRLists::shared().categories().isEmpty());
    }
    QVERIFY(SaveGroceries());
    const QByteArray first = readBytes(g_databasePath);
    QCOMPARE(QString::fromUtf8(first), GroceriesXml());

    resetDatabase();
    QVERIFY(ReadModernDatabase(g_databasePath));
    QVERIFY(SaveGroceries());
    const QByteArray second = readBytes(g_databasePath);
    QCOMPARE(QString::fromUtf8(second), QString::fromUtf8(first));
    QCOMPARE(readBytes(DatabaseBackupPath(g_databasePath)), first);
}

void TestDatabaseFile::saveKeepsOneBackupOfThePreviousVersion()
{
    GRStorePtr store = addStore(QStringLiteral("Shop"));
    GRCategoryPtr category = addCategory(QStringLiteral("Food"));

    g_dirty = true;
    GRPrefController::sharedInstance().setDirty(true);
    QVERIFY(SaveGroceries());
    QVERIFY(!g_dirty);
    QVERIFY(!GRPrefController::sharedInstance().dirty());
    QCOMPARE(m_savedNotifications, 1);
    const QByteArray first = readBytes(g_databasePath);
    QCOMPARE(folderEntries(), QStringLiteral("Groceries.xml"));

    addItem(category, QStringLiteral("Bread"), store);
    QVERIFY(SaveGroceries());
    const QByteArray second = readBytes(g_databasePath);
    QCOMPARE(readBytes(DatabaseBackupPath(g_databasePath)), first);

    addItem(category, QStringLiteral("Butter"), store);
    QVERIFY(SaveGroceries());
    QCOMPARE(readBytes(DatabaseBackupPath(g_databasePath)), second);
    QCOMPARE(readBytes(g_databasePath), GroceriesXml().toUtf8());
    QCOMPARE(folderEntries(), QStringLiteral("Groceries.xml,Groceries~.xml"));
    QCOMPARE(m_savedNotifications, 3);
    QVERIFY(MGAlert::sharedInstance().shownAlerts().isEmpty());
}

void TestDatabaseFile::failedSaveLeavesFileAlone_data()
{
    QTest::addColumn<int>("step");
    QTest::addColumn<bool>("hasPrevious");
    QTest::addColumn<QString>("logLine");
    QTest::addColumn<QString>("restoreLine");
    QTest::addColumn<bool>("mainKept");

    const QString write = QStringLiteral("Can't write database ");
    const QString rename = QStringLiteral("Can't rename previous version ");
    const QString restore = QStringLiteral("Can't restore database after failure ");
    QTest::newRow("temporary file refused")
        << int(FaultyFileOps::CreateFails) << true << write << QString() << true;
    QTest::newRow("write error") << int(FaultyFileOps::WriteFails) << true << write << QString() << true;
    QTest::newRow("short write") << int(FaultyFileOps::ShortWrite) << true << write << QString() << true;
    QTest::newRow("short write, first save")
        << int(FaultyFileOps::ShortWrite) << false << write << QString() << true;
    QTest::newRow("flush") << int(FaultyFileOps::SyncFails) << true << write << QString() << true;
    QTest::newRow("close") << int(FaultyFileOps::CloseFails) << true << write << QString() << true;
    QTest::newRow("backup") << int(FaultyFileOps::BackupFails) << true << rename << QString() << true;
    QTest::newRow("rename") << int(FaultyFileOps::RenameFails) << true << write << QString() << true;
    QTest::newRow("folder flush") << int(FaultyFileOps::FolderSyncFails) << true << write << QString()
                                  << true;
    QTest::newRow("folder flush, first save")
        << int(FaultyFileOps::FolderSyncFails) << false << write << QString() << true;
    QTest::newRow("folder flush and restore")
        << int(FaultyFileOps::FolderSyncAndRestoreFail) << true << write << restore << false;
}

void TestDatabaseFile::failedSaveLeavesFileAlone()
{
    QFETCH(int, step);
    QFETCH(bool, hasPrevious);
    QFETCH(QString, logLine);
    QFETCH(QString, restoreLine);
    QFETCH(bool, mainKept);

    const QByteArray previous = "previous version, not even XML\n";
    if (hasPrevious)
        writeBytes(g_databasePath, previous);
    addStore(QStringLiteral("Shop"));
    addCategory(QStringLiteral("Food"));
    g_dirty = true;
    GRPrefController::sharedInstance().setDirty(true);

    FaultyFileOps ops(static_cast<FaultyFileOps::Step>(step));
    SetDatabaseFileOps(&ops);
    MGAlert::sharedInstance().setNextAnswer(0);
    QVERIFY(!SaveGroceries());

    if (mainKept)
        QCOMPARE(readBytes(g_databasePath), hasPrevious ? previous : QByteArray());
    QCOMPARE(QFile::exists(g_databasePath), hasPrevious || !mainKept);
    const QStringList leftovers =
        QDir(m_dir->path()).entryList({QStringLiteral(".Groceries.xml.*")}, QDir::Files | QDir::Hidden);
    QVERIFY2(leftovers.isEmpty(), qPrintable(leftovers.join(u',')));

    QVERIFY2(logHas(logLine + g_databasePath), qPrintable(s_log.join(u'\n')));
    QCOMPARE(logHas(QStringLiteral("Can't restore")), !restoreLine.isEmpty());
    if (!restoreLine.isEmpty())
        QVERIFY(logHas(restoreLine + DatabaseBackupPath(g_databasePath)));

    const QList<MGAlert::Request> &alerts = MGAlert::sharedInstance().shownAlerts();
    QCOMPARE(alerts.size(), 1);
    QCOMPARE(alerts.first().message, QStringLiteral("Save failed."));
    QCOMPARE(alerts.first().moreInfo, QStringLiteral("I can't save the groceries database."));
    QVERIFY(g_dirty);
    QVERIFY(GRPrefController::sharedInstance().dirty());
    QCOMPARE(m_savedNotifications, 0);

    // Nothing stays broken: the next save with a sound file system goes through.
    SetDatabaseFileOps(nullptr);
    QVERIFY(SaveGroceries());
    QCOMPARE(readBytes(g_databasePath), GroceriesXml().toUtf8());
}

void TestDatabaseFile::folderWhereTheDatabaseShouldBe()
{
    QVERIFY(QDir().mkpath(g_databasePath));
    addStore(QStringLiteral("Shop"));
    MGAlert::sharedInstance().setNextAnswer(0);
    QVERIFY(!SaveGroceries());
    QVERIFY(QFileInfo(g_databasePath).isDir());
    QVERIFY2(logHas(QStringLiteral("Can't rename previous version %1 to %2: ")
                        .arg(g_databasePath, DatabaseBackupPath(g_databasePath))),
             qPrintable(s_log.join(u'\n')));
    QCOMPARE(MGAlert::sharedInstance().shownAlerts().size(), 1);
    QCOMPARE(folderEntries(), QStringLiteral("Groceries.xml"));
}

void TestDatabaseFile::readOnlyFolder()
{
    if (::geteuid() == 0)
        QSKIP("the superuser writes into read-only folders; the failing steps are covered by the seam");
    const QByteArray previous = "kept\n";
    writeBytes(g_databasePath, previous);
    addStore(QStringLiteral("Shop"));
    QVERIFY(QFile::setPermissions(m_dir->path(), QFileDevice::ReadOwner | QFileDevice::ExeOwner));
    MGAlert::sharedInstance().setNextAnswer(0);
    QVERIFY(!SaveGroceries());
    QCOMPARE(readBytes(g_databasePath), previous);
    QVERIFY(logHas(QStringLiteral("Can't write database ") + g_databasePath));
    QCOMPARE(folderEntries(), QStringLiteral("Groceries.xml"));
}

// A file size limit makes the kernel accept only part of a write, as a full disk does, and
// binds even the superuser.
void TestDatabaseFile::fileSizeLimitGivesShortWrite()
{
    const QByteArray previous = "kept\n";
    writeBytes(g_databasePath, previous);
    for (int i = 0; i < 20; ++i)
        addStore(QStringLiteral("Store number %1").arg(i));

    struct rlimit original;
    QCOMPARE(::getrlimit(RLIMIT_FSIZE, &original), 0);
    struct rlimit limit = original;
    limit.rlim_cur = 300;
    const auto previousHandler = std::signal(SIGXFSZ, SIG_IGN);
    QCOMPARE(::setrlimit(RLIMIT_FSIZE, &limit), 0);
    MGAlert::sharedInstance().setNextAnswer(0);
    const bool ok = SaveGroceries();
    ::setrlimit(RLIMIT_FSIZE, &original);
    std::signal(SIGXFSZ, previousHandler);

    QVERIFY(!ok);
    QCOMPARE(readBytes(g_databasePath), previous);
    QVERIFY2(logHas(QStringLiteral("Can't write database %1: only 300 of ").arg(g_databasePath)),
             qPrintable(s_log.join(u'\n')));
    QCOMPARE(folderEntries(), QStringLiteral("Groceries.xml"));
}

void TestDatabaseFile::opening_data()
{
    QTest::addColumn<QByteArray>("main");   // empty: no file
    QTest::addColumn<QByteArray>("backup"); // empty: no file
    QTest::addColumn<int>("answer");        // -1: the selector must not be asked
    QTest::addColumn<bool>("offered");
    QTest::addColumn<int>("result");
    QTest::addColumn<QString>("stores");
    QTest::addColumn<int>("alerts");

    const QByteArray good = document("<stores><store><name>Main</name></store></stores>"
                                     "<categories><category><name>Cat</name></category></categories>");
    const QByteArray saved = document("<stores><store><name>Saved</name></store></stores>"
                                      "<categories><category><name>Cat</name></category></categories>");
    const QByteArray newer = document("<stores/>", " version=\"2\"");
    const QByteArray truncated = saved.left(saved.indexOf("<categories>") + 5);
    const int loaded = int(GROpenResult::Loaded);
    const int created = int(GROpenResult::Created);
    const int quit = int(GROpenResult::Quit);

    QTest::newRow("main reads") << good << saved << -1 << false << loaded << QStringLiteral("Main") << 0;
    QTest::newRow("nothing, cancelled")
        << QByteArray() << QByteArray() << 4 << false << quit << QString() << 0;
    QTest::newRow("nothing, minimal")
        << QByteArray() << QByteArray() << 0 << false << created << QStringLiteral("Grocery Store") << 0;
    QTest::newRow("broken main, restore")
        << QByteArray("garbage") << saved << 5 << true << created << QStringLiteral("Saved") << 0;
    QTest::newRow("broken main, minimal instead")
        << QByteArray("garbage") << saved << 0 << true << created << QStringLiteral("Grocery Store") << 0;
    QTest::newRow("newer main, restore")
        << newer << saved << 5 << true << created << QStringLiteral("Saved") << 1;
    QTest::newRow("truncated backup not offered")
        << QByteArray() << truncated << 5 << false << created << QStringLiteral("Grocery Store") << 0;
    QTest::newRow("newer backup not offered, silently")
        << QByteArray() << newer << 0 << false << created << QStringLiteral("Grocery Store") << 0;
    QTest::newRow("empty main reads as a database without stores")
        << document("") << QByteArray() << -1 << false << loaded << QStringLiteral("Grocery Store") << 0;
}

void TestDatabaseFile::opening()
{
    QFETCH(QByteArray, main);
    QFETCH(QByteArray, backup);
    QFETCH(int, answer);
    QFETCH(bool, offered);
    QFETCH(int, result);
    QFETCH(QString, stores);
    QFETCH(int, alerts);

    const QString folder = DatabaseFolder();
    QVERIFY(folder.endsWith(QLatin1String("/Marlowick")));
    QDir(folder).removeRecursively();
    if (!main.isEmpty()) {
        QVERIFY(QDir().mkpath(folder));
        writeBytes(folder + QLatin1String("/Groceries.xml"), main);
    }
    if (!backup.isEmpty()) {
        QVERIFY(QDir().mkpath(folder));
        writeBytes(folder + QLatin1String("/Groceries~.xml"), backup);
    }

    int asked = 0;
    bool offeredRestore = false;
    const GROpenResult opened = OpenGroceryDatabase([&](bool offerRestore) {
        ++asked;
        offeredRestore = offerRestore;
        return answer;
    });
    QCOMPARE(int(opened), result);
    QCOMPARE(asked, answer < 0 ? 0 : 1);
    QCOMPARE(offeredRestore, offered);
    QCOMPARE(g_databasePath, folder + QLatin1String("/Groceries.xml"));
    QCOMPARE(g_dirty, opened == GROpenResult::Created);
    QCOMPARE(MGAlert::sharedInstance().shownAlerts().size(), alerts);

    QStringList storeNames;
    for (const GRStorePtr &store : GRLists::shared().stores())
        storeNames.append(store->name());
    QCOMPARE(storeNames.join(u','), stores);
    if (opened != GROpenResult::Quit)
        QVERIFY(!GRLists::shared().categories().isEmpty());
    if (main.isEmpty())
        QVERIFY(!QFile::exists(folder + QLatin1String("/Groceries.xml")));
}

QTEST_MAIN(TestDatabaseFile)
#include "tst_databasefile.moc"
