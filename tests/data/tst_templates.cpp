#include "GRCategory.h"
#include "GRDatabaseFile.h"
#include "GRGroceryDatabase.h"
#include "GRItem.h"
#include "GRStore.h"
#include "GRTestSupport.h"

#include <QRegularExpression>
#include <QSet>
#include <QTest>

namespace {

// clang-format off
const QString Meat = QStringLiteral(
    "meats?|beef|pork|chicken|turkey|ham|bacon|sausages?|salami|pepperoni|prosciutto|lamb|veal|steak|ribs|"
    "jerky|duck|venison|lard|fish|salmon|tuna|cod|tilapia|shrimp|prawns|crab|lobster|clams|mussels|oysters|"
    "scallops|anchov(y|ies)|sardines|gelatine?|worcestershire|marshmallows");
const QString AnimalProducts = QStringLiteral(
    "milk|butter|buttermilk|cheese|cheddar|mozzarella|parmesan|feta|ricotta|paneer|eggs?|honey|yogh?urt|"
    "cream|whey|casein|ghee|custard|mayonnaise|mayo");
// clang-format on

// The whole words of the text that one of the alternatives in words matches ("vegan mayo" is fine).
QStringList wordsIn(QString text, const QString &words)
{
    const auto caseless = QRegularExpression::CaseInsensitiveOption;
    text.remove(QRegularExpression(QStringLiteral("\\bvegan mayo\\b"), caseless));
    QStringList hits;
    for (const QRegularExpressionMatch &match :
         QRegularExpression(QStringLiteral("\\b(%1)\\b").arg(words), caseless).globalMatch(text))
        hits << match.captured();
    return hits;
}

} // namespace

class TestTemplates : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { GRTestSupport::initEnvironment(); }

    void starterTemplate_data()
    {
        QTest::addColumn<int>("option");
        QTest::addColumn<QString>("absent"); // words no name may hold
        QTest::newRow("Omnivore") << int(GRTemplateOmnivore) << "";
        QTest::newRow("Vegetarian") << int(GRTemplateVegetarian) << Meat;
        QTest::newRow("Vegan") << int(GRTemplateVegan) << Meat + u'|' + AnimalProducts;
    }

    void starterTemplate()
    {
        QFETCH(int, option);
        QFETCH(QString, absent);
        const QString path = QStringLiteral(":/templates/Groceries %1.xml").arg(QTest::currentDataTag());
        QCOMPARE(TemplateResourcePath(option), path);
        GRGroceryDatabase database;
        QVERIFY(ReadModernDatabase(path, database));
        // A save writes the resource back byte for byte.
        const QByteArray resource = GRTestSupport::readFile(path);
        QCOMPARE(GroceriesXml(database).toUtf8().split('\n'), resource.split('\n'));
        if (!absent.isEmpty())
            QCOMPARE(wordsIn(QString::fromUtf8(resource), absent).join(u','), QString());

        const QList<GRStorePtr> &stores = database.stores();
        const QList<GRCategoryPtr> &categories = database.categories();
        QVERIFY(stores.size() >= 3 && categories.size() >= 12);
        QCOMPARE(stores.first()->name(), QStringLiteral("Grocery Store"));
        QSet<QString> storeNames, categoryNames, itemNames;
        QSet<quint32> colours;
        for (const GRStorePtr &store : stores) {
            QVERIFY2(store->kolor().isDrawable() && store->kolor() != Kolor::defaultKolor() &&
                         store->printOption() == 0,
                     qPrintable(store->name()));
            storeNames.insert(store->name());
            colours.insert(store->kolor().word());
        }
        QVERIFY(storeNames.size() == stores.size() && colours.size() == stores.size());

        const QRegularExpression keyMark(QStringLiteral("[\u301C\u25C9\u263C\u2740\u2744\u25D2]"));
        QSet<GRStore *> storesUsed;
        int items = 0, numbered = 0, special = 0, marked = 0;
        for (const GRCategoryPtr &category : categories) {
            QVERIFY2(!category->items().isEmpty(), qPrintable(category->name()));
            categoryNames.insert(category->name().toCaseFolded());
            for (const GRItemPtr &item : category->items()) {
                QVERIFY2(!item->name().trimmed().isEmpty() && !item->isNeeded() && item->needCount() <= 1 &&
                             item->aisle() >= -6 && item->aisle() <= 20,
                         qPrintable(item->name()));
                itemNames.insert(item->name().toCaseFolded());
                storesUsed.insert(item->store().get());
                ++items;
                numbered += item->aisle() > 0;
                special += item->aisle() < 0;
                marked += item->name().contains(keyMark);
            }
        }
        QVERIFY(categoryNames.size() == categories.size() && itemNames.size() == items &&
                storesUsed.size() == stores.size());
        QVERIFY(items >= 120 && numbered >= 20 && special >= 20);
        // A handful of names carry a key mark, not every one.
        QVERIFY2(marked >= 3 && marked <= items / 10, qPrintable(QString::number(marked)));
    }
};

QTEST_MAIN(TestTemplates)
#include "tst_templates.moc"
