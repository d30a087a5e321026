#include "GRCategory.h"
#include "GRGroceryDatabase.h"
#include "GRKeyNames.h"
#include "GRPrefController.h"
#include "GRTestSupport.h"

#include <QFile>
#include <QSettings>
#include <QSignalSpy>
#include <QStandardPaths>
#include <QTest>

using namespace Qt::StringLiterals;

// The keys of the preferences kept in the settings, in the order values() lists them.
// clang-format off
const QStringList kKeys{u"mwgroceries.displayFont"_s, u"com.marlowick.groceries.font"_s,
                        u"com.marlowick.groceries.print"_s, u"com.marlowick.groceries.printNeeded"_s,
                        u"com.marlowick.groceries.ignorePageStarts"_s, u"mwgroceries.showKeys"_s,
                        u"com.marlowick.groceries.confirm"_s, u"mwgroceries.confirm"_s,
                        u"mwgroceries.keys"_s};
// clang-format on

static QSettings settings()
{
    return QSettings(u"Marlowick"_s, u"Groceries"_s);
}

static QVariantList values(GRPrefController &prefs)
{
    return QVariantList() << prefs.displayFont().toString() << prefs.printFont().toString()
                          << prefs.printInfo().toString() << prefs.printScope() << prefs.ignorePageStarts()
                          << prefs.showKeys() << prefs.confirmDelete() << prefs.emailTarget()
                          << g_customKeyNames;
}

// Categories named by letters, each with the GUID "G-" and its name.
static QList<GRCategoryPtr> makeCategories(const QString &names)
{
    QList<GRCategoryPtr> list;
    for (const QChar name : names) {
        list.append(GRCategory::create());
        list.last()->setName(name);
        list.last()->setGuid(u"G-"_s + name);
    }
    return list;
}

