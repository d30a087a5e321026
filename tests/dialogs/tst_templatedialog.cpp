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
    void initTestCase();
    void answers_data();
    void answers();
    void choicesOnShow_data();
    void choicesOnShow();
    void selectTemplateRunsCentredAndModal();
};

void TestTemplateDialog::initTestCase()
{
    GRTestSupport::initEnvironment();
}

void TestTemplateDialog::answers_data()
{
    QTest::addColumn<bool>("offerRestore");
    QTest::addColumn<QStringList>("clicks"); // radio buttons clicked in turn
    QTest::addColumn<QString>("ending");     // "ok", "cancel", "escape", "return" or "close"
    QTest::addColumn<int>("answer");

    QTest::newRow("default") << false << QStringList() << "ok" << 1;
    QTest::newRow("default by keyboard") << false << QStringList() << "return" << 1;
    QTest::newRow("empty list") << false << QStringList{"emptyButton"} << "ok" << 0;
    QTest::newRow("vegetarian") << false << QStringList{"vegetarianButton"} << "ok" << 2;
    QTest::newRow("vegan") << false << QStringList{"veganButton"} << "ok" << 3;
    QTest::newRow("changed mind") << false << QStringList{"veganButton", "omnivoreButton"} << "ok" << 1;
    QTest::newRow("restore by default") << true << QStringList() << "ok" << 5;
    QTest::newRow("template instead of restore") << true << QStringList{"emptyButton"} << "ok" << 0;
    QTest::newRow("back to restore") << true << QStringList{"veganButton", "restoreButton"} << "ok" << 5;
    QTest::newRow("cancel") << false << QStringList{"veganButton"} << "cancel" << 4;
    QTest::newRow("escape") << true << QStringList() << "escape" << 4;
    QTest::newRow("window closed") << false << QStringList{"emptyButton"} << "close" << 4;
}

void TestTemplateDialog::answers()
{
    QFETCH(bool, offerRestore);
    QFETCH(QStringList, clicks);
    QFETCH(QString, ending);
    QFETCH(int, answer);

    GRTemplateDialog dialog(offerRestore);
    int finished = -1;
    connect(&dialog, &QDialog::finished, this, [&finished](int result) { finished = result; });
    dialog.show();
    QVERIFY(QTest::qWaitForWindowExposed(&dialog));

    for (const QString &name : clicks) {
        auto *button = dialog.findChild<QRadioButton *>(name);
        QVERIFY2(button, qPrintable(name));
        QTest::mouseClick(button, Qt::LeftButton, {}, QPoint(8, button->height() / 2));
    }

    auto *box = dialog.findChild<QDialogButtonBox *>();
    QVERIFY(box);
    if (ending == QLatin1String("ok"))
        QTest::mouseClick(box->button(QDialogButtonBox::Ok), Qt::LeftButton);
    else if (ending == QLatin1String("cancel"))
        QTest::mouseClick(box->button(QDialogButtonBox::Cancel), Qt::LeftButton);
    else if (ending == QLatin1String("escape"))
        QTest::keyClick(&dialog, Qt::Key_Escape);
    else if (ending == QLatin1String("return"))
        QTest::keyClick(&dialog, Qt::Key_Return);
    else
        dialog.close();

    QCOMPARE(finished, answer);
    QCOMPARE(dialog.result(), answer);
    QVERIFY(!dialog.isVisible());
}

void TestTemplateDialog::choicesOnShow_data()
{
    QTest::addColumn<bool>("offerRestore");
    QTest::addColumn<int>("option");
    QTest::addColumn<QString>("checked");

    QTest::newRow("plain") << false << 1 << "omnivoreButton";
    QTest::newRow("restore offered") << true << 5 << "restoreButton";
}

void TestTemplateDialog::choicesOnShow()
{
    QFETCH(bool, offerRestore);
    QFETCH(int, option);
    QFETCH(QString, checked);

    GRTemplateDialog dialog(offerRestore);
    dialog.show();
    QCOMPARE(dialog.templateOption(), option);
    QVERIFY(dialog.findChild<QRadioButton *>(checked)->isChecked());
    QCOMPARE(dialog.findChild<QRadioButton *>("restoreButton")->isVisible(), offerRestore);
    for (const char *name : {"omnivoreButton", "vegetarianButton", "veganButton", "emptyButton"})
        QVERIFY(dialog.findChild<QRadioButton *>(name)->isVisible());

    // Restore can't be chosen when it isn't on offer.
    dialog.setTemplateOption(5);
    QCOMPARE(dialog.templateOption(), offerRestore ? 5 : 1);
    dialog.setTemplateOption(-3);
    QCOMPARE(dialog.templateOption(), 1);
}

void TestTemplateDialog::selectTemplateRunsCentredAndModal()
{
    bool checked = false;
    // Should a check fail before the dialog is answered, close it rather than hang.
    QTimer::singleShot(5000, this, [] {
        if (QWidget *modal = QApplication::activeModalWidget())
            modal->close();
    });
    QTimer::singleShot(0, this, [&checked] {
        auto *dialog = qobject_cast<GRTemplateDialog *>(QApplication::activeModalWidget());
        QVERIFY(dialog);
        QVERIFY(dialog->isModal());
        const QRect screen = QGuiApplication::primaryScreen()->availableGeometry();
        QVERIFY((dialog->geometry().center() - screen.center()).manhattanLength() <= 4);
        QTest::mouseClick(dialog->findChild<QRadioButton *>("veganButton"), Qt::LeftButton, {}, QPoint(8, 8));
        dialog->handleOK();
        checked = true;
    });
    QCOMPARE(GRTemplateDialog::selectTemplate(false), 3);
    QVERIFY(checked);
}

QTEST_MAIN(TestTemplateDialog)
#include "tst_templatedialog.moc"
