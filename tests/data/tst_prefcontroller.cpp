#include "GRCategory.h"
#include "GRKeyNames.h"
#include "GRLists.h"
#include "GRPrefController.h"
#include "GRTestSupport.h"
#include "MGNotificationCenter.h"

#include <QFile>
#include <QSettings>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

QStringList g_logLines;

void captureWarnings(QtMsgType type, const QMessageLogContext &, const QString &message)
{
    if (type == QtWarningMsg || type == QtCriticalMsg)
        g_logLines.append(message);
}

void store(const QString &key, const QVariant &value)
{
    QSettings(u"Marlowick"_s, u"Groceries"_s).setValue(key, value);
}

QVariant stored(const QString &key)
{
    return QSettings(u"Marlowick"_s, u"Groceries"_s).value(key);
}

// Categories named by letters, each with the GUID "G-" and its name.
QList<GRCategoryPtr> makeCategories(const QString &names)
{
    QList<GRCategoryPtr> list;
    for (const QChar name : names) {
        list.append(GRCategory::create());
        list.last()->setName(QString(name));
        list.last()->setGuid(u"G-"_s + name);
    }
    return list;
}

QString orderNames(const QList<GRCategoryOrderEntry> &order)
{
    QString names;
    for (const GRCategoryOrderEntry &entry : order)
        names += entry.cat ? entry.cat->name() : u"?"_s;
    return names;
}

} // namespace

class TestPrefController : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { GRTestSupport::initEnvironment(); }
    void init();
    void cleanup();

    void defaultsWithEmptySettings();
    void roundTrip_data();
    void roundTrip();
    void savedUnderTheExactKeys();
    void keyNames_data();
    void keyNames();
    void unreadableValueFallsBack_data();
    void unreadableValueFallsBack();
    void textFromSettingsFile_data();
    void textFromSettingsFile();
    void columnCountNeverBelowOne();
    void updateCategories_data();
    void updateCategories();
    void lookupByGuidAndName_data();
    void lookupByGuidAndName();
    void resetOrder();

private:
    void verifyDefaults(GRPrefController &prefs);
    QtMessageHandler m_previousHandler = nullptr;
};

void TestPrefController::init()
{
    QSettings settings(u"Marlowick"_s, u"Groceries"_s);
    settings.clear();
    settings.sync();
    GRLists::shared().clear();
    g_customKeyNames.clear();
    g_logLines.clear();
    m_previousHandler = qInstallMessageHandler(captureWarnings);
}

void TestPrefController::cleanup()
{
    qInstallMessageHandler(m_previousHandler);
    GRLists::shared().clear();
}

void TestPrefController::verifyDefaults(GRPrefController &prefs)
{
    const QFont userFont = DefaultUserFont();
    QCOMPARE(userFont.pointSizeF(), 12.0);
    QCOMPARE(prefs.displayFont().toString(), userFont.toString());
    QCOMPARE(prefs.printFont().toString(), userFont.toString());
    QCOMPARE(prefs.columnCount(), quint64(5));
    QCOMPARE(prefs.aisleOrder(), QList<qint64>({0, 1, 2, 3, 4, 5, 6}));
    QVERIFY(prefs.categoryOrder().isEmpty());
    QVERIFY(!prefs.manualOrder());
    QVERIFY(prefs.showKeys());
    QVERIFY(prefs.confirmDelete());
    QCOMPARE(prefs.printScope(), 0);
    QVERIFY(!prefs.ignorePageStarts());
    QVERIFY(prefs.emailTarget().isEmpty());
    QVERIFY(!prefs.dirty());
    QVERIFY(g_customKeyNames.isEmpty());
    const QPageLayout &page = prefs.printInfo().pageLayout();
    QCOMPARE(prefs.printInfo().scale(), 1.0);
    QCOMPARE(page.orientation(), QPageLayout::Portrait);
    QCOMPARE(page.margins(QPageLayout::Point), QMarginsF(36, 36, 36, 36));
    QVERIFY(page.pageSize().id() == QPageSize::A4 || page.pageSize().id() == QPageSize::Letter);
}

void TestPrefController::defaultsWithEmptySettings()
{
    GRPrefController prefs;
    verifyDefaults(prefs);
    QVERIFY2(g_logLines.isEmpty(), qPrintable(g_logLines.join(u'\n')));
    QCOMPARE(stored(u"NSPrintHeaderAndFooter"_s), QVariant(true));

    // Only set when absent: the user's own choice stays.
    store(u"NSPrintHeaderAndFooter"_s, false);
    GRPrefController again;
    QCOMPARE(stored(u"NSPrintHeaderAndFooter"_s), QVariant(false));
}

