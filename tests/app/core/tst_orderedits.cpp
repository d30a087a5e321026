#include "GRCategory.h"
#include "GRDatabaseFile.h"
#include "GRGroceryDatabase.h"
#include "GROrderEdits.h"
#include "GRTestSupport.h"

#include <QTest>

// Aisle groups as digits, categories by name.
static QString order(const GRGroceryDatabase &db, bool aisles)
{
    QStringList names;
    if (aisles) {
        for (const qint64 group : db.aisleOrder())
            names << QString::number(group);
    } else {
        for (const GRCategoryOrderEntry &entry : db.categoryOrder())
            names << entry.cat->name();
    }
    return names.join(aisles ? "" : ",");
}

class TestOrderEdits : public QObject
{
    Q_OBJECT

private slots:
    // A row dropped in the gap above `row`; the sample list has categories Dairy, Fruit, Pantry.
    void move_data()
    {
        QTest::addColumn<bool>("aisles");
        QTest::addColumn<qint64>("from");
        QTest::addColumn<qint64>("row");
        QTest::addColumn<qint64>("target");
        QTest::addColumn<QString>("after");
        QTest::newRow("aisle to the end") << true << 0LL << 7LL << 6LL << "1234560";
        QTest::newRow("aisle up") << true << 5LL << 1LL << 1LL << "0512346";
        QTest::newRow("onto itself") << true << 3LL << 3LL << -1LL << "0123456";
        QTest::newRow("gap below itself") << true << 3LL << 4LL << -1LL << "0123456";
        QTest::newRow("no such source") << true << 7LL << 0LL << -1LL << "0123456";
        QTest::newRow("past the end") << true << 0LL << 8LL << -1LL << "0123456";
        QTest::newRow("category up") << false << 2LL << 0LL << 0LL << "Pantry,Dairy,Fruit";
        QTest::newRow("category below itself") << false << 0LL << 1LL << -1LL << "Dairy,Fruit,Pantry";
    }
    // Only a category that really moves switches to the manual order.
    void move()
    {
        QFETCH(bool, aisles);
        QFETCH(qint64, from);
        QFETCH(qint64, row);
        QFETCH(qint64, target);
        QFETCH(QString, after);
        GRGroceryDatabase db;
        QVERIFY(ReadModernDatabaseData(GRTestSupport::sampleDatabase(), db));
        db.updateCategoryOrder();
        QCOMPARE(aisles ? GROrderEdits::moveAisle(db, from, row) : GROrderEdits::moveCategory(db, from, row),
                 target);
        QCOMPARE(order(db, aisles), after);
        QCOMPARE(db.manualOrder(), !aisles && target >= 0);
    }

    void dragSourceRow()
    {
        const QList<std::pair<QByteArray, qint64>> cases{
            {"12", 12}, {"", -1}, {"-1", -1}, {"3x", -1}, {" 3", -1}, {"99999999999999999999", -1}};
        for (const auto &[text, row] : cases)
            QCOMPARE(GROrderEdits::dragSourceRow(text), row);
    }
};

QTEST_MAIN(TestOrderEdits)
#include "tst_orderedits.moc"
