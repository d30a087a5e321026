#include "GRKeyNames.h"
#include "GRKeysDialog.h"
#include "GRTestSupport.h"

#include <QLineEdit>
#include <QSignalSpy>
#include <QTest>

// The keys sheet: it edits a copy of the names; OK takes them, except that OK on unchanged
// custom names brings back the defaults.
class TestKeysDialog : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { GRTestSupport::initEnvironment(); }

    void steps_data()
    {
        QTest::addColumn<QStringList>("custom"); // before
        QTest::addColumn<int>("field");          // typed into; -1: none
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("button");
        QTest::addColumn<QString>("after"); // signals : custom names
        const QStringList defaults = g_defaultKeyNames;
        QStringList renamed = defaults;
        renamed[1] = "Tinned";
        const QString named = renamed.join(',');
        // clang-format off
        QTest::newRow("OK on the defaults stores them") << QStringList() << -1 << "" << "ok" << "1:" + defaults.join(',');
        QTest::newRow("a rename is taken") << defaults << 1 << "Tinned" << "ok" << "1:" + named;
        QTest::newRow("custom names are shown, OK resets") << renamed << -1 << "" << "ok" << "1:";
        QTest::newRow("an empty name is accepted") << QStringList() << 0 << "" << "ok" << "1:," + defaults.mid(1).join(",");
        QTest::newRow("cancel keeps the names") << renamed << 1 << "Cans" << "cancel" << "0:" + named;
        QTest::newRow("reset then cancel keeps them") << renamed << -1 << "" << "reset+cancel" << "0:" + named;
        // clang-format on
    }
    void steps()
    {
        QFETCH(QStringList, custom);
        QFETCH(int, field);
        QFETCH(QString, typed);
        QFETCH(QString, button);
        g_customKeyNames = custom;
        BuildKeyStrings();
        GRKeysDialog dialog;
        QSignalSpy changed(&dialog, &GRKeysDialog::keyStringsChanged);
        if (field >= 0) {
            dialog.keyField(field)->selectAll();
            if (typed.isEmpty())
                QTest::keyClick(dialog.keyField(field), Qt::Key_Delete);
            else
                QTest::keyClicks(dialog.keyField(field), typed);
        }
        if (button.startsWith("reset"))
            dialog.reset();
        if (button == "ok")
            dialog.ok();
        else
            dialog.cancel();
        QTEST(QString::number(changed.count()) + ':' + g_customKeyNames.join(','), "after");
        QCOMPARE(g_keyStrings.at(1), keyCharacters().at(1) + QString("\t") + KeyNameAt(1)); // rebuilt
    }
};

QTEST_MAIN(TestKeysDialog)
#include "tst_keysdialog.moc"
