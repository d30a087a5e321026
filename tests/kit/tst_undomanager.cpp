#include "GRTestSupport.h"
#include "MGUndoDelegate.h"
#include "MGUndoManager.h"

#include <QTest>

// Each entry snapshots the live value and applying it swaps the two, so one entry serves undo and
// redo. `held` counts the snapshots filled and not yet freed.
class FakeDelegate : public MGUndoDelegate
{
public:
    int live = 0;
    int held = 0;
    bool refuseFill = false;
    bool failApply = false;
    bool mergeAnswer = false;
    QList<quint32> enumerated;

    bool setUndoAction(quint32, quint32, std::any &data, const std::any &) override
    {
        held += data.has_value() ? 0 : 1;
        data = live;
        return !refuseFill;
    }
    bool undoOrRedo(quint32 &, quint32, std::any &data, bool) override
    {
        if (!failApply)
            std::swap(live, *std::any_cast<int>(&data));
        return !failApply;
    }
    QString undoActionName(quint32 descriptor, const std::any &) override
    {
        return QString("D%1").arg(descriptor);
    }
    void freeUndoAction(quint32, quint32, std::any &data, bool) override
    {
        held -= data.has_value() ? 1 : 0;
        data.reset();
    }
    bool coalesceUndoAction(quint32, quint32, std::any &, const std::any &) override { return mergeAnswer; }
    void enumeratedUndoAction(quint32, quint32 d, std::any &, const std::any &) override { enumerated << d; }
};

class TestUndoManager : public QObject
{
    Q_OBJECT

    MGUndoManager &m = MGUndoManager::sharedInstance();
    FakeDelegate fake;
    int beeps = 0;
    bool modal = false;

    // state: "live: entries in use", the current one in brackets, e.g. "3: 1 [3] 4".
    void checkState(const QString &state)
    {
        const QStringList words = state.split(' ', Qt::SkipEmptyParts);
        QCOMPARE(fake.live, words.value(0).chopped(1).toInt());
        QList<quint32> descriptors;
        qint64 current = -1;
        for (QString word : words.mid(1)) {
            if (word.startsWith('['))
                current = descriptors.size(), word = word.mid(1).chopped(1);
            descriptors << word.toUInt();
        }
        QCOMPARE(m.currentEntry(), current);
        QCOMPARE(m.inUseCount(), quint32(descriptors.size()));
        QCOMPARE(fake.held, int(descriptors.size()));
        fake.enumerated.clear();
        m.enumerate(false, {});
        QCOMPARE(fake.enumerated, descriptors);
        const bool redo = current + 1 < descriptors.size();
        QCOMPARE(m.isUndoAvailable(), current >= 0);
        QCOMPARE(m.isRedoAvailable(), redo);
        QString title;
        QCOMPARE(m.validateState(true, &title), current >= 0 && !modal);
        QCOMPARE(title, current >= 0 ? QString("Undo D%1").arg(descriptors[current]) : "Undo");
        QCOMPARE(m.validateState(false, &title), redo && !modal);
        QCOMPARE(title, redo ? QString("Redo D%1").arg(descriptors[current + 1]) : "Redo");
    }

    // aN records descriptor N, then sets the live value to N; mN does so with the delegate willing
    // to merge; a leading '!' makes the delegate refuse the fill or fail the apply; M: a modal window.
    void run(const QString &op)
    {
        const bool fail = op.startsWith('!');
        const QString word = fail ? op.mid(1) : op;
        fake.refuseFill = fake.failApply = fail;
        fake.mergeAnswer = word.startsWith('m');
        if (word == "u")
            m.undo();
        else if (word == "r")
            m.redo();
        else if (word == "p")
            m.popUndo();
        else if (word == "s")
            m.suppressCoalescing();
        else if (word == "c")
            m.clearUndo();
        else if (word == "M")
            modal = true;
        else if (m.setUndoAction(1, word.mid(1).toUInt()) == fail)
            QFAIL(qPrintable("unexpected answer to " + op));
        else if (!fail)
            fake.live = word.mid(1).toInt();
        fake.refuseFill = fake.failApply = fake.mergeAnswer = false;
    }

private slots:
    void initTestCase()
    {
        GRTestSupport::initEnvironment();
        MGUndoManager::setBeepHandler([this] { ++beeps; });
        MGUndoManager::setModalCheck([this] { return modal; });
    }

    void init()
    {
        m.reset();
        fake = FakeDelegate();
        m.setDelegate(&fake);
        m.setCapacity(25);
        m.setBufferSize(sizeof(int));
        beeps = 0;
        modal = false;
    }

