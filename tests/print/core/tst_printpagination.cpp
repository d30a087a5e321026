#include "GRCategory.h"
#include "GRGroceryDatabase.h"
#include "GRItem.h"
#include "GRKeyNames.h"
#include "GRPrintGeometry.h"
#include "GRPrintPagination.h"
#include "GRStore.h"
#include "GRTestSupport.h"

#include <QTest>

#include <tuple>

using Type = GRPrintItem::Type;

// Pages are compared as text: "#Store", "=Heading", "~" for a legend line, "_" for a spacer and
// the printed name of an item, joined by "|".
class TestPrintPagination : public QObject
{
    Q_OBJECT

    GRGroceryDatabase m_db;

    GRStorePtr addStore(const QString &name, qint32 option = 2, bool top = false)
    {
        GRStorePtr store = GRStore::create();
        store->setName(name);
        store->setPrintOption(option);
        store->setTopOfPage(top);
        m_db.stores().append(store);
        return store;
    }
    void addItem(const QString &name, int store, const QString &category = QStringLiteral("Food"),
                 qint64 aisle = 0, quint64 needCount = 0)
    {
        GRCategoryPtr owner = m_db.categoryForName(category);
        if (!owner) {
            owner = GRCategory::create();
            owner->setName(category);
            m_db.categories().append(owner);
            m_db.updateCategoryOrder();
        }
        GRItemPtr item = GRItem::create();
        item->setName(name);
        item->setStore(m_db.stores().at(store));
        item->setCategory(owner);
        item->setAisle(aisle);
        item->setNeeded(needCount > 0);
        item->setNeedCount(needCount);
        owner->items().append(item);
    }
    void addItems(int count, int store, const QString &prefix = QStringLiteral("item"))
    {
        for (int i = 0; i < count; ++i)
            addItem(prefix + QString::number(i).rightJustified(2, u'0'), store);
    }
    // Lays out pages of the given number of lines, lineHeight 12, 400 wide.
    GRPrintPagination &layOut(GRPrintPagination &pages, int lines,
                              GRPrintScope scope = GRPrintScope::EntireList, const QString &guid = QString(),
                              bool ignoreStarts = false)
    {
        pages.setPageSize(QSizeF(400, lines * 12));
        pages.setFontLineHeight(12);
        pages.setScope(scope, guid, ignoreStarts);
        pages.layout();
        return pages;
    }
    static QString text(const QList<GRPrintItem> &page)
    {
        // By type: spacer, group heading, item, legend line, store heading.
        static const QString marks[] = {"_", "=", "", "~", "#"};
        QStringList parts;
        for (const GRPrintItem &entry : page)
            parts << marks[int(entry.type())] + (entry.type() == Type::KeyLegend ? QString() : entry.name());
        return parts.join(u'|');
    }

private slots:
    void initTestCase()
    {
        GRTestSupport::initEnvironment();
        BuildKeyStrings();
    }
    void init()
    {
        m_db.clear();
        m_db.setColumnCount(1);
    }

    void pageGeometry()
    {
        addStore(QStringLiteral("Shop"));
        addItem(QStringLiteral("Milk"), 0);
        m_db.setColumnCount(5);
        // font height, page height: line height, lines a page
        const std::tuple<double, double, int, int> rows[] = {
            {8.0, 120.0, 12, 10}, {14.9, 150.0, 14, 10}, {12.0, 30.0, 12, 6}};
        for (const auto &[fontHeight, pageHeight, lineHeight, linesPerPage] : rows) {
            GRPrintPagination pages(m_db);
            pages.setPageSize(QSizeF(500, pageHeight));
            pages.setFontLineHeight(fontHeight);
            pages.layout();
            QCOMPARE(int(pages.lineHeight()), lineHeight);
            QCOMPARE(int(pages.linesPerPage()), linesPerPage);
            QCOMPARE(pages.columnWidth(), 92.0); // (500 - 4 gutters of 9) / 5
        }
    }

