#include "GRCategory.h"
#include "GRDatabaseFile.h"
#include "GRItem.h"
#include "GRLists.h"
#include "GRPrefController.h"
#include "GRStore.h"
#include "GRTestSupport.h"
#include "MGAlert.h"

#include <QDir>
#include <QFile>
#include <QTest>

namespace {

QString brokenFolder()
{
    return GRTestSupport::dataPath(QStringLiteral("data/broken"));
}

QMap<QString, QString> readManifest()
{
    QMap<QString, QString> expected;
    QFile file(brokenFolder() + QLatin1String("/EXPECTED"));
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text))
        return expected;
    while (!file.atEnd()) {
        const QString line = QString::fromUtf8(file.readLine()).trimmed();
        if (line.isEmpty() || line.startsWith(u'#'))
            continue;
        const QStringList parts = line.split(u' ', Qt::SkipEmptyParts);
        if (parts.size() == 2)
            expected.insert(parts.at(0), parts.at(1));
    }
    return expected;
}

void resetDatabase()
{
    GRLists::shared().clear();
    GRPrefController &prefs = GRPrefController::sharedInstance();
    prefs.setColumnCount(GRPrefController::DefaultColumnCount);
    prefs.aisleOrder() = GRPrefController::defaultAisleOrder();
    prefs.categoryOrder().clear();
    prefs.setManualOrder(false);
    MGAlert::sharedInstance().clearNextAnswers();
    MGAlert::sharedInstance().clearShownAlerts();
}

} // namespace

class TestBrokenFiles : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void manifestListsEveryFile();
    void readsWithoutHarm_data();
    void readsWithoutHarm();
};

void TestBrokenFiles::initTestCase()
{
    GRTestSupport::initEnvironment();
    QVERIFY(!readManifest().isEmpty());
}

void TestBrokenFiles::init()
{
    resetDatabase();
}

void TestBrokenFiles::manifestListsEveryFile()
{
    QStringList files = QDir(brokenFolder()).entryList(QDir::Files);
    files.removeAll(QStringLiteral("EXPECTED"));
    QCOMPARE(files, readManifest().keys());
    for (const QString &result : readManifest())
        QVERIFY2(result == QLatin1String("ok") || result == QLatin1String("refused"), qPrintable(result));
}

void TestBrokenFiles::readsWithoutHarm_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<bool>("accepted");

    const QMap<QString, QString> manifest = readManifest();
    for (auto it = manifest.cbegin(); it != manifest.cend(); ++it) {
        QTest::newRow(qPrintable(it.key()))
            << brokenFolder() + u'/' + it.key() << (it.value() == QLatin1String("ok"));
    }
}

// Whatever the file held, what was read must be a database the rest of the program can use.
void TestBrokenFiles::readsWithoutHarm()
{
    QFETCH(QString, path);
    QFETCH(bool, accepted);

    QVERIFY(QFile::exists(path));
    QCOMPARE(ReadModernDatabase(path), accepted);

    GRLists &lists = GRLists::shared();
    if (!accepted) {
        QVERIFY(lists.stores().isEmpty());
        QVERIFY(lists.categories().isEmpty());
        QVERIFY(!IsReadableDatabase(path));
    }
    for (const GRStorePtr &store : lists.stores())
        QVERIFY(store);
    for (const GRCategoryPtr &category : lists.categories()) {
        QVERIFY(category);
        for (const GRItemPtr &item : category->items()) {
            QCOMPARE(item->category(), category);
            QVERIFY(lists.stores().contains(item->store()));
        }
    }

    GRPrefController &prefs = GRPrefController::sharedInstance();
    QVERIFY(prefs.columnCount() >= 1 && prefs.columnCount() <= 100);
    QList<qint64> aisles = prefs.aisleOrder();
    std::sort(aisles.begin(), aisles.end());
    QCOMPARE(aisles, GRPrefController::defaultAisleOrder());
    QSet<GRCategory *> ordered;
    for (const GRCategoryOrderEntry &entry : prefs.categoryOrder()) {
        QVERIFY(lists.categories().contains(entry.cat));
        QVERIFY(!ordered.contains(entry.cat.get()));
        ordered.insert(entry.cat.get());
    }

    // What was read saves and reads back to the same document.
    const QString saved = GroceriesXml();
    resetDatabase();
    QVERIFY(ReadModernDatabaseData(saved.toUtf8()));
    QCOMPARE(GroceriesXml(), saved);
}

QTEST_MAIN(TestBrokenFiles)
#include "tst_brokenfiles.moc"
