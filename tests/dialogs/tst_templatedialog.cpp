#include "GRTemplateDialog.h"
#include "GRTestSupport.h"

#include <QApplication>
#include <QDialogButtonBox>
#include <QPushButton>
#include <QRadioButton>
#include <QScreen>
#include <QTest>
#include <QTimer>

class TestTemplateDialog : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { GRTestSupport::initEnvironment(); }

    void answers_data()
    {
        QTest::addColumn<bool>("offerRestore");
        QTest::addColumn<QStringList>("clicks"); // radio buttons clicked in turn
        QTest::addColumn<QString>("ending");     // "ok", "cancel", "escape", "return" or "close"
        QTest::addColumn<int>("answer");

        // clang-format off
        QTest::newRow("default") << false << QStringList() << "ok" << 1;
        QTest::newRow("default by keyboard") << false << QStringList() << "return" << 1;
        QTest::newRow("empty list") << false << QStringList{"emptyButton"} << "ok" << 0;
        QTest::newRow("vegetarian") << false << QStringList{"vegetarianButton"} << "ok" << 2;
        QTest::newRow("vegan") << false << QStringList{"veganButton"} << "ok" << 3;
        QTest::newRow("restore by default") << true << QStringList() << "ok" << 5;
        QTest::newRow("template instead of restore") << true << QStringList{"emptyButton"} << "ok" << 0;
        QTest::newRow("back to restore") << true << QStringList{"veganButton", "restoreButton"} << "ok" << 5;
        QTest::newRow("cancel") << false << QStringList{"veganButton"} << "cancel" << 4;
        QTest::newRow("escape") << true << QStringList() << "escape" << 4;
        QTest::newRow("window closed") << false << QStringList{"emptyButton"} << "close" << 4;
        // clang-format on
    }

    void answers()
    {
        QFETCH(bool, offerRestore);
        QFETCH(QStringList, clicks);
        QFETCH(QString, ending);
        QFETCH(int, answer);

        GRTemplateDialog dialog(offerRestore);
        dialog.show();
        QVERIFY(QTest::qWaitForWindowExposed(&dialog));
        const auto radio = [&dialog](const QString &name) { return dialog.findChild<QRadioButton *>(name); };
        QVERIFY(radio(offerRestore ? "restoreButton" : "omnivoreButton")->isChecked());
        QCOMPARE(radio("restoreButton")->isVisible(), offerRestore);
        for (const char *name : {"omnivoreButton", "vegetarianButton", "veganButton", "emptyButton"})
            QVERIFY2(radio(name)->isVisible(), name);

        for (const QString &name : clicks)
            QTest::mouseClick(radio(name), Qt::LeftButton, {}, QPoint(8, radio(name)->height() / 2));
        QDialogButtonBox *box = dialog.findChild<QDialogButtonBox *>();
        if (ending == "ok" || ending == "cancel")
            QTest::mouseClick(box->button(ending == "ok" ? QDialogButtonBox::Ok : QDialogButtonBox::Cancel),
                              Qt::LeftButton);
        else if (ending == "close")
            dialog.close();
        else
            QTest::keyClick(&dialog, ending == "escape" ? Qt::Key_Escape : Qt::Key_Return);
        QCOMPARE(dialog.result(), answer);
        QVERIFY(!dialog.isVisible());
    }

    void selectTemplateRunsCentredAndModal()
    {
        bool checked = false;
        // Should a check fail before the dialog is answered, close it rather than hang.
        QTimer::singleShot(5000, this, [] {
            if (QWidget *modal = QApplication::activeModalWidget())
                modal->close();
        });
        QTimer::singleShot(0, this, [&checked] {
            auto *dialog = qobject_cast<GRTemplateDialog *>(QApplication::activeModalWidget());
            QVERIFY(dialog && dialog->isModal());
            const QRect screen = QGuiApplication::primaryScreen()->availableGeometry();
            QVERIFY((dialog->geometry().center() - screen.center()).manhattanLength() <= 4);
            QTest::mouseClick(dialog->findChild<QRadioButton *>("veganButton"), Qt::LeftButton, {}, {8, 8});
            dialog->handleOK();
            checked = true;
        });
        QCOMPARE(GRTemplateDialog::selectTemplate(false), 3);
        QVERIFY(checked);
    }
};

QTEST_MAIN(TestTemplateDialog)
#include "tst_templatedialog.moc"
