#include "GRFunctionKeys.h"
#include "GRItem.h"
#include "GRItemNavigation.h"
#include "GRTypeSelect.h"

#include <QKeyEvent>
#include <QTest>

// The keyboard's arithmetic, with numbers: where the arrows go, which F-keys are store keys, and
// how typed text selects.
class TestItemKeys : public QObject
{
    Q_OBJECT

private slots:
    void navigation_data()
    {
        QTest::addColumn<quint64>("count");
        QTest::addColumn<quint64>("rows");
        QTest::addColumn<QString>("moves"); // arrow (Left, Right, Up, Down), from > to
        // Columns of 3, 3 and 2: left from the first column goes to the last, a row up when the last
        // column is short; right past the end to the first column; down and up wrap and go across.
        QTest::newRow("eight items in three rows")
            << 8ull << 3ull << "L2>5 L1>7 L4>1 R5>2 R4>7 D7>0 D2>3 U0>7";
        QTest::newRow("single column") << 3ull << 5ull << "L1>1 R1>1";
        QTest::newRow("empty list") << 0ull << 3ull << "D0>0";
    }
    void navigation()
    {
        QFETCH(quint64, count);
        QFETCH(quint64, rows);
        QFETCH(QString, moves);
        const GRItemNavigation grid(count, rows, (count + rows - 1) / rows);
        for (const QString &move : moves.split(' ')) {
            const quint64 from = move.mid(1).section('>', 0, 0).toULongLong();
            const quint64 to = move[0] == 'L'   ? grid.left(from)
                               : move[0] == 'R' ? grid.right(from)
                               : move[0] == 'U' ? grid.up(from)
                                                : grid.down(from);
            QCOMPARE(QString("%1%2>%3").arg(move[0]).arg(from).arg(to), move);
        }
    }

    // Modifiers other than the keypad flag make an F-key no store key.
    void functionKeys_data()
    {
        QTest::addColumn<int>("key");
        QTest::addColumn<int>("modifiers");
        QTest::addColumn<int>("result");
        QTest::newRow("F1") << int(Qt::Key_F1) << 0 << 1;
        QTest::newRow("F16") << int(Qt::Key_F16) << 0 << 16;
        QTest::newRow("F17 is none") << int(Qt::Key_F17) << 0 << 0;
        QTest::newRow("keypad flag ignored") << int(Qt::Key_F3) << int(Qt::KeypadModifier) << 3;
        QTest::newRow("Ctrl+F3") << int(Qt::Key_F3) << int(Qt::ControlModifier) << 0;
        QTest::newRow("Shift+F3") << int(Qt::Key_F3) << int(Qt::ShiftModifier) << 0;
        QTest::newRow("Alt+F3") << int(Qt::Key_F3) << int(Qt::AltModifier) << 0;
        QTest::newRow("a letter") << int(Qt::Key_A) << 0 << 0;
    }
    void functionKeys()
    {
        QFETCH(int, key);
        QFETCH(int, modifiers);
        const QKeyEvent event(QEvent::KeyPress, key, Qt::KeyboardModifiers(modifiers));
        QTEST(FunctionKeyForEvent(&event, false), "result");
    }

    void typeSelect_data()
    {
        // "time:text" keys, then the outcome of the last: the index selected, "toggle", or "-".
        QTest::addColumn<QStringList>("keys");
        QTest::addColumn<QString>("outcome");
        QTest::addColumn<QString>("buffer");
        // clang-format off
        // The pause counts from the last emptying, which before any is time 0.
        QTest::newRow("b then a, first keys ever") << QStringList{"100:b", "100.1:a"} << "0" << "a";
        QTest::newRow("a run after an emptying") << QStringList{"100:x", "100.1:b", "100.3:a"} << "1" << "ba";
        QTest::newRow("pause counted from the emptying, not the last key") << QStringList{"100:x", "100.1:b", "100.5:a", "100.8:n"} << "-" << "n";
        QTest::newRow("space first ticks") << QStringList{"5: "} << "toggle" << "";
        QTest::newRow("space within a run is text") << QStringList{"100:x", "100.1:i", "100.2:c", "100.3:e", "100.4: ", "100.5:c"} << "3" << "ice c";
        QTest::newRow("match already selected") << QStringList{"5:ICE CU"} << "-" << "ice cu";
        // clang-format on
    }
    void typeSelect()
    {
        QFETCH(QStringList, keys);
        QList<GRItemPtr> items;
        for (const char *name : {"Apples", "Bananas", "banana bread", "Ice cream", "ice cubes"}) {
            items << GRItem::create();
            items.last()->setName(name);
        }
        GRTypeSelect select;
        double now = 0;
        select.setClock([&now] { return now; });
        GRTypeSelect::Outcome outcome;
        for (const QString &key : keys) {
            now = key.section(':', 0, 0).toDouble();
            outcome = select.insertText(key.section(':', 1), items, 4);
        }
        const QString result = outcome.kind == GRTypeSelect::Outcome::Toggle ? "toggle"
                               : outcome.kind == GRTypeSelect::Outcome::Select
                                   ? QString::number(outcome.index)
                                   : "-";
        QTEST(result, "outcome");
        QTEST(select.typedString(), "buffer");
    }
};

QTEST_MAIN(TestItemKeys)
#include "tst_itemkeys.moc"
