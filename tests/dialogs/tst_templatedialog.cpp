#include "GRTemplateDialog.h"
#include "GRTestSupport.h"

#include <QApplication>
#include <QDialogButtonBox>
#include <QPushButton>
#include <QRadioButton>
#include <QScreen>
#include <QTest>
#include <QTimer>

// Whether restoring is offered, the radio buttons clicked in turn, how the dialog ends ("ok", "cancel",
// "escape" or "return"), its result.
// clang-format off
struct AnswerRow { bool offerRestore; QStringList clicks; QString ending; int answer; };
// clang-format on

class TestTemplateDialog : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { GRTestSupport::initEnvironment(); }

    void answers_data()
    {
        QTest::addColumn<AnswerRow>("r");
        // clang-format off
        QTest::newRow("default") << AnswerRow{false, QStringList(), "ok", 1};
        QTest::newRow("default by keyboard") << AnswerRow{false, QStringList(), "return", 1};
        QTest::newRow("empty list") << AnswerRow{false, QStringList{"emptyButton"}, "ok", 0};
        QTest::newRow("vegetarian") << AnswerRow{false, QStringList{"vegetarianButton"}, "ok", 2};
        QTest::newRow("vegan") << AnswerRow{false, QStringList{"veganButton"}, "ok", 3};
        QTest::newRow("restore by default") << AnswerRow{true, QStringList(), "ok", 5};
        QTest::newRow("back to restore") << AnswerRow{true, QStringList{"veganButton", "restoreButton"}, "ok", 5};
        QTest::newRow("cancel") << AnswerRow{false, QStringList{"veganButton"}, "cancel", 4};
        QTest::newRow("escape") << AnswerRow{true, QStringList(), "escape", 4};
        // clang-format on
    }

    void answers()
    {
        QFETCH(AnswerRow, r);
        GRTemplateDialog dialog(r.offerRestore);
        dialog.show();
        QVERIFY(QTest::qWaitForWindowExposed(&dialog));
        const auto radio = [&dialog](const QString &name) { return dialog.findChild<QRadioButton *>(name); };
        QVERIFY(radio(r.offerRestore ? "restoreButton" : "omnivoreButton")->isChecked());
        QCOMPARE(radio("restoreButton")->isVisible(), r.offerRestore);

        for (const QString &name : r.clicks)
            QTest::mouseClick(radio(name), Qt::LeftButton, {}, QPoint(8, radio(name)->height() / 2));
        QDialogButtonBox *box = dialog.findChild<QDialogButtonBox *>();
        if (r.ending == "ok" || r.ending == "cancel")
            QTest::mouseClick(box->button(r.ending == "ok" ? QDialogButtonBox::Ok : QDialogButtonBox::Cancel),
                              Qt::LeftButton);
        else
            QTest::keyClick(&dialog, r.ending == "escape" ? Qt::Key_Escape : Qt::Key_Return);
        QCOMPARE(dialog.result(), r.answer);
        QVERIFY(!dialog.isVisible());
    }

    // Runs modally (the modal widget is answered), centred on the screen.
    void selectTemplateRunsCentredAndModal()
    {
        QRect placed;
        QTimer::singleShot(0, this, [&placed] {
            if (auto *dialog = qobject_cast<GRTemplateDialog *>(QApplication::activeModalWidget())) {
                placed = dialog->geometry();
                QTest::mouseClick(dialog->findChild<QRadioButton *>("veganButton"), Qt::LeftButton, {},
                                  {8, 8});
                dialog->handleOK();
            }
        });
        QCOMPARE(GRTemplateDialog::selectTemplate(false), 3);
        const QRect screen = QGuiApplication::primaryScreen()->availableGeometry();
        QVERIFY((placed.center() - screen.center()).manhattanLength() <= 4);
    }
};

QTEST_MAIN(TestTemplateDialog)
#include "tst_templatedialog.moc"
