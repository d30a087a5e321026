#include "GRTestSupport.h"
#include "MGPeoplePicker.h"

#include <QApplication>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

class TestPeoplePicker : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { GRTestSupport::initEnvironment(); }

    // Bo has no first name and Cy no address; a typed address comes with no first name.
    void answers()
    {
        QTemporaryDir dir;
        const QString path = dir.filePath("people.vcf");
        QVERIFY(GRTestSupport::writeFile(path, "BEGIN:VCARD\nFN:Cy\nEND:VCARD\nBEGIN:VCARD\nFN:Bo\n"
                                               "EMAIL:bo@x\nEND:VCARD\nBEGIN:VCARD\nFN:Al\nN:;Al\n"
                                               "EMAIL:a1@x\nEMAIL:a2@x\nEND:VCARD"));
        MGPeoplePicker picker;
        QVERIFY(picker.loadFile(path));
        QCOMPARE(picker.peopleList()->item(2)->text(), "Cy");
        QString first = "unset";
        picker.peopleList()->setCurrentRow(0);
        picker.emailList()->setCurrentRow(1);
        QCOMPARE(picker.email(&first), "a2@x");
        QCOMPARE(first, "Al");
        picker.peopleList()->setCurrentRow(1);
        QCOMPARE(picker.email(nullptr), "bo@x");
        QCOMPARE(picker.email(&first), QString());
        picker.peopleList()->setCurrentRow(2);
        QCOMPARE(picker.email(nullptr), QString());
        QVERIFY(!picker.okButton()->isEnabled());
        QTest::keyClicks(picker.emailField(), "me@y");
        QCOMPARE(picker.email(&first), "me@y");
        QCOMPARE(first, QString());
        QCOMPARE(MGPeoplePicker().peopleList()->count(), 3); // the file is remembered
    }

    // Runs modally over the anchor: centred, 20 below its top; Cancel answers nothing.
    void pickEmail()
    {
        QWidget anchor;
        anchor.setGeometry(100, 100, 801, 500);
        anchor.show();
        for (const bool ok : {true, false}) {
            QRect placed;
            QTimer::singleShot(0, [&] {
                auto *picker = qobject_cast<MGPeoplePicker *>(QApplication::activeModalWidget());
                QVERIFY(picker);
                placed = picker->frameGeometry();
                QTest::keyClicks(picker->emailField(), "typed@z");
                ok ? picker->okButton()->click() : picker->reject();
            });
            QCOMPARE(MGPeoplePicker::pickEmail(nullptr, &anchor), ok ? "typed@z" : "");
            QCOMPARE(placed.top(), anchor.frameGeometry().top() + 20);
            QVERIFY(qAbs(placed.center().x() - anchor.frameGeometry().center().x()) <= 1);
        }
    }
};

QTEST_MAIN(TestPeoplePicker)
#include "tst_peoplepicker.moc"
