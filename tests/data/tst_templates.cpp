#include "GRCategory.h"
#include "GRDatabaseFile.h"
#include "GRItem.h"
#include "GRLists.h"
#include "GRStore.h"
#include "GRTagKeys.h"
#include "GRTestSupport.h"

#include <QFile>
#include <QRegularExpression>
#include <QSet>
#include <QtTest>

#include <algorithm>

namespace {

const QString KeyMarks = QStringLiteral("\u301C\u25C9\u263C\u2740\u2744\u25D2");

const QStringList MeatWords = {
    "meat",      "meats",    "beef",     "pork",     "chicken",        "turkey",      "ham",
    "bacon",     "sausage",  "sausages", "salami",   "pepperoni",      "prosciutto",  "lamb",
    "veal",      "steak",    "ribs",     "jerky",    "duck",           "venison",     "lard",
    "fish",      "salmon",   "tuna",     "cod",      "tilapia",        "shrimp",      "prawns",
    "crab",      "lobster",  "clams",    "mussels",  "oysters",        "scallops",    "anchovy",
    "anchovies", "sardines", "gelatin",  "gelatine", "worcestershire", "marshmallows"};

const QStringList AnimalProductWords = {
    "milk",    "butter", "buttermilk", "cheese",  "cheddar",    "mozzarella", "parmesan", "feta",
    "ricotta", "paneer", "egg",        "eggs",    "honey",      "yogurt",     "yoghurt",  "cream",
    "whey",    "casein", "ghee",       "custard", "mayonnaise", "mayo"};

QString templatePath(const QString &name)
{
    return QStringLiteral(":/templates/%1.xml").arg(name);
}

QList<GRItemPtr> allItems()
{
    QList<GRItemPtr> items;
    for (const GRCategoryPtr &category : GRLists::shared().categories())
        items += category->items();
    return items;
}

// Every name in the lists (stores, categories, items) that holds one of words as a whole word.
QStringList namesHoldingWords(const QStringList &words)
{
    QStringList names;
    for (const GRStorePtr &store : GRLists::shared().stores())
        names << store->name();
    for (const GRCategoryPtr &category : GRLists::shared().categories())
        names << category->name();
    for (const GRItemPtr &item : allItems())
        names << item->name();

    const QRegularExpression pattern(QStringLiteral("\\b(%1)\\b").arg(words.join('|')),
                                     QRegularExpression::CaseInsensitiveOption);
    const QRegularExpression veganMayo(QStringLiteral("\\bvegan mayo\\b"),
                                       QRegularExpression::CaseInsensitiveOption);
    QStringList hits;
    for (const QString &name : names) {
        QString text = name;
        text.remove(veganMayo);
        if (pattern.match(text).hasMatch())
            hits << name;
    }
    return hits;
}

} // namespace

class TstTemplates : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void content_data();
    void content();
    void saveReproducesResource_data();
    void saveReproducesResource();
    void forbiddenWords_data();
    void forbiddenWords();
};

void TstTemplates::initTestCase()
{
    GRTestSupport::initEnvironment();
    RegisterGroceryTags();
}

void TstTemplates::init()
{
    GRLists::shared().clear();
}

void TstTemplates::cleanup()
{
    GRLists::shared().clear();
}

static void addTemplateRows()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("option");
    QTest::newRow("omnivore") << "Groceries Omnivore" << int(GRTemplateOmnivore);
    QTest::newRow("vegetarian") << "Groceries Vegetarian" << int(GRTemplateVegetarian);
    QTest::newRow("vegan") << "Groceries Vegan" << int(GRTemplateVegan);
}

void TstTemplates::content_data()
{
    addTemplateRows();
}

