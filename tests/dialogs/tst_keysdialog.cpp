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

    // Opens the sheet, types into field index (when given) and ends it with the button.
    QString run(int index, const QString &typed, const char *button)
    {
        GRKeysDialog dialog;
        QSignalSpy changed(&dialog, &GRKeysDialog::keyStringsChanged);
        if (index >= 0) {
            dialog.keyField(index)->selectAll();
            if (typed.isEmpty())
                QTest::keyClick(dialog.keyField(index), Qt::Key_Delete);
            else
                QTest::keyClicks(dialog.keyField(index), typed);
        }
        if (qstrcmp(button, "reset+cancel") == 0) {
            dialog.reset();
            dialog.cancel();
        } else if (qstrcmp(button, "ok") == 0) {
            dialog.ok();
        } else {
            dialog.cancel();
        }
        return QString::number(changed.count()) + ':' + g_customKeyNames.join(',');
    }

private slots:
    void initTestCase() { GRTestSupport::initEnvironment(); }

    void steps_data()
    {
        QTest::addColumn<QStringList>("custom"); // before
        QTest::addColumn<int>("field");
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("button");
        QTest::addColumn<QString>("after"); // signals : custom names
        const QStringList defaults = g_defaultKeyNames;
        QStringList renamed = defaults;
        renamed[1] = "Tinned";
        QTest::newRow("OK on the defaults stores them") << QStringList() << -1 << ""
                                                        << "ok"
                                                        << "1:" + defaults.join(',');
        QTest::newRow("OK again without changes resets") << defaults << -1 << ""
                                                         << "ok"
                                                         << "1:";
        QTest::newRow("a rename is taken") << defaults << 1 << "Tinned"
                                           << "ok"
                                           << "1:" + renamed.join(',');
        QTest::newRow("custom names are shown, OK resets") << renamed << -1 << ""
                                                           << "ok"
                                                           << "1:";
        QTest::newRow("an empty name is accepted") << QStringList() << 0 << ""
                                                   << "ok"
                                                   << "1:," + defaults.mid(1).join(",");
        QTest::newRow("cancel keeps the names") << renamed << 1 << "Cans"
                                                << "cancel"
                                                << "0:" + renamed.join(',');
        QTest::newRow("reset then cancel keeps them") << renamed << -1 << ""
                                                      << "reset+cancel"
                                                      << "0:" + renamed.join(',');
    }
    void steps()
    {
        QFETCH(QStringList, custom);
        QFETCH(int, field);
        QFETCH(QString, typed);
        QFETCH(QString, button);
        g_customKeyNames = custom;
        BuildKeyStrings();
        QTEST(run(field, typed, button.toLatin1().constData()), "after");
        QCOMPARE(g_keyStrings.at(1), keyCharacters().at(1) + QString("\t") + KeyNameAt(1)); // rebuilt
    }
};

QTEST_MAIN(TestKeysDialog)
#include "tst_keysdialog.moc"