    // B starts a page of its own, which only the needed items may run on past; C has no items.
    void scopes_data()
    {
        QTest::addColumn<int>("scope");
        QTest::addColumn<QString>("guid");
        QTest::addColumn<bool>("ignoreStarts");
        QTest::addColumn<QStringList>("expectedPages");
        const QStringList entire{"#A|Apples|(2) Bread", "#B|Cheese|Dates"};
        QTest::newRow("entire") << 0 << "" << false << entire;
        QTest::newRow("entire: page starts stay") << 0 << "" << true << entire;
        QTest::newRow("needed") << 1 << "" << false << QStringList{"#A|(2) Bread", "#B|Dates"};
        QTest::newRow("needed, ignoring page starts")
            << 1 << "" << true << QStringList{"#A|(2) Bread|#B|Dates"};
        QTest::newRow("one store: no empty page before it")
            << 2 << "b" << false << QStringList{"#B|Cheese|Dates"};
        QTest::newRow("unknown store: entire") << 2 << "gone" << false << entire;
        QTest::newRow("nothing to print") << 2 << "c" << false << QStringList();
    }
    void scopes()
    {
        QFETCH(int, scope);
        QFETCH(QString, guid);
        QFETCH(bool, ignoreStarts);
        addStore(QStringLiteral("A"));
        addStore(QStringLiteral("B"), 2, true)->setGuid(QStringLiteral("b"));
        addStore(QStringLiteral("C"))->setGuid(QStringLiteral("c"));
        addItem(QStringLiteral("Dates"), 1, QStringLiteral("Food"), 0, 1);
        addItem(QStringLiteral("Cheese"), 1);
        addItem(QStringLiteral("Bread"), 0, QStringLiteral("Food"), 0, 2);
        addItem(QStringLiteral("Apples"), 0);
        GRPrintPagination pages(m_db);
        layOut(pages, 40, GRPrintScope(scope), guid, ignoreStarts);
        QStringList texts;
        for (const auto &page : pages.pageLayouts())
            texts << text(page);
        QTEST(texts, "expectedPages");
    }

    void sortOrder_data()
    {
        QTest::addColumn<int>("option");
        QTest::addColumn<QList<qint64>>("aisleOrder");
        QTest::addColumn<QString>("expected");
        const QList<qint64> plain{0, 1, 2, 3, 4, 5, 6};
        QTest::newRow("by category, then name")
            << 0 << plain << "#S|=Dairy|Eggs|(3) Milk|=Veg|bean|Lettuce|Mustard";
        QTest::newRow("alphabetical, count ignored") << 2 << plain << "#S|bean|Eggs|Lettuce|(3) Milk|Mustard";
        QTest::newRow("by aisle: numbers, none, specials")
            << 1 << plain << "#S|=Aisle 2|Mustard|=Aisle 10|Lettuce|=Aisle ?|bean|=Dairy|Eggs|(3) Milk";
        QTest::newRow("by aisle: dairy first")
            << 1 << QList<qint64>{2, 0, 1, 3, 4, 5, 6}
            << "#S|=Dairy|Eggs|(3) Milk|=Aisle 2|Mustard|=Aisle 10|Lettuce|=Aisle ?|bean";
    }
    void sortOrder()
    {
        QFETCH(int, option);
        QFETCH(QList<qint64>, aisleOrder);
        QFETCH(QString, expected);
        addStore(QStringLiteral("S"), option);
        addItem(QStringLiteral("Lettuce"), 0, QStringLiteral("Veg"), 10);
        addItem(QStringLiteral("Milk"), 0, QStringLiteral("Dairy"), -2, 3);
        addItem(QStringLiteral("Mustard"), 0, QStringLiteral("Veg"), 2);
        addItem(QStringLiteral("bean"), 0, QStringLiteral("Veg"), 0);
        addItem(QStringLiteral("Eggs"), 0, QStringLiteral("Dairy"), -2);
        // Categories print in the category order, not the list order.
        std::swap(m_db.categoryOrder()[0], m_db.categoryOrder()[1]);
        m_db.aisleOrder() = aisleOrder;
        GRPrintPagination pages(m_db);
        QCOMPARE(text(layOut(pages, 40).pageLayouts().value(0)), expected);
    }

    void keyLegendTakesSecondEntrysStore_data()
    {
        QTest::addColumn<qint32>("option");
        QTest::addColumn<QString>("expected");
        QTest::newRow("grouped") << 0 << "#A|=Keys|~|~|~|~|~|~|=Food|Milk ❄|#B|=Food|Tea";
        QTest::newRow("alphabetical: Items heading")
            << 2 << "#A|=Keys|~|~|~|~|~|~|=Items|=Food|Milk ❄|#B|Tea";
    }
    void keyLegendTakesSecondEntrysStore()
    {
        QFETCH(qint32, option);
        QFETCH(QString, expected);
        addStore(QStringLiteral("A"), 0);
        addStore(QStringLiteral("B"), option);
        addItem(QStringLiteral("Milk ") + keyCharacters().at(4), 0);
        addItem(QStringLiteral("Tea"), 1);
        GRPrintPagination pages(m_db);
        const QList<GRPrintItem> page = layOut(pages, 40).pageLayouts().value(0);
        QCOMPARE(text(page), expected);
        QCOMPARE(page[2].name(), g_keyStrings[0]);
    }