void TstTemplates::content()
{
    QFETCH(QString, name);
    QFETCH(int, option);

    QCOMPARE(TemplateResourcePath(option), templatePath(name));
    QVERIFY(ReadModernDatabase(templatePath(name)));

    const auto &stores = GRLists::shared().stores();
    const auto &categories = GRLists::shared().categories();
    const QList<GRItemPtr> items = allItems();
    QVERIFY2(stores.size() >= 3, qPrintable(QString::number(stores.size())));
    QVERIFY2(categories.size() >= 12, qPrintable(QString::number(categories.size())));
    QVERIFY2(items.size() >= 120, qPrintable(QString::number(items.size())));
    QCOMPARE(stores.first()->name(), QStringLiteral("Grocery Store"));

    QSet<QString> storeNames;
    QSet<quint32> colours;
    for (const GRStorePtr &store : stores) {
        storeNames.insert(store->name());
        QVERIFY2(store->kolor().isDrawable() && store->kolor() != Kolor::defaultKolor(),
                 qPrintable(store->name()));
        colours.insert(store->kolor().word());
        QCOMPARE(store->printOption(), 0);
    }
    QCOMPARE(storeNames.size(), stores.size());
    QCOMPARE(colours.size(), stores.size());

    QSet<QString> categoryNames;
    for (const GRCategoryPtr &category : categories) {
        categoryNames.insert(category->name().toCaseFolded());
        QVERIFY2(!category->items().isEmpty(), qPrintable(category->name()));
    }
    QCOMPARE(categoryNames.size(), categories.size());

    QSet<QString> itemNames;
    QSet<GRStore *> storesUsed;
    int numbered = 0, special = 0, marked = 0;
    for (const GRItemPtr &item : items) {
        const QByteArray label = item->name().toUtf8();
        QVERIFY2(!item->name().trimmed().isEmpty(), label);
        QVERIFY2(item->store() && stores.contains(item->store()), label);
        QVERIFY2(item->category() && categories.contains(item->category()), label);
        QVERIFY2(!item->isNeeded() && item->needCount() <= 1, label);
        QVERIFY2(item->aisle() >= -6 && item->aisle() <= 20, label);
        itemNames.insert(item->name().toCaseFolded());
        storesUsed.insert(item->store().get());
        numbered += item->aisle() > 0;
        special += item->aisle() < 0;
        marked += std::any_of(item->name().begin(), item->name().end(),
                              [](QChar c) { return KeyMarks.contains(c); });
    }
    QCOMPARE(itemNames.size(), items.size());
    QCOMPARE(storesUsed.size(), stores.size());
    QVERIFY2(numbered >= 20, qPrintable(QString::number(numbered)));
    QVERIFY2(special >= 20, qPrintable(QString::number(special)));
    // A handful of marked names, not marks everywhere.
    QVERIFY2(marked >= 3 && marked <= items.size() / 10, qPrintable(QString::number(marked)));
}

void TstTemplates::saveReproducesResource_data()
{
    addTemplateRows();
}

void TstTemplates::saveReproducesResource()
{
    QFETCH(QString, name);

    QFile file(templatePath(name));
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QByteArray original = file.readAll();
    QVERIFY(ReadModernDatabase(templatePath(name)));
    const QByteArray saved = GroceriesXml().toUtf8();
    if (saved == original)
        return;

    const QList<QByteArray> want = original.split('\n');
    const QList<QByteArray> got = saved.split('\n');
    for (qsizetype i = 0; i < qMin(want.size(), got.size()); ++i) {
        if (want[i] != got[i])
            QFAIL(qPrintable(QStringLiteral("line %1: resource \"%2\", saved \"%3\"")
                                 .arg(i + 1)
                                 .arg(QString::fromUtf8(want[i]), QString::fromUtf8(got[i]))));
    }
    QFAIL(
        qPrintable(QStringLiteral("resource has %1 lines, saved text %2").arg(want.size()).arg(got.size())));
}

void TstTemplates::forbiddenWords_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QStringList>("words");
    QTest::addColumn<bool>("expectClean");
    QTest::newRow("vegetarian without meat or fish") << "Groceries Vegetarian" << MeatWords << true;
    QTest::newRow("vegan without any animal product")
        << "Groceries Vegan" << (MeatWords + AnimalProductWords) << true;
    // Shows that the word check finds what it looks for.
    QTest::newRow("omnivore holds meat") << "Groceries Omnivore" << MeatWords << false;
    QTest::newRow("vegetarian holds dairy") << "Groceries Vegetarian" << AnimalProductWords << false;
}

void TstTemplates::forbiddenWords()
{
    QFETCH(QString, name);
    QFETCH(QStringList, words);
    QFETCH(bool, expectClean);

    QVERIFY(ReadModernDatabase(templatePath(name)));
    const QStringList hits = namesHoldingWords(words);
    if (expectClean)
        QVERIFY2(hits.isEmpty(), qPrintable(hits.join(", ")));
    else
        QVERIFY(!hits.isEmpty());
}

QTEST_MAIN(TstTemplates)
#include "tst_templates.moc"
