#include "MGNotificationCenter.h"

#include <QTest>

#include <memory>

class TestNotificationCenter : public QObject
{
    Q_OBJECT

private slots:
    void delivery_data()
    {
        QTest::addColumn<QString>("change"); // what happens before the first post or inside a's handler
        QTest::addColumn<QString>("posts");  // who heard each of two posts, in order; B: b heard "other"
        // clang-format off
        QTest::newRow("registration order") << "" << "abc abc";
        QTest::newRow("context died before") << "deleteBefore" << "ac ac";
        QTest::newRow("removed for one name") << "removeNameBefore" << "ac ac";
        QTest::newRow("removes itself") << "removeSelf" << "abc bc";
        QTest::newRow("removes the next") << "removeNext" << "ac ac";
        QTest::newRow("deletes the next") << "deleteNext" << "ac ac";
        QTest::newRow("adds one") << "add" << "abc abcn";
        QTest::newRow("posts again") << "postAgain" << "aBbc abc";
        // clang-format on
    }
    void delivery()
    {
        QFETCH(QString, change);
        QFETCH(QString, posts);
        MGNotificationCenter center;
        QObject a, c, extra;
        auto b = std::make_unique<QObject>();
        QString log;
        bool changed = false;
        center.addObserver("n", &a, [&](const QVariantMap &info) {
            log += 'a';
            QCOMPARE(info.value("row").toInt(), 7);
            if (std::exchange(changed, true))
                return;
            if (change == "removeSelf")
                center.removeObserver(&a);
            else if (change == "removeNext")
                center.removeObserver(b.get());
            else if (change == "deleteNext")
                b.reset();
            else if (change == "add")
                center.addObserver("n", &extra, [&](const QVariantMap &) { log += 'n'; });
            else if (change == "postAgain")
                center.post("other");
        });
        center.addObserver("n", b.get(), [&](const QVariantMap &) { log += 'b'; });
        center.addObserver("other", b.get(), [&](const QVariantMap &) { log += 'B'; });
        center.addObserver("n", &c, [&](const QVariantMap &) { log += 'c'; });
        if (change == "deleteBefore") {
            b.reset();
            b = std::make_unique<QObject>(); // may reuse the address; must not inherit the observation
        } else if (change == "removeNameBefore") {
            center.removeObserver(b.get(), "n");
        }
        for (const QString &expected : posts.split(' ')) {
            log.clear();
            center.post("n", {{"row", 7}});
            QCOMPARE(log, expected);
        }
    }
};

QTEST_GUILESS_MAIN(TestNotificationCenter)
#include "tst_notificationcenter.moc"