    void scenario_data()
    {
        QTest::addColumn<QString>("ops");
        QTest::addColumn<QString>("states"); // after each op
        QTest::addColumn<int>("beeps");
        // clang-format off
        QTest::newRow("round trip") << "a1 a2 u u u r r r" << "1: [1]|2: 1 [2]|1: [1] 2|0: 1 2|0: 1 2|1: [1] 2|2: 1 [2]|2: 1 [2]" << 2;
        QTest::newRow("new action drops redo") << "a1 a2 a3 u u a4 r" << "1: [1]|2: 1 [2]|3: 1 2 [3]|2: 1 [2] 3|1: [1] 2 3|4: 1 [4]|4: 1 [4]" << 1;
        QTest::newRow("refused first fill") << "!a1 u" << "0:|0:" << 1;
        QTest::newRow("refused fill clears") << "a1 a2 u !a3 r" << "1: [1]|2: 1 [2]|1: [1] 2|1:|1:" << 1;
        QTest::newRow("failed undo clears") << "a1 a2 !u" << "1: [1]|2: 1 [2]|2:" << 0;
        QTest::newRow("failed redo clears") << "a1 u !r" << "1: [1]|0: 1|0:" << 0;
        QTest::newRow("pop once") << "a1 a2 p p u" << "1: [1]|2: 1 [2]|2: [1]|2: [1]|0: 1" << 0;
        QTest::newRow("no pop after undo") << "a1 a2 u p" << "1: [1]|2: 1 [2]|1: [1] 2|1: [1] 2" << 0;
        QTest::newRow("clear") << "a1 a2 u c u" << "1: [1]|2: 1 [2]|1: [1] 2|1:|1:" << 1;
        QTest::newRow("merge keeps first snapshot") << "a1 a2 m2 u" << "1: [1]|2: 1 [2]|2: 1 [2]|1: [1] 2" << 0;
        QTest::newRow("merge declined") << "a1 a1" << "1: [1]|1: 1 [1]" << 0;
        QTest::newRow("no merge of other descriptor") << "a1 m2" << "1: [1]|2: 1 [2]" << 0;
        QTest::newRow("no merge when suppressed") << "a1 s m1" << "1: [1]|1: [1]|1: 1 [1]" << 0;
        QTest::newRow("no merge after undo or redo") << "a1 a2 u r m2 u m2" << "1: [1]|2: 1 [2]|1: [1] 2|2: 1 [2]|2: 1 2 [2]|2: 1 [2] 2|2: 1 2 [2]" << 0;
        QTest::newRow("modal window disables") << "a1 a2 u M" << "1: [1]|2: 1 [2]|1: [1] 2|1: [1] 2" << 0;
        // clang-format on
    }
    void scenario()
    {
        QFETCH(QString, ops);
        QFETCH(QString, states);
        QFETCH(int, beeps);
        const QStringList opList = ops.split(' ');
        const QStringList stateList = states.split('|');
        QCOMPARE(opList.size(), stateList.size());
        for (int i = 0; i < opList.size(); ++i) {
            run(opList[i]);
            checkState(stateList[i]);
        }
        QCOMPARE(this->beeps, beeps);
    }

    void ringKeepsLatest_data()
    {
        QTest::addColumn<quint32>("capacity");
        QTest::addColumn<int>("actions");
        QTest::addColumn<int>("kept");
        QTest::newRow("26 in 25") << 25u << 26 << 25;
        QTest::newRow("small ring") << 3u << 7 << 3;
        QTest::newRow("unbounded grows") << 0u << 30 << 30;
    }
    void ringKeepsLatest()
    {
        QFETCH(quint32, capacity);
        QFETCH(int, actions);
        QFETCH(int, kept);
        m.setCapacity(capacity);
        auto state = [&](int current) {
            QString text = QString("%1:").arg(current);
            for (int d = actions - kept + 1; d <= actions; ++d)
                text += QString(d == current ? " [%1]" : " %1").arg(d);
            return text;
        };
        for (int i = 1; i <= actions; ++i)
            run(QString("a%1").arg(i));
        checkState(state(actions));
        for (int i = 0; i <= kept; ++i)
            m.undo();
        QCOMPARE(beeps, 1);
        checkState(state(actions - kept));
    }

    void identifiersAndCurrentData()
    {
        QCOMPARE(m.newUndoID(), 1u);
        QVERIFY(m.setUndoID(0xFFFFFFFFu, 1, 1) && m.isUndoIDActive(2)); // a fresh identifier
        QVERIFY(m.setUndoID(2, 1, 5));                                  // joins the entry already made
        QVERIFY(m.setNewUndoAction(1, 6));
        quint32 action = 0, descriptor = 0;
        QCOMPARE(std::any_cast<int>(*m.dataForPreviousUndoAction(&action, &descriptor)), 0);
        m.updateCurrentAction(2);
        m.updateCurrentDescriptor(7);
        QVERIFY(m.dataForCurrentUndoAction(&action, &descriptor));
        QCOMPARE(QList<quint32>({action, descriptor}), QList<quint32>({2, 7}));
        m.enumerate(true, {});
        QCOMPARE(fake.enumerated, QList<quint32>({1, 7}) + QList<quint32>(23, 0));
        m.popUndo();
        QVERIFY(!m.dataForCurrentUndoAction(nullptr, nullptr)); // only the latest command's entry
        checkState("0: [1]");
    }
};

QTEST_GUILESS_MAIN(TestUndoManager)
#include "tst_undomanager.moc"
