#include "GRCategory.h"
#include "GRDatabaseFile.h"
#include "GRGroceryDatabase.h"
#include "GRItem.h"
#include "GRItemCommands.h"
#include "GRItemListView.h"
#include "GRNames.h"
#include "GRSnapshotUndo.h"
#include "GRStore.h"
#include "GRTestSupport.h"
#include "MGAlert.h"
#include "MGUndoManager.h"

#include <QAccessible>
#include <QDrag>
#include <QMenu>
#include <QMimeData>
#include <QScrollArea>
#include <QTest>

// The item grid driven as a person drives it, offscreen: the mouse, the keys and the commands on
// the selected item, on the sample list with Dairy (Milk*, Buttermilk, Cheese) on show.
class TestItemCommands : public QObject
{
    Q_OBJECT

    std::unique_ptr<GRGroceryDatabase> m_db;
    QList<GRItemPtr> m_shown;
    std::unique_ptr<GRSnapshotUndo> m_undo;
    std::unique_ptr<QScrollArea> m_area;
    GRItemListView *m_view = nullptr;
    GRItemCommands *m_commands = nullptr;
    QList<GRItemPtr> m_edited; // what the commands asked the sheet to open

    GRItemPtr shown(int index) const { return m_shown.value(index); }
    QString dump() const { return GRTestSupport::dump(*m_db); }
    QPoint boxCentre(int index) const
    {
        return m_view->checkboxRect(m_view->itemRect(quint64(index))).center().toPoint();
    }
    QPoint nameCentre(int index) const
    {
        const QRectF item = m_view->itemRect(quint64(index));
        return QPoint(int(item.right()) - 20, int(item.center().y()));
    }

private slots:
    void initTestCase()
    {
        GRTestSupport::initEnvironment();
        GRTestSupport::quietUndo();
    }