class TestPrefController : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { GRTestSupport::initEnvironment(); }
    void init() { settings().clear(); }

    void saveAndLoad()
    {
        const QPageSize custom(QSizeF(300, 500), QPageSize::Point, QString(), QPageSize::ExactMatch);
        QVariantList saved;
        {
            GRPrefController prefs;
            prefs.setDisplayFont(QFont(u"DejaVu Sans"_s, 15, QFont::Bold));
            prefs.setPrintFont(QFont(u"DejaVu Serif"_s, 9, -1, true));
            prefs.printInfo().setPageLayout(
                QPageLayout(custom, QPageLayout::Landscape, QMarginsF(10, 20, 30, 40.5)));
            prefs.printInfo().setScale(0.75);
            prefs.setPrintScope(2);
            prefs.setIgnorePageStarts(true);
            prefs.setShowKeys(false);
            prefs.setEmailTarget(u"a@b, c@d"_s);
            g_customKeyNames = QStringList{u"Key, \u00e9"_s, u"2"_s, u"3"_s, u"4"_s, u"5"_s, u"6"_s};
            prefs.savePreferences();
            saved = values(prefs);
        }
        QVariantList stored;
        for (const QString &key : kKeys)
            stored << settings().value(key);
        QCOMPARE(stored, saved);
        GRLogCapture log;
        GRPrefController prefs;
        QCOMPARE(values(prefs), saved);
        QCOMPARE(log.lines(), QStringList());
        // An empty e-mail target and key names of the wrong count are removed from the settings.
        prefs.setEmailTarget(QString());
        g_customKeyNames.removeLast();
        prefs.savePreferences();
        QVERIFY(!settings().contains(kKeys[7]) && !settings().contains(kKeys[8]));
        // The header-and-footer switch was set when absent, and only then: the user's own choice stays.
        QCOMPARE(settings().value(u"NSPrintHeaderAndFooter"_s), QVariant(true));
        settings().setValue(u"NSPrintHeaderAndFooter"_s, false);
        GRPrefController again;
        QCOMPARE(settings().value(u"NSPrintHeaderAndFooter"_s), QVariant(false));
    }

    // A value that can't be used gives the default, with one warning naming the key. A byte array
    // stands for the text of a settings file, which keeps no types.
    void load_data()
    {
        QTest::addColumn<QString>("key");
        QTest::addColumn<QVariant>("value");
        QTest::addColumn<QVariant>("usable"); // what a usable value gives
        const QString &font = kKeys[0], &print = kKeys[2], &scope = kKeys[3], &keys = kKeys[8];
        const QString fields = u",-1,5,400,0,0,0,0,0,0,0,0,0,0,1"_s;
        const QStringList six{"a", "b", "c", "d", "e", "f"};
        const auto page = [](const char *paper, const char *orientation, int side, int scale) {
            return QVariant(QString::fromLatin1(R"({"paper":"%1","orientation":"%2","left":%3,"top":%3,)"
                                                R"("right":%3,"bottom":%3,"scale":%4})")
                                .arg(QLatin1String(paper), QLatin1String(orientation))
                                .arg(side)
                                .arg(scale));
        };
        const QVariant no;
        // clang-format off
        QTest::newRow("nothing stored") << QString() << no << no;
        QTest::newRow("font: no family") << font << QVariant(u",12"_s + fields) << no;
        QTest::newRow("font: huge size") << font << QVariant(u"Sans,50000"_s + fields) << no;
        QTest::newRow("print: unknown paper") << print << page("Napkin", "portrait", 1, 1) << no;
        QTest::newRow("print: margins fill the width") << print << page("A4", "portrait", 298, 1) << no;
        QTest::newRow("print: zero scale") << print << page("A4", "portrait", 1, 0) << no;
        QTest::newRow("print: sideways") << print << page("A4", "sideways", 1, 1) << no;
        QTest::newRow("scope: beyond 32 bits") << scope << QVariant(qint64(1) << 32) << no;
        QTest::newRow("scope: fraction") << scope << QVariant(1.5) << no;
        QTest::newRow("scope: text") << scope << QVariant(QByteArray(" 2 ")) << QVariant(2);
        QTest::newRow("showKeys: text") << kKeys[5] << QVariant(QByteArray("false")) << QVariant(false);
        // Each fallback differs from what a plain conversion of the value would give.
        QTest::newRow("showKeys: binary") << kKeys[5] << QVariant(QByteArray("\xff\xfe\x01")) << no;
        QTest::newRow("confirm: empty") << kKeys[6] << QVariant(QString()) << no;
        QTest::newRow("ignorePageStarts: two") << kKeys[4] << QVariant(2) << no;
        QTest::newRow("email: list") << kKeys[7] << QVariant(QStringList{u"a@b"_s, u"c@d"_s}) << no;
        QTest::newRow("keys: six numbers") << keys << QVariant(QVariantList{1, 2, 3, 4, 5, 6}) << no;
        QTest::newRow("keys: text") << keys << QVariant(QByteArray("a,b,c,d,e,f")) << QVariant(six);
        // clang-format on
    }
    void load()
    {
        QFETCH(QString, key);
        QFETCH(QVariant, value);
        QFETCH(QVariant, usable);
        if (value.typeId() == QMetaType::QByteArray)
            QVERIFY(GRTestSupport::writeFile(settings().fileName(), "[General]\n" + key.toLatin1() + '=' +
                                                                        value.toByteArray() + '\n'));
        else if (value.isValid())
            settings().setValue(key, value);
        const QString font = DefaultUserFont().toString();
        QVariantList expected = QVariantList() << font << font << GRPrintSettings().toString() << 0 << false
                                               << true << true << QString() << QStringList();
        if (usable.isValid())
            expected[kKeys.indexOf(key)] = usable;
        GRLogCapture log;
        GRPrefController prefs;
        QCOMPARE(values(prefs), expected);
        const bool warns = value.isValid() && !usable.isValid();
        QCOMPARE(log.lines().size(), warns ? 1 : 0);
        QVERIFY2(!warns || log.contains(key), qPrintable(log.lines().join(u'\n')));
    }

    // A binary value with a damaged length would make Qt's reader allocate gigabytes.
    void unsafeSettingsFileIsNotRead_data()
    {
        QTest::addColumn<bool>("readOnly");
        QTest::newRow("moved aside") << false;
        QTest::newRow("left alone when nothing may be written") << true;
    }
    void unsafeSettingsFileIsNotRead()
    {
        QFETCH(bool, readOnly);
        const QString path = settings().fileName();
        const QByteArray damaged = GRTestSupport::readFile(
            GRTestSupport::dataPath(u"../fuzz/regressions/settings/variant-huge-length.ini"_s));
        QVERIFY(damaged.contains("@Variant("));
        QVERIFY(GRTestSupport::writeFile(path, damaged));
        QFile::remove(path + u" (damaged)"_s);
        GRPrefController::setReadOnly(readOnly);
        GRLogCapture log;
        GRPrefController prefs;
        GRPrefController::setReadOnly(false);
        QCOMPARE(prefs.printScope(), 0);
        QCOMPARE(log.lines().size(), 1);
        QVERIFY(log.contains(u"can't read safely"_s));
        QCOMPARE(GRTestSupport::readFile(readOnly ? path : path + u" (damaged)"_s), damaged);
        QCOMPARE(GRTestSupport::readFile(path) == damaged, readOnly);
        QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope,
                           QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation));
        QFile::remove(path);
    }

    void updateCategories_data()
    {
        // The live categories when the order was made, the stored order (by GUID), the live categories
        // now, and the manual and automatic orders made from them.
        QTest::addColumn<QStringList>("c");
        QTest::newRow("delete one, add two") << QStringList{"ABCD", "CADB", "EACFD", "CADEF", "EACFD"};
        QTest::newRow("repeated GUID kept once") << QStringList{"AB", "BBA", "AB", "BA", "AB"};
    }
    void updateCategories()
    {
        QFETCH(QStringList, c);
        const QString &before = c[0], &ordered = c[1], &after = c[2], &manual = c[3], &automatic = c[4];
        for (const int mode : {0, 1, 2}) { // manual order, automatic order, reset to automatic order
            GRPrefController prefs;
            GRGroceryDatabase database;
            // Entries still point at the records of before the change; only their GUIDs count.
            const QList<GRCategoryPtr> old = makeCategories(before);
            for (const QChar name : ordered)
                database.categoryOrder().append({old.value(before.indexOf(name)), u"G-"_s + name});
            database.setManualOrder(mode != 1);
            database.categories() = makeCategories(after);
            QSignalSpy reloaded(&prefs, &GRPrefController::categoryTableChanged);
            QSignalSpy edited(&prefs, &GRPrefController::markWindowEdited);
            if (mode == 2)
                prefs.resetOrder(database);
            else
                prefs.updateCategories(database);
            QString names; // "?" for an entry that is not a live category under its own GUID
            for (const GRCategoryOrderEntry &entry : database.categoryOrder())
                names += database.categories().contains(entry.cat) && entry.guid == entry.cat->guid()
                             ? entry.cat->name()
                             : u"?"_s;
            QCOMPARE(names, mode == 0 ? manual : automatic);
            QCOMPARE(
                QList<qsizetype>({reloaded.size(), edited.size(), prefs.dirty(), database.manualOrder()}),
                QList<qsizetype>({1, mode == 2, mode == 2, mode == 0}));
        }
    }
};

QTEST_MAIN(TestPrefController)
#include "tst_prefcontroller.moc"
