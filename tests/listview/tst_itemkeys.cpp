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
        QTest::addColumn<QString>("move");
        QTest::addColumn<quint64>("from");
        QTest::addColumn<quint64>("to");
        // Three rows, eight items: columns of 3, 3 and 2.
        QTest::newRow("left from the first column, short last column")
            << 8ull << 3ull << "left" << 2ull << 5ull;
        QTest::newRow("left from the first column into the last") << 8ull << 3ull << "left" << 1ull << 7ull;
        QTest::newRow("left within") << 8ull << 3ull << "left" << 4ull << 1ull;
        QTest::newRow("right past the end to the first column") << 8ull << 3ull << "right" << 5ull << 2ull;
        QTest::newRow("right within") << 8ull << 3ull << "right" << 4ull << 7ull;
        QTest::newRow("down wraps to the first") << 8ull << 3ull << "down" << 7ull << 0ull;
        QTest::newRow("down across columns") << 8ull << 3ull << "down" << 2ull << 3ull;
        QTest::newRow("up wraps to the last") << 8ull << 3ull << "up" << 0ull << 7ull;
        QTest::newRow("single column: no left") << 3ull << 5ull << "left" << 1ull << 1ull;
        QTest::newRow("single column: no right") << 3ull << 5ull << "right" << 1ull << 1ull;
        QTest::newRow("empty list") << 0ull << 3ull << "down" << 0ull << 0ull;
    }
    void navigation()
    {
        QFETCH(quint64, count);
        QFETCH(quint64, rows);
        QFETCH(QString, move);
        QFETCH(quint64, from);
        const GRItemNavigation grid(count, rows, (count + rows - 1) / rows);
        const quint64 to = move == "left"    ? grid.left(from)
                           : move == "right" ? grid.right(from)
                           : move == "up"    ? grid.up(from)
                                             : grid.down(from);
        QTEST(to, "to");
    }

    void functionKeys_data()
    {
        QTest::addColumn<int>("key");
        QTest::addColumn<int>("modifiers");
        QTest::addColumn<bool>("allowModifiers");
        QTest::addColumn<int>("result");
        QTest::newRow("F1") << int(Qt::Key_F1) << 0 << false << 1;
        QTest::newRow("F16") << int(Qt::Key_F16) << 0 << false << 16;
        QTest::newRow("F17 is none") << int(Qt::Key_F17) << 0 << false << 0;
        QTest::newRow("keypad flag ignored") << int(Qt::Key_F3) << int(Qt::KeypadModifier) << false << 3;
        QTest::newRow("Ctrl+F3 is no store key") << int(Qt::Key_F3) << int(Qt::ControlModifier) << false << 0;
        QTest::newRow("Shift+F3 is no store key") << int(Qt::Key_F3) << int(Qt::ShiftModifier) << false << 0;
        QTest::newRow("Alt+F3 when allowed") << int(Qt::Key_F3) << int(Qt::AltModifier) << true << 3;
        QTest::newRow("a letter") << int(Qt::Key_A) << 0 << false << 0;
    }
    void functionKeys()
    {
        QFETCH(int, key);
        QFETCH(int, modifiers);
        QFETCH(bool, allowModifiers);
        const QKeyEvent event(QEvent::KeyPress, key, Qt::KeyboardModifiers(modifiers));
        QTEST(FunctionKeyForEvent(&event, allowModifiers), "result");
    }

    void typeSelect_data()
    {
        // "time:text" keys, then the outcome of the last: the index selected, "toggle", or "-".
        QTest::addColumn<QStringList>("keys");
        QTest::addColumn<QString>("outcome");
        QTest::addColumn<QString>("buffer");
        // The pause counts from the last emptying, which before any is time 0.
        QTest::newRow("b then a, first keys ever") << QStringList{"100:b", "100.1:a"} << "0"
                                                   << "a";
        QTest::newRow("a run after an emptying") << QStringList{"100:x", "100.1:b", "100.3:a"} << "1"
                                                 << "ba";
        QTest::newRow("pause counted from the emptying, not the last key")
            << QStringList{"100:x", "100.1:b", "100.5:a", "100.8:n"} << "-"
            << "n";
        QTest::newRow("space first ticks") << QStringList{"5: "} << "toggle"
                                           << "";
        QTest::newRow("space within a run is text")
            << QStringList{"100:x", "100.1:i", "100.2:c", "100.3:e", "100.4: ", "100.5:c"} << "3"
            << "ice c";
        QTest::newRow("no match") << QStringList{"5:q"} << "-"
                                  << "q";
        QTest::newRow("match already selected") << QStringList{"5:ICE CU"} << "-"
                                                << "ice cu";
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
