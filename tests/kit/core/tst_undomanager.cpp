#include "MGUndoDelegate.h"
#include "MGUndoManager.h"

#include <QTest>

// Each entry snapshots the live value and applying it swaps the two, so one entry serves undo and
// redo. `held` counts the snapshots filled and not yet freed; `fail` refuses a fill or an apply; a
// context given with an action means "merge it into the current entry".
class FakeDelegate : public MGUndoDelegate
{
public:
    int live = 0, held = 0, beeps = 0;
    bool fail = false, modal = false;
    QList<quint32> enumerated;

    bool setUndoAction(quint32, quint32, std::any &data, const std::any &) override
    {
        ++held;
        data = live;
        return !fail;
    }
    bool undoOrRedo(quint32 &, quint32, std::any &data, bool) override
    {
        if (!fail)
            std::swap(live, *std::any_cast<int>(&data));
        return !fail;
    }
    QString undoActionName(quint32 d, const std::any &) override { return QString("D%1").arg(d); }
    void freeUndoAction(quint32, quint32, std::any &data, bool) override { held -= data.has_value(); }
    bool coalesceUndoAction(quint32, quint32, std::any &, const std::any &c) override
    {
        return c.has_value();
    }
    void enumeratedUndoAction(quint32, quint32 d, std::any &, const std::any &) override { enumerated << d; }
};

class TestUndoManager : public QObject
{
    Q_OBJECT

    MGUndoManager &m = MGUndoManager::sharedInstance();
    FakeDelegate fake;

    // state: "live: entries in use", the current one in brackets, e.g. "3: 1 [3] 4". Every entry in
    // use must hold a snapshot, and the menu titles and their enabling must follow the current entry.
    void checkState(const QString &state)
    {
        fake.enumerated.clear();
        m.enumerate(false, {});
        const qint64 current = m.currentEntry();
        QString actual = QString("%1:").arg(fake.live);
        for (qsizetype i = 0; i < fake.enumerated.size(); ++i)
            actual += QString(i == current ? " [%1]" : " %1").arg(fake.enumerated[i]);
        QCOMPARE(actual, state);
        QCOMPARE(QList<qint64>({m.inUseCount(), fake.held}), QList<qint64>(2, fake.enumerated.size()));
        const bool redo = current + 1 < fake.enumerated.size();
        QString title;
        QCOMPARE(m.validateState(true, &title), current >= 0 && !fake.modal);
        QCOMPARE(title, current >= 0 ? QString("Undo D%1").arg(fake.enumerated[current]) : "Undo");
        QCOMPARE(m.validateState(false, &title), redo && !fake.modal);
        QCOMPARE(title, redo ? QString("Redo D%1").arg(fake.enumerated[current + 1]) : "Redo");
    }

    // aN records descriptor N, then sets the live value to N; mN does so with the delegate willing
    // to merge; a leading '!' makes the delegate refuse the fill or fail the apply; M puts a modal
    // window up; CN sets the capacity to N.
    void run(const QString &op)
    {
        using U = MGUndoManager;
        // clang-format off
        static const QHash<QString, void (U::*)()> calls = {
            {"u", &U::undo}, {"r", &U::redo}, {"p", &U::popUndo}, {"s", &U::suppressCoalescing}, {"c", &U::clearUndo}};
        // clang-format on
        fake.fail = op.startsWith('!');
        const QString word = fake.fail ? op.mid(1) : op;
        const std::any merge = word.startsWith('m') ? std::any(true) : std::any();
        if (word == "M")
            fake.modal = true;
        else if (word.startsWith('C'))
            m.setCapacity(word.mid(1).toUInt());
        else if (calls.contains(word))
            (m.*calls[word])();
        else if (m.setUndoAction(1, word.mid(1).toUInt(), merge) == fake.fail)
            QFAIL(qPrintable("unexpected answer to " + op));
        else if (!fake.fail)
            fake.live = word.mid(1).toInt();
    }

private slots:
    void init()
    {
        m.reset();
        fake = FakeDelegate();
        m.setDelegate(&fake);
        m.setBufferSize(sizeof(int));
        MGUndoManager::setBeepHandler([this] { ++fake.beeps; });
        MGUndoManager::setModalCheck([this] { return fake.modal; });
    }

    void scenario_data()
    {
        QTest::addColumn<QString>("steps"); // op=state after it
        QTest::addColumn<int>("beeps");
        // clang-format off
        QTest::newRow("round trip, clear") << "a1=1: [1]|a2=2: 1 [2]|u=1: [1] 2|u=0: 1 2|u=0: 1 2|r=1: [1] 2|r=2: 1 [2]|r=2: 1 [2]|c=2:|u=2:" << 3;
        QTest::newRow("new action drops redo") << "a1=1: [1]|a2=2: 1 [2]|a3=3: 1 2 [3]|u=2: 1 [2] 3|u=1: [1] 2 3|a4=4: 1 [4]|r=4: 1 [4]" << 1;
        QTest::newRow("failed apply or refused fill clears") << "a1=1: [1]|u=0: 1|!r=0:|a2=2: [2]|!u=2:|a3=3: [3]|a4=4: 3 [4]|u=3: [3] 4|!a5=3:|r=3:" << 1;
        QTest::newRow("pop once, never after undo") << "a1=1: [1]|a2=2: 1 [2]|u=1: [1] 2|p=1: [1] 2|a3=3: 1 [3]|p=3: [1]|p=3: [1]|u=0: 1" << 0;
        QTest::newRow("merge declined, other descriptor, suppressed") << "a1=1: [1]|a1=1: 1 [1]|m2=2: 1 1 [2]|s=2: 1 1 [2]|m2=2: 1 1 2 [2]" << 0;
        QTest::newRow("a modal window disables both menu items") << "a1=1: [1]|a2=2: 1 [2]|u=1: [1] 2|M=1: [1] 2" << 0;
        QTest::newRow("merge keeps first snapshot, none after undo or redo") << "a1=1: [1]|a2=2: 1 [2]|m2=2: 1 [2]|u=1: [1] 2|r=2: 1 [2]|m2=2: 1 2 [2]|u=2: 1 [2] 2|m2=2: 1 2 [2]" << 0;
        // The ring keeps the latest actions, dropping the oldest however often it wraps.
        QTest::newRow("ring of 3") << "C3=0:|a1=1: [1]|a2=2: 1 [2]|a3=3: 1 2 [3]|a4=4: 2 3 [4]|a5=5: 3 4 [5]|a6=6: 4 5 [6]|a7=7: 5 6 [7]|u=6: 5 [6] 7|u=5: [5] 6 7|u=4: 5 6 7|u=4: 5 6 7" << 1;
        // clang-format on
        QString unbounded = "C0=0:", before;
        for (int i = 1; i <= 26; ++i) {
            unbounded += QString("|a%1=%1:%2 [%1]").arg(i).arg(before);
            before += QString(" %1").arg(i);
        }
        QTest::newRow("unbounded grows past 25") << unbounded << 0;
    }
    void scenario()
    {
        QFETCH(QString, steps);
        for (const QString &step : steps.split('|')) {
            run(step.section('=', 0, 0));
            checkState(step.section('=', 1));
        }
        QTEST(fake.beeps, "beeps");
    }
};

QTEST_GUILESS_MAIN(TestUndoManager)
#include "tst_undomanager.moc"