    // One column, ten lines a page. A section's rows count its heading, so store A takes its
    // heading line and aItems + 1 more.
    void storeHeadingNeverAloneAtFoot_data()
    {
        QTest::addColumn<int>("aItems");
        QTest::addColumn<int>("bItems");
        QTest::addColumn<int>("bPage");
        QTest::addColumn<double>("bY");
        QTest::newRow("5 left, 2 rows: stays") << 3 << 1 << 0 << 84.0;
        QTest::newRow("5 left, 3 rows: next page") << 3 << 2 << 1 << 0.0;
        QTest::newRow("3 left: next page") << 5 << 1 << 1 << 0.0;
        QTest::newRow("6 left, 4 rows: stays") << 2 << 3 << 0 << 72.0;
    }
    void storeHeadingNeverAloneAtFoot()
    {
        QFETCH(int, aItems);
        QFETCH(int, bItems);
        QFETCH(int, bPage);
        QFETCH(double, bY);
        addStore(QStringLiteral("A"));
        addStore(QStringLiteral("B"));
        addItems(aItems, 0, QStringLiteral("a"));
        addItems(bItems, 1, QStringLiteral("b"));
        GRPrintPagination pages(m_db);
        layOut(pages, 10);
        const GRPrintItem heading = pages.pageLayouts().value(bPage).value(bPage ? 0 : aItems + 1);
        QCOMPARE(heading.name(), QStringLiteral("B"));
        QCOMPARE(heading.position(), QPointF(0, bY));
    }

    void runContinuesWithoutHeading()
    {
        addStore(QStringLiteral("A"));
        addItems(14, 0);
        m_db.setColumnCount(2);
        GRPrintPagination pages(m_db);
        layOut(pages, 6);
        // 15 lines in two columns of five below the heading; the rest starts the next page.
        QCOMPARE(pages.pageCount(), 2);
        QCOMPARE(pages.pageLayouts()[0].size(), 11);
        QCOMPARE(text(pages.pageLayouts()[1]), QStringLiteral("item10|item11|item12|item13"));
        QCOMPARE(pages.pageLayouts()[1][0].position(), QPointF(0, 0));
        QCOMPARE(pages.pageLayouts()[1][3].position(), QPointF(pages.columnWidth() + 9, 12));
        QCOMPARE(pages.pageLayouts()[0][6].position(), QPointF(pages.columnWidth() + 9, 12)); // item05
    }

    void groupHeadingNeverAloneAtColumnFoot()
    {
        addStore(QStringLiteral("S"), 0);
        addItems(2, 0, QStringLiteral("Dairy "));
        addItem(QStringLiteral("Apples"), 0, QStringLiteral("Fruit"));
        addItem(QStringLiteral("Pears"), 0, QStringLiteral("Fruit"));
        m_db.setColumnCount(2);
        GRPrintPagination pages(m_db);
        const QList<GRPrintItem> page = layOut(pages, 40).pageLayouts().value(0);
        // Four rows a column would leave "Fruit" on the last line of the first one.
        QCOMPARE(text(page), QStringLiteral("#S|=Food|Dairy 00|Dairy 01|_|=Fruit|Apples|Pears"));
        QCOMPARE(page[5].position(), QPointF(pages.columnWidth() + 9, 12));
    }

    void drawingArithmetic()
    {
        const QRectF line(10, 100, 90, 12);
        const GRPrintGeometry::ItemBoxes two = GRPrintGeometry::itemBoxes(line, false);
        QCOMPARE(two.first, QRectF(12.125, 104.125, 7, 7));
        QCOMPARE(two.second, QRectF(21.125, 104.125, 7, 7));
        QCOMPARE(two.textLeft, 30.125);
        const GRPrintGeometry::ItemBoxes one = GRPrintGeometry::itemBoxes(line, true);
        QVERIFY(one.second.isNull());
        QCOMPARE(one.textLeft, 21.125);
        QCOMPARE(GRPrintGeometry::cross(two.second).value(1), QLineF(21.125, 111.125, 28.125, 104.125));

        const QList<QLineF> rules = GRPrintGeometry::headingRules(line, 40);
        QCOMPARE(rules.size(), 6);
        QCOMPARE(rules[0], QLineF(10, 106.125, 30, 106.125)); // side floor((90-40-10)/2) = 20
        QCOMPARE(rules[1], QLineF(80, 106.125, 100, 106.125));
        QCOMPARE(rules[5].y1() - rules[1].y1(), 4.0);               // spacing capped at 2
        QVERIFY(GRPrintGeometry::headingRules(line, 79).isEmpty()); // side would be 0
        QCOMPARE(GRPrintGeometry::headingRules(line, 78).size(), 6);
    }
};

QTEST_GUILESS_MAIN(TestPrintPagination)
#include "tst_printpagination.moc"
