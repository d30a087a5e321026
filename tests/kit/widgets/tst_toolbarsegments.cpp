#include "MGToolbarSegments.h"
#include "MGToolbarSegmentsDelegate.h"

#include <QPointer>
#include <QScopeGuard>
#include <QTest>

// Logs "sel1" when tab 1 is selected and "same1" when it is selected again.
class FakeDelegate : public MGToolbarSegmentsDelegate
{
public:
    QList<QVariant> tabs{QStringLiteral("One"), QStringLiteral("Two"), QStringLiteral("Three")};
    QStringList calls;
    bool deleteOnSelect = false;

    QList<QVariant> tabsForSegments(MGToolbarSegments *) override { return tabs; }
    void tabWasSelected(qint64 tab, MGToolbarSegments *segments) override
    {
        calls << QStringLiteral("sel%1").arg(tab);
        if (deleteOnSelect)
            delete segments;
    }
    bool sameTabWasSelected(qint64 tab, MGToolbarSegments *) override
    {
        calls << QStringLiteral("same%1").arg(tab);
        return true;
    }
};

// Selection style, steps, the delegate's log, the tabs shown selected afterwards.
using Row = std::tuple<int, QString, QString, QList<qint64>>;
Q_DECLARE_METATYPE(Row)

class TestToolbarSegments : public QObject
{
    Q_OBJECT

private slots:
    // Steps: "c1" click tab 1, "p1" press on it, "m2" move over tab 2 ("mb": below the bar), "r1" release,
    // "l" the pointer leaves, "d32" / "e32" disable / enable tab 32, "x" disable the whole control,
    // "s2" selectTab(2), "n2" the delegate now has two tabs and they are laid out again, "R" reloadTabs,
    // "k" the delegate deletes the control when a tab is selected.
    void script_data()
    {
        QTest::addColumn<Row>("row");
        QTest::newRow("momentary") << Row{0, "c1 c1", "sel1 sel1", {}};
        QTest::newRow("drag to another tab") << Row{0, "p1 m2 r2", "", {}};
        QTest::newRow("drag out and back") << Row{0, "p1 m2 m1 r1", "sel1", {}};
        QTest::newRow("leave") << Row{0, "p1 l r1", "", {}};
        QTest::newRow("leave and move back") << Row{0, "p1 l m1 r1", "sel1", {}};
        QTest::newRow("single moves") << Row{1, "c0 c2", "sel0 sel2", {2}};
        QTest::newRow("single same tab") << Row{1, "c2 c2", "sel2 same2", {2}};
        QTest::newRow("single drag out keeps") << Row{1, "c0 p2 mb rb", "sel0", {0}};
        QTest::newRow("toggles") << Row{2, "c0 c2 c0", "sel0 sel2 sel0", {2}};
        QTest::newRow("bit 32 is tab 0, so is 64") << Row{0, "d32 c0 c2 e64 c0", "sel2 sel0", {}};
        QTest::newRow("disabled control shows none") << Row{1, "c1 x", "sel1", {}};
        QTest::newRow("no tabs, nothing to click") << Row{2, "n0 R c0", "", {}};
        QTest::newRow("delegate deletes control") << Row{2, "k c1", "sel1", {}};
        // selectTab lays the tabs out first; a later layout keeps only a tab that still exists, or tab 0.
        QTest::newRow("select past the end") << Row{1, "s3", "", {}};
        QTest::newRow("still there after relayout") << Row{1, "s1 n2", "", {1}};
        QTest::newRow("gone after relayout") << Row{1, "s2 n2", "", {}};
        QTest::newRow("tab 0 outlives its tab") << Row{1, "s0 n0", "", {0}};
        QTest::newRow("reload drops selection") << Row{1, "s1 R", "", {}};
    }
    void script()
    {
        QFETCH(Row, row);
        const auto &[style, script, calls, selected] = row;
        FakeDelegate delegate;
        QPointer<MGToolbarSegments> segments = new MGToolbarSegments(style, true);
        segments->setDelegate(&delegate);
        segments->resize(200, 21); // with round end caps the tabs are 68, 66 and 66 wide
        const auto cleanup = qScopeGuard([&] { delete segments.data(); });
        for (const QString &step : script.split(' ')) {
            const char action = step[0].toLatin1();
            const qint64 n = step.mid(1).toLongLong();
            const QPoint at = step.endsWith('b') ? QPoint(101, 40) : QPoint(34 + 67 * n, 10);
            QEvent leave(QEvent::Leave);
            if (const int mouse = QByteArray("prc-m").indexOf(action); mouse >= 0) // a QTest::MouseAction
                QTest::mouseEvent(QTest::MouseAction(mouse), segments,
                                  mouse == 4 ? Qt::NoButton : Qt::LeftButton, {}, at);
            else if (action == 'l')
                QCoreApplication::sendEvent(segments, &leave);
            else if (action == 'd' || action == 'e')
                segments->setEnabled(action == 'e', n);
            else if (action == 'x')
                segments->setEnabled(false);
            else if (action == 's')
                segments->selectTab(n);
            else if (action == 'n')
                delegate.tabs.resize(n), segments->layoutTabs();
            else if (action == 'R')
                segments->reloadTabs();
            else
                delegate.deleteOnSelect = true;
        }
        QCOMPARE(delegate.calls.join(' '), calls);
        QCOMPARE(segments.isNull(), delegate.deleteOnSelect);
        for (qint64 tab = 0; segments && tab <= 3; ++tab)
            QCOMPARE(segments->isTabSelected(tab), selected.contains(tab));
        QVERIFY(!segments || (!segments->isPressed() && segments->pressedTab() == -1));
    }
};

QTEST_MAIN(TestToolbarSegments)
#include "tst_toolbarsegments.moc"
