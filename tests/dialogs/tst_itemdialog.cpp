#include "GRCategory.h"
#include "GRDatabaseFile.h"
#include "GRGroceryDatabase.h"
#include "GRItem.h"
#include "GRItemDialog.h"
#include "GRKeyNames.h"
#include "GRSnapshotUndo.h"
#include "GRTestSupport.h"
#include "MGUndoManager.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>
#include <QSpinBox>
#include <QTest>

// The item sheet on the sample list (Dairy: Milk*, Buttermilk, Cheese | Fruit | Pantry), with
// Dairy on show.
class TestItemDialog : public QObject
{
    Q_OBJECT

    std::unique_ptr<GRGroceryDatabase> m_db;
    QList<GRItemPtr> m_shown;
    std::unique_ptr<GRSnapshotUndo> m_undo;

    GRItemPtr item(const QString &name) const { return GRTestSupport::item(*m_db, name); }
    QString dump() const { return GRTestSupport::dump(*m_db); }
    GRItemDialog *open(const GRItemPtr &edited, qint64 category = -1, qint64 store = -1)
    {
        GRItemDialog *dialog = GRItemDialog::editItem(edited, *m_db, m_shown, nullptr, category, store);
        dialog->setAttribute(Qt::WA_DeleteOnClose, false); // the test reads it after it closes
        return dialog;
    }

private slots:
    void initTestCase()
    {
        GRTestSupport::initEnvironment();
        GRTestSupport::quietUndo();
        BuildKeyStrings();
    }

    void init()
    {
        GRTestSupport::resetState();
        m_db = std::make_unique<GRGroceryDatabase>();
        QVERIFY(ReadModernDatabaseData(GRTestSupport::sampleDatabase(), *m_db));
        m_shown = m_db->categories().first()->items();
        m_undo = std::make_unique<GRSnapshotUndo>(*m_db, m_shown);
        m_undo->install();
    }

    void cleanup() { m_undo.reset(); }

    // A new item: OK waits for a name, the selected category and store are preset, and OK adds it
    // at the end of its category.
    void addItem()
    {
        std::unique_ptr<GRItemDialog> dialog(open(nullptr, 2, 1));
        QVERIFY(!dialog->okButton()->isEnabled());
        QCOMPARE(dialog->categoryButton()->currentText(), "Pantry");
        QCOMPARE(dialog->storeButton()->currentText(), "Bakery Bros");
        QTest::keyClicks(dialog->nameField(), "Salt");
        QVERIFY(dialog->okButton()->isEnabled());
        dialog->neededBox()->setChecked(true);
        dialog->countField()->setValue(2);
        dialog->okButton()->click();
        QVERIFY(!dialog->isVisible());
        QVERIFY(dump().contains("Pantry: Flour@Bakery Bros, Salt@Bakery Bros* /"));
        QCOMPARE(dialog->item()->needCount(), 2u);
    }

    // Moved to another category, the item goes to the end of its list; undo takes it back.
    void changeItem()
    {
        const QString before = dump();
        std::unique_ptr<GRItemDialog> dialog(open(item("Buttermilk")));
        QCOMPARE(dialog->nameField()->text(), "Buttermilk");
        dialog->nameField()->selectAll();
        QTest::keyClicks(dialog->nameField(), "Kefir");
        dialog->storeButton()->setCurrentIndex(2);
        dialog->categoryButton()->setCurrentIndex(1);
        dialog->okButton()->click();
        QCOMPARE(dump().section("Pantry", 0, 0).trimmed(),
                 "Dairy: Milk@Corner Shop*, Cheese@Market | Fruit: Apples@Market*, Bananas@Corner Shop, "
                 "Kefir@Market |");
        QCOMPARE(GRTestSupport::undoTitle(), "Undo Change Item");
        MGUndoManager::sharedInstance().undo();
        QCOMPARE(dump(), before);
    }

    // A special aisle and a typed number exclude each other.
    void aisles()
    {
        item("Cheese")->setAisle(-3);
        std::unique_ptr<GRItemDialog> dialog(open(item("Cheese")));
        QCOMPARE(dialog->specialAisleButton()->currentText(), "Frozen");
        QCOMPARE(dialog->aisleField()->text(), QString());
        QTest::keyClicks(dialog->aisleField(), "12");
        QCOMPARE(dialog->specialAisleButton()->currentIndex(), 0);
        dialog->okButton()->click();
        QCOMPARE(item("Cheese")->aisle(), 12);

        std::unique_ptr<GRItemDialog> again(open(item("Cheese")));
        QCOMPARE(again->aisleField()->text(), "12");
        again->specialAisleButton()->setCurrentIndex(5);
        emit again->specialAisleButton()->activated(5);
        QCOMPARE(again->aisleField()->text(), QString());
        again->okButton()->click();
        QCOMPARE(item("Cheese")->aisle(), -5);
    }

    // A key's mark goes at the caret of the name being edited, or at the end of the name.
    void keys()
    {
        std::unique_ptr<GRItemDialog> dialog(open(item("Milk")));
        dialog->show();
        QVERIFY(QTest::qWaitForWindowActive(dialog.get()));
        dialog->countField()->setFocus();
        dialog->insertKey(0);
        QCOMPARE(dialog->nameField()->text(), "Milk" + keyCharacters().left(1));
        dialog->nameField()->setCursorPosition(1);
        dialog->insertKey(2);
        QCOMPARE(dialog->nameField()->text(),
                 "M" + keyCharacters().mid(2, 1) + "ilk" + keyCharacters().left(1));
        QCOMPARE(dialog->fields().name, dialog->nameField()->text());
    }

    // Cancel applies nothing; a refused undo step keeps the sheet open and the list as it was.
    void nothingApplied()
    {
        const QString before = dump();
        std::unique_ptr<GRItemDialog> dialog(open(item("Milk")));
        QTest::keyClicks(dialog->nameField(), "Oat");
        dialog->reject();
        QCOMPARE(dump(), before);
        QCOMPARE(GRTestSupport::undoTitle(), "Undo");

        std::unique_ptr<GRItemDialog> refused(open(item("Milk")));
        QTest::keyClicks(refused->nameField(), "x");
        MGUndoManager::sharedInstance().setDelegate(nullptr);
        QVERIFY(!refused->handleOK());
        QVERIFY(refused->isVisible());
        QCOMPARE(dump(), before);
    }
};

QTEST_MAIN(TestItemDialog)
#include "tst_itemdialog.moc"
