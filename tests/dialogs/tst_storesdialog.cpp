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

    // Row 0 keeps its name and its place: no editing in the list or the field, no removal. After a
    // removal the next store moves up, or the new last row is selected.
    void fallbackStore()
    {
        QCOMPARE(m_dialog->currentStore()->name(), "Corner Shop");
        QVERIFY(!(model()->flags(model()->index(0, 0)) & Qt::ItemIsEditable));
        QVERIFY(!model()->setData(model()->index(0, 0), "Renamed"));
        QVERIFY(!m_dialog->nameField()->isEnabled());
        QVERIFY(!m_dialog->removeButton()->isEnabled());
        m_dialog->clickListControl(GRStoresDialog::RemoveSegment);
        QCOMPARE(m_dialog->stores().size(), 3);

        m_dialog->addButton()->click();
        select(1);
        QVERIFY(m_dialog->nameField()->isEnabled());
        m_dialog->removeButton()->click();
        QCOMPARE(m_dialog->currentStore()->name(), "Market");
        select(2);
        m_dialog->removeButton()->click();
        QCOMPARE(m_dialog->currentStore()->name(), "Market");
        m_dialog->removeButton()->click();
        QCOMPARE(m_dialog->currentStore()->name(), "Corner Shop");
        QVERIFY(!m_dialog->removeButton()->isEnabled());
    }

    // A new store is selected with its name ready to be typed over; the field and the list's cell
    // edit the same name. The first sixteen stores have a key.
    void addAndRename()
    {
        m_dialog->addButton()->click();
        QCOMPARE(m_dialog->storeList()->currentIndex().row(), 3);
        QCOMPARE(m_dialog->focusWidget(), m_dialog->nameField());
        QCOMPARE(m_dialog->nameField()->selectedText(), "New store");
        QTest::keyClicks(m_dialog->nameField(), "Deli");
        QCOMPARE(cell(3, 0), "Deli");

        select(1);
        QVERIFY(model()->setData(model()->index(1, 0), "Bakers"));
        QCOMPARE(m_dialog->nameField()->text(), "Bakers");
        while (m_dialog->stores().size() < 17)
            m_dialog->clickListControl(GRStoresDialog::AddSegment);
        QCOMPARE((QVariantList{cell(0, 1), cell(15, 1), cell(16, 1)}),
                 (QVariantList{"F1", "F16", QVariant()}));
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
        QStringList stores; // name, colour, print option, top of page, whether Bakery Bros' GUID
        for (const GRStorePtr &store : received.value(0))
            stores << QString("%1 %2 %3 %4 %5")
                          .arg(store->name())
                          .arg(store->kolor().word(), 0, 16)
                          .arg(store->printOption())
                          .arg(store->topOfPage())
                          .arg(store->guid() == bakery->guid());
        QCOMPARE(stores.join(", "),
                 ok ? "Corner Shop 64000000 0 0 0, Bakers 321e140a 2 1 1, New store 64000000 0 0 0" : "");
    }
};

QTEST_MAIN(TestStoresDialog)
#include "tst_storesdialog.moc"