void TestPrefController::roundTrip_data()
{
    QTest::addColumn<QPageLayout>("page");
    QTest::addColumn<double>("scale");
    QTest::addColumn<qint32>("scope");
    QTest::addColumn<bool>("flags");
    QTest::addColumn<QString>("email");

    const QSizeF customSize(300, 500);
    QTest::newRow("letter landscape")
        << QPageLayout(QPageSize(QPageSize::Letter), QPageLayout::Landscape, QMarginsF(10, 20, 30, 40.5))
        << 0.75 << 1 << true << u"me@example.org"_s;
    QTest::newRow("custom paper") << QPageLayout(QPageSize(customSize, QPageSize::Point, QString(),
                                                           QPageSize::ExactMatch),
                                                 QPageLayout::Portrait, QMarginsF())
                                  << 2.5 << 2 << false << u"a@b, c@d"_s;
    QTest::newRow("a5") << QPageLayout(QPageSize(QPageSize::A5), QPageLayout::Portrait,
                                       QMarginsF(72, 0, 72, 0))
                        << 1.0 << 0 << true << QString();
}

void TestPrefController::roundTrip()
{
    QFETCH(QPageLayout, page);
    QFETCH(double, scale);
    QFETCH(qint32, scope);
    QFETCH(bool, flags);
    QFETCH(QString, email);

    QFont display(u"DejaVu Sans"_s, 15);
    display.setPointSizeF(15.5);
    display.setBold(flags);
    QFont printing(u"DejaVu Serif"_s, 9);
    printing.setItalic(!flags);
    {
        GRPrefController prefs;
        prefs.setDisplayFont(display);
        prefs.setPrintFont(printing);
        prefs.printInfo().setPageLayout(page);
        prefs.printInfo().setScale(scale);
        prefs.setPrintScope(scope);
        prefs.setIgnorePageStarts(flags);
        prefs.setShowKeys(flags);
        prefs.setConfirmDelete(!flags);
        prefs.setEmailTarget(email);
        // Database-side and run-time fields do not travel through the settings.
        prefs.setColumnCount(9);
        prefs.aisleOrder() = {6, 5, 4, 3, 2, 1, 0};
        prefs.setPrintStoreGuid(u"STORE"_s);
        prefs.savePreferences();
    }
    GRPrefController prefs;
    QVERIFY2(g_logLines.isEmpty(), qPrintable(g_logLines.join(u'\n')));
    QCOMPARE(prefs.displayFont().toString(), display.toString());
    QCOMPARE(prefs.printFont().toString(), printing.toString());
    const QPageLayout &loaded = prefs.printInfo().pageLayout();
    QCOMPARE(loaded.pageSize().id(), page.pageSize().id());
    QCOMPARE(loaded.pageSize().size(QPageSize::Point), page.pageSize().size(QPageSize::Point));
    QCOMPARE(loaded.orientation(), page.orientation());
    QCOMPARE(loaded.margins(QPageLayout::Point), page.margins(QPageLayout::Point));
    QCOMPARE(prefs.printInfo().scale(), scale);
    QCOMPARE(prefs.printScope(), scope);
    QCOMPARE(prefs.ignorePageStarts(), flags);
    QCOMPARE(prefs.showKeys(), flags);
    QCOMPARE(prefs.confirmDelete(), !flags);
    QCOMPARE(prefs.emailTarget(), email);
    QCOMPARE(prefs.columnCount(), quint64(5));
    QCOMPARE(prefs.aisleOrder(), GRPrefController::defaultAisleOrder());
    QVERIFY(prefs.printStoreGuid().isEmpty());
}

// The delete confirmation and the e-mail target differ only by their prefix.
void TestPrefController::savedUnderTheExactKeys()
{
    store(u"mwgroceries.confirm"_s, u"old@example.org"_s);
    GRPrefController prefs;
    QCOMPARE(prefs.emailTarget(), u"old@example.org"_s);
    prefs.setConfirmDelete(false);
    prefs.setShowKeys(false);
    prefs.setIgnorePageStarts(true);
    prefs.setPrintScope(2);
    prefs.savePreferences();
    QCOMPARE(stored(u"com.marlowick.groceries.confirm"_s).toBool(), false);
    QCOMPARE(stored(u"mwgroceries.confirm"_s).toString(), u"old@example.org"_s);
    QCOMPARE(stored(u"mwgroceries.showKeys"_s).toBool(), false);
    QCOMPARE(stored(u"com.marlowick.groceries.ignorePageStarts"_s).toBool(), true);
    QCOMPARE(stored(u"com.marlowick.groceries.printNeeded"_s).toInt(), 2);
    for (const char *key :
         {"mwgroceries.displayFont", "com.marlowick.groceries.font", "com.marlowick.groceries.print"})
        QVERIFY2(!stored(QLatin1String(key)).toString().isEmpty(), key);

    prefs.setEmailTarget(QString());
    prefs.savePreferences();
    QVERIFY(!stored(u"mwgroceries.confirm"_s).isValid());
    QVERIFY(stored(u"com.marlowick.groceries.confirm"_s).isValid());
}