    void init()
    {
        GRTestSupport::resetState();
        m_db = std::make_unique<GRGroceryDatabase>();
        QVERIFY(ReadModernDatabaseData(GRTestSupport::sampleDatabase(), *m_db));
        m_shown = m_db->categories().first()->items();
        m_undo = std::make_unique<GRSnapshotUndo>(*m_db, m_shown);
        m_undo->install();
        m_area = std::make_unique<QScrollArea>();
        m_area->setWidget(m_view = new GRItemListView);
        m_view->setItems(&m_shown);
        m_commands = new GRItemCommands(m_view, *m_db, m_shown, m_view);
        m_edited.clear();
        connect(m_commands, &GRItemCommands::editItemRequested, this,
                [this](const GRItemPtr &item) { m_edited << item; });
        m_area->resize(600, 200);
        m_area->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_area.get()));
        m_view->setFocus();
    }

    void cleanup()
    {
        m_area.reset();
        m_undo.reset();
    }

    void checkboxTracking_data()
    {
        QTest::addColumn<QList<QPoint>>("path"); // offsets from the box's centre after the press
        QTest::addColumn<bool>("toggled");
        QTest::newRow("released inside") << QList<QPoint>{{1, 1}} << true;
        QTest::newRow("released outside") << QList<QPoint>{{60, 0}} << false;
        QTest::newRow("out and back in") << QList<QPoint>{{60, 0}, {0, 1}} << true;
    }
    void checkboxTracking()
    {
        QFETCH(QList<QPoint>, path);
        QFETCH(bool, toggled);
        const QPoint box = boxCentre(1);
        QTest::mousePress(m_view, Qt::LeftButton, {}, box);
        QVERIFY(m_view->isChecking() && m_view->checkIsOn()); // the box shows the new state at once
        for (const QPoint &step : path)
            QTest::mouseMove(m_view, box + step);
        QCOMPARE(m_view->checkIsOn(), toggled);
        QTest::mouseRelease(m_view, Qt::LeftButton, {}, box + path.last());
        QVERIFY(!m_view->isChecking());
        QCOMPARE(shown(1)->isNeeded(), toggled);
        QCOMPARE(m_view->selectedItem(), 1ull);
    }

    // A double-click on a name and Return open the item; a double-click on a box is two tracked
    // clicks; F4 is past the three stores.
    void openingAndKeys()
    {
        const QString before = dump();
        m_view->setSelectedItem(1);
        QTest::keyClick(m_view, Qt::Key_F4);
        QCOMPARE(dump(), before);
        QTest::keyClick(m_view, Qt::Key_Return);
        QTest::mouseDClick(m_view, Qt::LeftButton, {}, nameCentre(2));
        QCOMPARE(m_edited, (QList<GRItemPtr>{shown(1), shown(2)}));
        QTest::mouseDClick(m_view, Qt::LeftButton, {}, boxCentre(0));
        QVERIFY(shown(0)->isNeeded());
        QTest::mouseClick(m_view, Qt::LeftButton, {}, QPoint(590, 190)); // empty space: nothing
        QCOMPARE(m_view->selectedItem(), 0ull);
    }

    void dragThreshold_data()
    {
        QTest::addColumn<QPoint>("move");
        QTest::addColumn<QString>("carried");
        QTest::newRow("2.8 points") << QPoint(2, 2) << "";
        QTest::newRow("3 points") << QPoint(0, 3) << "mwgroceries.drag:2";
    }
    void dragThreshold()
    {
        QFETCH(QPoint, move);
        QString carried;
        m_view->setDragRunner([&carried](QDrag *drag) {
            carried =
                drag->mimeData()->formats().join(',') + ':' + drag->mimeData()->data(GRDragPasteboardType);
            QVERIFY(!drag->pixmap().isNull());
        });
        const QPoint start = nameCentre(2);
        QTest::mousePress(m_view, Qt::LeftButton, {}, start);
        QTest::mouseMove(m_view, start + move);
        QTest::mouseRelease(m_view, Qt::LeftButton, {}, start + move);
        QTEST(carried, "carried");
    }

    void deleteAndDuplicate_data()
    {
        QTest::addColumn<int>("answer"); // to the Delete key's question; -1: Duplicate instead
        QTest::addColumn<QString>("after");
        QTest::addColumn<int>("selected"); // in Dairy's list
        // clang-format off
        QTest::newRow("Delete key, kept") << 1 << "Milk@Corner Shop*, Buttermilk@Bakery Bros*, Cheese@Market" << 1;
        QTest::newRow("Delete key, confirmed") << 0 << "Milk@Corner Shop*, Cheese@Market" << 1;
        QTest::newRow("duplicate") << -1 << "Milk@Corner Shop*, Buttermilk@Bakery Bros, Cheese@Market, Buttermilk@Bakery Bros" << 3;
        // clang-format on
    }
    // The Delete key asks; the mark flips after the snapshot, so undo brings the item back as it
    // was even when it was kept. The selection moves to the next item, or to the copy.
    void deleteAndDuplicate()
    {
        QFETCH(int, answer);
        QFETCH(int, selected);
        const QString before = dump();
        m_view->setSelectedItem(1);
        if (answer >= 0) {
            MGAlert::sharedInstance().setNextAnswer(answer);
            QTest::keyClick(m_view, Qt::Key_Delete);
        } else {
            m_commands->duplicate();
        }
        QCOMPARE(MGAlert::sharedInstance().shownAlerts().size(), answer >= 0 ? 1 : 0);
        QTEST(dump().section(" | ", 0, 0).section(": ", 1), "after");
        QCOMPARE(shown(int(m_view->selectedItem())), m_db->categories().first()->items().value(selected));
        QCOMPARE(GRTestSupport::undoTitle(), answer >= 0 ? "Undo Delete Item" : "Undo Duplicate");
        MGUndoManager::sharedInstance().undo();
        QCOMPARE(dump(), before);
    }

    // One entry per store, a key shown for the first sixteen, checks on the item's store and on
    // the needed entry.
    void contextMenu()
    {
        for (int i = 3; i < 17; ++i) {
            m_db->stores() << GRStore::create();
            m_db->stores().last()->setName(QString("S%1").arg(i + 1));
        }
        m_commands->updateContextMenu();
        m_view->setSelectedItem(0);
        shown(0)->setStore(m_db->stores().at(16));
        m_view->showContextMenu();
        QMenu *menu = m_commands->contextMenu();
        QTRY_VERIFY(menu->isVisible());
        QStringList stores, checked;
        for (QAction *action : menu->actions()) {
            if (action->isCheckable() && action->isChecked())
                checked << action->text();
            stores << action->text();
            if (action->isSeparator())
                stores.clear(); // the store entries come last, after the separator
        }
        QCOMPARE(stores.mid(14), (QStringList{"S15\tF15", "S16\tF16", "S17"}));
        QCOMPARE(checked, (QStringList{"Needed\tSpace", "S17"}));
        menu->hide();
        QVERIFY(m_commands->validateMenuItem("duplicate"));
        m_shown.clear();
        QVERIFY(!m_commands->validateMenuItem("duplicate") && m_commands->validateMenuItem("toggleItem"));
    }

    void accessibleCells()
    {
        shown(0)->setNeedCount(2);
        shown(0)->setAisle(5);
        shown(2)->setAisle(-3);
        m_view->setSelectedItem(2);
        QAccessibleInterface *list = QAccessible::queryAccessibleInterface(m_view);
        QVERIFY(list);
        QCOMPARE(list->childCount(), 3);
        QCOMPARE(list->child(0)->text(QAccessible::Name), "Milk, needed, 2, Aisle 5, Corner Shop");
        QCOMPARE(list->child(2)->text(QAccessible::Name), "Cheese, Frozen, Market");
        QCOMPARE(list->child(0)->role(), QAccessible::CheckBox);
        QVERIFY(list->child(0)->state().checked && !list->child(1)->state().checked);
        QCOMPARE(list->focusChild(), list->child(2));
        QVERIFY(list->child(2)->state().focused && !list->child(0)->state().focused);
        list->child(1)->actionInterface()->doAction(QAccessibleActionInterface::toggleAction());
        QVERIFY(list->child(1)->state().checked);
        QCOMPARE(list->indexOfChild(list->child(1)), 1);
    }
};

QTEST_MAIN(TestItemCommands)
#include "tst_itemcommands.moc"
