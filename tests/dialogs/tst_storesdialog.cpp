#include "GRDatabaseFile.h"
#include "GRGroceryDatabase.h"
#include "GRStore.h"
#include "GRStoresDialog.h"
#include "GRTestSupport.h"

#include <QCheckBox>
#include <QColorDialog>
#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>
#include <QTableView>
#include <QTest>
#include <QToolButton>

// The stores sheet, open on the sample list's stores: Corner Shop, Bakery Bros, Market.
class TestStoresDialog : public QObject
{
    Q_OBJECT

    std::unique_ptr<GRGroceryDatabase> m_db;
    std::unique_ptr<GRStoresDialog> m_dialog;

    void select(int row) { m_dialog->storeList()->selectRow(row); }
    QAbstractItemModel *model() const { return m_dialog->storeList()->model(); }
    QVariant cell(int row, int column) const { return model()->data(model()->index(row, column)); }

private slots:
    void initTestCase() { GRTestSupport::initEnvironment(); }

    void init()
    {
        GRTestSupport::resetState();
        m_db = std::make_unique<GRGroceryDatabase>();
        QVERIFY(ReadModernDatabaseData(GRTestSupport::sampleDatabase(), *m_db));
        m_dialog.reset(GRStoresDialog::editStores(*m_db, nullptr));
        m_dialog->setAttribute(Qt::WA_DeleteOnClose, false); // the test reads it after it closes
    }

    void cleanup() { m_dialog.reset(); }

    void rowAfterRemoval()
    {
        // removed, remaining, expected: the next store moves up; next to last stays; after the last,
        // the new last row; down to one, row 0
        const int rows[][3] = {{1, 3, 1}, {2, 3, 2}, {3, 3, 2}, {1, 1, 0}};
        for (const auto &r : rows)
            QCOMPARE(GRStoresDialog::rowAfterRemoval(r[0], r[1]), r[2]);
    }

    // Row 0 keeps its name and its place: no editing in the list or the field, no removal.
    void fallbackStore()
    {
        QCOMPARE(m_dialog->currentStore()->name(), "Corner Shop");
        QVERIFY(!(model()->flags(model()->index(0, 0)) & Qt::ItemIsEditable));
        QVERIFY(!model()->setData(model()->index(0, 0), "Renamed"));
        QVERIFY(!m_dialog->nameField()->isEnabled());
        QVERIFY(!m_dialog->removeButton()->isEnabled());
        m_dialog->clickListControl(GRStoresDialog::RemoveSegment);
        QCOMPARE(m_dialog->stores().size(), 3);

        select(2);
        QVERIFY(m_dialog->nameField()->isEnabled());
        m_dialog->removeButton()->click();
        QCOMPARE(m_dialog->currentStore()->name(), "Bakery Bros");
        m_dialog->removeButton()->click();
        QCOMPARE(m_dialog->currentStore()->name(), "Corner Shop");
        QVERIFY(!m_dialog->removeButton()->isEnabled());
    }

    // A new store is selected with its name ready to be typed over; the field and the list's cell
    // edit the same name.
    void addAndRename()
    {
        m_dialog->addButton()->click();
        QCOMPARE(m_dialog->storeList()->currentIndex().row(), 3);
        QCOMPARE(m_dialog->currentStore()->name(), "New store");
        QCOMPARE(m_dialog->focusWidget(), m_dialog->nameField());
        QCOMPARE(m_dialog->nameField()->selectedText(), "New store");
        QTest::keyClicks(m_dialog->nameField(), "Deli");
        QCOMPARE(cell(3, 0), "Deli");

        select(1);
        QVERIFY(model()->setData(model()->index(1, 0), "Bakers"));
        QCOMPARE(m_dialog->nameField()->text(), "Bakers");
    }

    void functionKeys()
    {
        while (m_dialog->stores().size() < 17)
            m_dialog->clickListControl(GRStoresDialog::AddSegment);
        QCOMPARE(cell(0, 1), "F1");
        QCOMPARE(cell(15, 1), "F16");
        QVERIFY(!cell(16, 1).isValid());
    }

    // Edits reach nobody on Cancel; on OK the receiver gets the edited copies, GUIDs kept.
    void cancelAndOK_data()
    {
        QTest::addColumn<bool>("ok");
        QTest::newRow("cancel") << false;
        QTest::newRow("ok") << true;
    }
    void cancelAndOK()
    {
        QFETCH(bool, ok);
        const QString before = GRTestSupport::dump(*m_db);
        const GRStorePtr bakery = m_db->stores().at(1);
        QList<QList<GRStorePtr>> received;
        connect(m_dialog.get(), &GRStoresDialog::installStores, this,
                [&received](const QList<GRStorePtr> &stores) { received << stores; });

        select(1);
        m_dialog->nameField()->selectAll();
        QTest::keyClicks(m_dialog->nameField(), "Bakers");
        m_dialog->colorButton()->click();
        auto *panel = m_dialog->findChild<QColorDialog *>();
        QVERIFY(panel && panel->testOption(QColorDialog::ShowAlphaChannel));
        panel->setCurrentColor(QColor(10, 20, 30, 128));
        panel->accept();
        m_dialog->printOptionButton()->setCurrentIndex(2);
        m_dialog->topOfPageBox()->setChecked(true);
        select(2);
        m_dialog->removeButton()->click();
        m_dialog->addButton()->click();
        ok ? m_dialog->okButton()->click() : m_dialog->reject();

        QVERIFY(!m_dialog->isVisible());
        QCOMPARE(GRTestSupport::dump(*m_db), before);
        QCOMPARE(bakery->kolor(), Kolor::defaultKolor());
        QCOMPARE(received.size(), ok ? 1 : 0);
        if (!ok)
            return;
        const QList<GRStorePtr> &stores = received.first();
        QCOMPARE(stores.size(), 3);
        QCOMPARE(stores.at(2)->name(), "New store");
        const GRStorePtr &edited = stores.at(1);
        QVERIFY(edited != bakery);
        QCOMPARE(edited->guid(), bakery->guid());
        QCOMPARE(edited->name(), "Bakers");
        QCOMPARE(edited->kolor(), (Kolor{10, 20, 30, 50}));
        QCOMPARE(edited->printOption(), 2);
        QVERIFY(edited->topOfPage());
    }
};

QTEST_MAIN(TestStoresDialog)
#include "tst_storesdialog.moc"