void TestPrefController::keyNames_data()
{
    QTest::addColumn<int>("count");
    QTest::newRow("five") << 5;
    QTest::newRow("six") << 6;
    QTest::newRow("seven") << 7;
}

void TestPrefController::keyNames()
{
    QFETCH(int, count);
    QStringList names;
    for (int i = 0; i < count; ++i)
        names.append(u"Key, %1 \u00e9"_s.arg(i));
    store(u"mwgroceries.keys"_s, names);

    GRPrefController prefs;
    const bool used = count == 6;
    QCOMPARE(g_customKeyNames, used ? names : QStringList());
    QCOMPARE(g_logLines.size(), used ? 0 : 1);
    QCOMPARE(KeyNameAt(4), used ? names.at(4) : u"Frozen"_s);
    prefs.savePreferences();
    QCOMPARE(stored(u"mwgroceries.keys"_s), used ? QVariant(names) : QVariant());
}

void TestPrefController::unreadableValueFallsBack_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<QVariant>("value");

    const QString display = u"mwgroceries.displayFont"_s;
    const QByteArray garbage("\x00\xff\xfe\x80garbage\x01", 12);
    const QString fields = u",-1,5,400,0,0,0,0,0,0,0,0,0,0,1"_s;
    QTest::newRow("font: integer") << u"com.marlowick.groceries.font"_s << QVariant(42);
    QTest::newRow("font: bytes") << u"com.marlowick.groceries.font"_s << QVariant(garbage);
    QTest::newRow("font: one word") << display << QVariant(u"garbage"_s);
    QTest::newRow("font: no family") << display << QVariant(u",12"_s + fields);
    QTest::newRow("font: huge size") << display << QVariant(u"Sans,50000"_s + fields);
    QTest::newRow("font: pixel size only")
        << display << QVariant(u"Sans,-1,20,5,400,0,0,0,0,0,0,0,0,0,0,1"_s);

    const QString print = u"com.marlowick.groceries.print"_s;
    const auto page = [](const char *paper, const char *orientation, int side, double scale) {
        return QVariant(QString::fromLatin1(R"({"paper":"%1","orientation":"%2","left":%3,"top":%3,)"
                                            R"("right":%3,"bottom":%3,"scale":%4})")
                            .arg(QLatin1String(paper), QLatin1String(orientation))
                            .arg(side)
                            .arg(scale));
    };
    QTest::newRow("print: not json") << print << QVariant(u"{paper: A4"_s);
    QTest::newRow("print: empty object") << print << QVariant(u"{}"_s);
    QTest::newRow("print: unknown paper") << print << page("Napkin", "portrait", 1, 1);
    QTest::newRow("print: margins fill the width") << print << page("A4", "portrait", 298, 1);
    QTest::newRow("print: landscape margins") << print << page("A4", "landscape", 298, 1);
    QTest::newRow("print: zero scale") << print << page("A4", "portrait", 1, 0);
    QTest::newRow("print: sideways") << print << page("A4", "sideways", 1, 1);

    const QString scope = u"com.marlowick.groceries.printNeeded"_s;
    QTest::newRow("scope: unknown value") << scope << QVariant(3);
    QTest::newRow("scope: beyond 32 bits") << scope << QVariant(qint64(1) << 32);
    QTest::newRow("scope: beyond 64 bits") << scope << QVariant(std::numeric_limits<quint64>::max());
    QTest::newRow("scope: fraction") << scope << QVariant(1.5);

    // Each fallback differs from what a plain conversion of the value would give.
    QTest::newRow("showKeys: empty") << u"mwgroceries.showKeys"_s << QVariant(QString());
    QTest::newRow("confirm: empty") << u"com.marlowick.groceries.confirm"_s << QVariant(QString());
    QTest::newRow("ignorePageStarts: word")
        << u"com.marlowick.groceries.ignorePageStarts"_s << QVariant(u"perhaps"_s);
    QTest::newRow("ignorePageStarts: two") << u"com.marlowick.groceries.ignorePageStarts"_s << QVariant(2);
    QTest::newRow("showKeys: list") << u"mwgroceries.showKeys"_s << QVariant(QVariantList{false});

    QTest::newRow("email: list") << u"mwgroceries.confirm"_s << QVariant(QStringList{u"a@b"_s, u"c@d"_s});
    QTest::newRow("keys: one string") << u"mwgroceries.keys"_s << QVariant(u"Beverage"_s);
    QTest::newRow("keys: six numbers") << u"mwgroceries.keys"_s << QVariant(QVariantList{1, 2, 3, 4, 5, 6});
}

