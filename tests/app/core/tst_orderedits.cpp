#include "GRDatabaseFile.h"
#include "GRGroceryDatabase.h"
#include "GROrderEdits.h"
#include "GRTestSupport.h"

#include <QTest>

// The category table takes the same drop path; the preferences window's test drives it.
class TestOrderEdits : public QObject
{
    Q_OBJECT

private slots:
    // An aisle group dragged as `drag` and dropped in the gap above `row` of 0123456.
    void moveAisle_data()
    {
        QTest::addColumn<QByteArray>("drag");
        QTest::addColumn<qint64>("row");
        QTest::addColumn<qint64>("target");
        QTest::addColumn<QString>("after");
        QTest::newRow("to the end") << QByteArray("0") << 7LL << 6LL << "1234560";
        QTest::newRow("gap below itself") << QByteArray("3") << 4LL << -1LL << "0123456";
        QTest::newRow("no such source") << QByteArray("7") << 2LL << -1LL << "0123456";
        QTest::newRow("past the end") << QByteArray("0") << 8LL << -1LL << "0123456";
        QTest::newRow("source with a space") << QByteArray(" 3") << 2LL << -1LL << "0123456";
        QTest::newRow("source beyond 64 bits")
            << QByteArray("99999999999999999999") << 2LL << -1LL << "0123456";
    }
    void moveAisle()
    {
        QFETCH(QByteArray, drag);
        QFETCH(qint64, row);
        GRGroceryDatabase db;
        QVERIFY(ReadModernDatabaseData(GRTestSupport::sampleDatabase(), db));
        QTEST(GROrderEdits::moveAisle(db, GROrderEdits::dragSourceRow(drag), row), "target");
        QString after;
        for (const qint64 group : db.aisleOrder())
            after += QString::number(group);
        QTEST(after, "after");
        QVERIFY(!db.manualOrder());
    }
};

QTEST_MAIN(TestOrderEdits)
#include "tst_orderedits.moc"
