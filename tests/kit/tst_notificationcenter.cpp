#include "GRTestSupport.h"
#include "MGNotificationCenter.h"

#include <QTest>

#include <memory>

enum class Change
{
    None,
    DeleteBefore,
    RemoveNameBefore,
    RemoveSelf,
    RemoveNext,
    DeleteNext,
    Add,
    PostAgain
};
Q_DECLARE_METATYPE(Change)

class TestNotificationCenter : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { GRTestSupport::initEnvironment(); }
    void delivery_data();
    void delivery();
};

void TestNotificationCenter::delivery_data()
{
    QTest::addColumn<Change>("change");
    QTest::addColumn<QStringList>("firstPost");
    QTest::addColumn<QStringList>("secondPost");

    const QStringList all{"a", "b", "c"};
    QTest::newRow("registration order") << Change::None << all << all;
    QTest::newRow("context died before")
        << Change::DeleteBefore << QStringList{"a", "c"} << QStringList{"a", "c"};
    QTest::newRow("removed for one name")
        << Change::RemoveNameBefore << QStringList{"a", "c"} << QStringList{"a", "c"};
    QTest::newRow("removes itself") << Change::RemoveSelf << all << QStringList{"b", "c"};
    QTest::newRow("removes the next") << Change::RemoveNext << QStringList{"a", "c"} << QStringList{"a", "c"};
    QTest::newRow("deletes the next") << Change::DeleteNext << QStringList{"a", "c"} << QStringList{"a", "c"};
    QTest::newRow("adds one") << Change::Add << all << QStringList{"a", "b", "c", "new"};
    QTest::newRow("posts again") << Change::PostAgain << QStringList{"a", "other b", "b", "c"} << all;
}

void TestNotificationCenter::delivery()
{
    QFETCH(Change, change);
    QFETCH(QStringList, firstPost);
    QFETCH(QStringList, secondPost);

    MGNotificationCenter center;
    QObject a, c, extra;
    auto b = std::make_unique<QObject>();
    QStringList log;
    bool changed = false;
    center.addObserver("n", &a, [&](const QVariantMap &info) {
        log << "a";
        QCOMPARE(info.value("row").toInt(), 7);
        if (std::exchange(changed, true))
            return;
        if (change == Change::RemoveSelf)
            center.removeObserver(&a);
        else if (change == Change::RemoveNext)
            center.removeObserver(b.get());
        else if (change == Change::DeleteNext)
            b.reset();
        else if (change == Change::Add)
            center.addObserver("n", &extra, [&](const QVariantMap &) { log << "new"; });
        else if (change == Change::PostAgain)
            center.post("other");
    });
    center.addObserver("n", b.get(), [&](const QVariantMap &) { log << "b"; });
    center.addObserver("other", b.get(), [&](const QVariantMap &) { log << "other b"; });
    center.addObserver("n", &c, [&](const QVariantMap &) { log << "c"; });

    if (change == Change::DeleteBefore) {
        b.reset();
        b = std::make_unique<QObject>(); // may reuse the address; must not inherit the observation
    } else if (change == Change::RemoveNameBefore) {
        center.removeObserver(b.get(), "n");
    }
    center.post("n", {{"row", 7}});
    QCOMPARE(log, firstPost);
    log.clear();
    center.post("n", {{"row", 7}});
    QCOMPARE(log, secondPost);
}

QTEST_GUILESS_MAIN(TestNotificationCenter)
#include "tst_notificationcenter.moc"