void TestPrefController::unreadableValueFallsBack()
{
    QFETCH(QString, key);
    QFETCH(QVariant, value);
    store(key, value);
    GRPrefController prefs;
    verifyDefaults(prefs);
    QCOMPARE(g_logLines.size(), 1);
    const QString expected =
        key.endsWith(u"font"_s, Qt::CaseInsensitive) ? u"LoadFontFromPrefs failed"_s : key;
    QVERIFY2(g_logLines.first().contains(expected), qPrintable(g_logLines.first()));
}

// A settings file written by an earlier run keeps no types: every value comes back as text.
void TestPrefController::textFromSettingsFile_data()
{
    QTest::addColumn<QByteArray>("line");
    QTest::addColumn<QVariant>("expected");
    QTest::addColumn<bool>("logs");

    QTest::newRow("scope") << QByteArray("com.marlowick.groceries.printNeeded= 2 ") << QVariant(2) << false;
    QTest::newRow("scope junk") << QByteArray("com.marlowick.groceries.printNeeded=2x") << QVariant(0)
                                << true;
    QTest::newRow("showKeys off") << QByteArray("mwgroceries.showKeys=false") << QVariant(false) << false;
    QTest::newRow("showKeys 0") << QByteArray("mwgroceries.showKeys=0") << QVariant(false) << false;
    QTest::newRow("showKeys binary") << QByteArray("mwgroceries.showKeys=\xff\xfe\x01") << QVariant(true)
                                     << true;
    QTest::newRow("keys as text") << QByteArray("mwgroceries.keys=a, b, c, d, e, f")
                                  << QVariant(QStringList{u"a"_s, u"b"_s, u"c"_s, u"d"_s, u"e"_s, u"f"_s})
                                  << false;
    QTest::newRow("keys too few") << QByteArray("mwgroceries.keys=a, b, c") << QVariant(QStringList())
                                  << true;
    QTest::newRow("font as bytes") << QByteArray("mwgroceries.displayFont=@ByteArray(\\0\\x1\\xff)")
                                   << QVariant(DefaultUserFont().toString()) << true;
}

void TestPrefController::textFromSettingsFile()
{
    QFETCH(QByteArray, line);
    QFETCH(QVariant, expected);
    QFETCH(bool, logs);

    QFile file(QSettings(u"Marlowick"_s, u"Groceries"_s).fileName());
    QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
    file.write("[General]\n" + line + "\nNSPrintHeaderAndFooter=true\n");
    file.close();

    GRPrefController prefs;
    const QVariant actual = line.startsWith("com.marlowick.groceries.printNeeded")
                                ? QVariant(prefs.printScope())
                            : line.startsWith("mwgroceries.showKeys") ? QVariant(prefs.showKeys())
                            : line.startsWith("mwgroceries.keys")     ? QVariant(g_customKeyNames)
                                                                  : QVariant(prefs.displayFont().toString());
    QCOMPARE(actual, expected);
    QCOMPARE(!g_logLines.isEmpty(), logs);
}

void TestPrefController::columnCountNeverBelowOne()
{
    GRPrefController prefs;
    prefs.setColumnCount(0);
    QCOMPARE(prefs.columnCount(), quint64(1));
    prefs.setColumnCount(7);
    QCOMPARE(prefs.columnCount(), quint64(7));
}

void TestPrefController::updateCategories_data()
{
    QTest::addColumn<QString>("before");  // the live categories when the order was made
    QTest::addColumn<QString>("ordered"); // the stored order, by GUID
    QTest::addColumn<QString>("after");   // the live categories now
    QTest::addColumn<QString>("manual");
    QTest::addColumn<QString>("automatic");

    QTest::newRow("delete one, add two") << u"ABCD"_s << u"CADB"_s << u"EACFD"_s << u"CADEF"_s << u"EACFD"_s;
    QTest::newRow("unknown GUID dropped") << u"AB"_s << u"XBA"_s << u"AB"_s << u"BA"_s << u"AB"_s;
    QTest::newRow("repeated GUID kept once") << u"AB"_s << u"BBA"_s << u"AB"_s << u"BA"_s << u"AB"_s;
    QTest::newRow("empty order") << QString() << QString() << u"CBA"_s << u"CBA"_s << u"CBA"_s;
    QTest::newRow("everything deleted") << u"AB"_s << u"BA"_s << QString() << QString() << QString();
}

void TestPrefController::updateCategories()
{
    QFETCH(QString, before);
    QFETCH(QString, ordered);
    QFETCH(QString, after);
    QFETCH(QString, manual);
    QFETCH(QString, automatic);

    for (const bool manualOrder : {true, false}) {
        GRPrefController prefs;
        // Entries still point at the records of before the change; only their GUIDs count.
        const QList<GRCategoryPtr> old = makeCategories(before);
        for (const QChar name : ordered) {
            GRCategoryOrderEntry entry{nullptr, u"G-"_s + name};
            for (const GRCategoryPtr &category : old)
                entry.cat = category->guid() == entry.guid ? category : entry.cat;
            prefs.categoryOrder().append(entry);
        }
        prefs.setManualOrder(manualOrder);
        GRLists::shared().categories() = makeCategories(after);
        QSignalSpy reloaded(&prefs, &GRPrefController::categoryTableChanged);

        MGNotificationCenter::defaultCenter().post(u"mwgroceries.updateCats"_s);

        QCOMPARE(reloaded.count(), 1);
        QCOMPARE(orderNames(prefs.categoryOrder()), manualOrder ? manual : automatic);
        for (const GRCategoryOrderEntry &entry : prefs.categoryOrder()) {
            QVERIFY(GRLists::shared().indexOfCategory(entry.cat.get()) >= 0);
            QCOMPARE(entry.guid, entry.cat->guid());
        }
        QVERIFY(!prefs.dirty());
    }
}

void TestPrefController::lookupByGuidAndName_data()
{
    QTest::addColumn<bool>("byGuid");
    QTest::addColumn<QString>("key");
    QTest::addColumn<int>("expected"); // index in the live list, -1 for none

    QTest::newRow("name, first of two") << false << u"Fruit"_s << 0;
    QTest::newRow("name, other case") << false << u"fruit"_s << 1;
    QTest::newRow("name, no match") << false << u"FRUIT"_s << -1;
    QTest::newRow("guid") << true << u"G-3"_s << 2;
    QTest::newRow("guid, lower case") << true << u"g-3"_s << -1;
    QTest::newRow("guid, empty") << true << QString() << -1;
}

void TestPrefController::lookupByGuidAndName()
{
    QFETCH(bool, byGuid);
    QFETCH(QString, key);
    QFETCH(int, expected);

    GRLists::shared().categories() = makeCategories(u"123"_s);
    const QStringList names{u"Fruit"_s, u"fruit"_s, u"Fruit"_s};
    for (int i = 0; i < names.size(); ++i)
        GRLists::shared().categories().at(i)->setName(names.at(i));
    GRPrefController prefs;
    const GRCategoryPtr found = byGuid ? prefs.categoryForGuid(key) : prefs.categoryForName(key);
    QCOMPARE(GRLists::shared().indexOfCategory(found.get()), qsizetype(expected));
    QCOMPARE(bool(found), expected >= 0);
}

void TestPrefController::resetOrder()
{
    GRLists::shared().categories() = makeCategories(u"ABC"_s);
    GRPrefController prefs;
    prefs.setManualOrder(true);
    prefs.updateCategories();
    std::reverse(prefs.categoryOrder().begin(), prefs.categoryOrder().end());
    QSignalSpy reloaded(&prefs, &GRPrefController::categoryTableChanged);
    QSignalSpy edited(&prefs, &GRPrefController::markWindowEdited);

    prefs.resetOrder();

    QVERIFY(!prefs.manualOrder());
    QVERIFY(prefs.dirty());
    QCOMPARE(orderNames(prefs.categoryOrder()), u"ABC"_s);
    QCOMPARE(reloaded.count(), 1);
    QCOMPARE(edited.count(), 1);
}

QTEST_MAIN(TestPrefController)
#include "tst_prefcontroller.moc"
