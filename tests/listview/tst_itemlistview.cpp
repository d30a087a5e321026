#include "GRItem.h"
#include "GRItemListView.h"
#include "GRPrefController.h"
#include "GRStore.h"
#include "GRTestSupport.h"
#include "MGNotificationCenter.h"

#include <QScrollArea>
#include <QTest>

// Pixels within a small distance of c, so that anti-aliased edges do not count.
static int countPixels(const QImage &image, const QColor &c)
{
    int count = 0;
    for (int i = 0; i < image.width() * image.height(); ++i) {
        const QColor p = image.pixelColor(i % image.width(), i / image.width());
        count += qAbs(p.red() - c.red()) + qAbs(p.green() - c.green()) + qAbs(p.blue() - c.blue()) < 24;
    }
    return count;
}

class TestItemListView : public QObject
{
    Q_OBJECT

    QList<GRItemPtr> m_items;
    std::unique_ptr<QScrollArea> m_area;
    GRItemListView *m_view = nullptr;

    // Items named as given, in that order and not needed, shown in a scroll area whose viewport is
    // rows x pitch Y (+ 5) high and columns x pitch X wide.
    void showView(qreal rows, qreal columns, const QStringList &names)
    {
        for (const QString &name : names) {
            m_items.append(GRItem::create());
            m_items.last()->setName(name);
        }
        m_area = std::make_unique<QScrollArea>();
        m_area->setWidget(m_view = new GRItemListView);
        m_view->setItems(&m_items);
        m_area->show();
        const QSizeF pitch = m_view->itemSize() + QSizeF(8, 8);
        const QSize chrome = m_area->size() - m_area->viewport()->size();
        m_area->resize(QSize(qCeil(pitch.width() * columns), qCeil(pitch.height() * rows) + 5) + chrome);
        QVERIFY(QTest::qWaitForWindowExposed(m_area.get()));
    }

private slots:
    void init()
    {
        GRTestSupport::initEnvironment();
        m_area.reset();
        m_items.clear();
        GRPrefController::sharedInstance().setDisplayFont(DefaultUserFont());
    }

    // Shown unsorted as banana, Apple, cherry, banana; sorted: Apple, banana, banana, cherry.
    void redisplay_data()
    {
        QTest::addColumn<int>("select"); // -1: an item not on show
        QTest::addColumn<quint64>("expected");
        QTest::newRow("follows its item") << 0 << 1ull;
        QTest::newRow("identity, not name") << 3 << 2ull;
        QTest::newRow("item not on show") << -1 << 0ull;
    }
    void redisplay()
    {
        QFETCH(int, select);
        showView(3, 2, {"banana", "Apple", "cherry", "banana"});
        m_view->setSelectedItem(2);
        // When on show, an entry of the very list being sorted.
        m_view->redisplayItemsCore(select >= 0 ? m_items[select] : GRItem::create());
        QTEST(m_view->selectedItem(), "expected");
    }

    // Seven items in a viewport three rows high and two columns wide, item 5 selected, then a change.
    // Resizing keeps the selected item (the window, maximising, the splitter); a new font lays out
    // afresh from the first item.
    void layout_data()
    {
        QTest::addColumn<QString>("change");
        QTest::addColumn<quint64>("rows");
        QTest::addColumn<quint64>("columns");
        QTest::addColumn<quint64>("selected");
        QTest::newRow("more columns than fit") << "" << 3ull << 3ull << 5ull;
        QTest::newRow("viewport a row taller") << "taller" << 4ull << 2ull << 5ull;
        QTest::newRow("36 point font") << "font" << 1ull << 7ull << 0ull;
    }
    void layout()
    {
        QFETCH(QString, change);
        QFETCH(quint64, columns);
        showView(3, 2, QStringList(7, "x"));
        m_view->setSelectedItem(5);
        if (change == "taller")
            m_area->resize(m_area->size() + QSize(0, int(m_view->itemSize().height() + 8)));
        if (change == "font") {
            GRPrefController::sharedInstance().setDisplayFont(QFont(DefaultUserFont().family(), 36));
            MGNotificationCenter::defaultCenter().post("mwgroceries.font");
        }
        QTEST(m_view->rowCount(), "rows");
        QCOMPARE(m_view->columnCount(), columns);
        // As wide as the columns but no narrower than the viewport, and as high as the viewport.
        const int width = qCeil((m_view->itemSize().width() + 8) * qreal(columns));
        QCOMPARE(m_view->size(), m_area->viewport()->size().expandedTo(QSize(width, 0)));
        QTEST(m_view->selectedItem(), "selected");
    }

    void showSelectedItem()
    {
        showView(2, 1.5, QStringList(7, "x"));
        m_view->setSelectedItem(4);
        m_view->showSelectedItem();
        const QRect cell = GRItemGridLayout::highlightRect(m_view->itemRect(4)).toAlignedRect();
        QVERIFY(QRect(-m_view->pos(), m_area->viewport()->size()).contains(cell));
    }

    // A store's colour, the palette's text colour for an item without one, a tick only when needed,
    // and only the selected cell filled.
    void paint()
    {
        showView(3, 2, {"Wwwwww", "Wwwwww"});
        const GRItemPtr first = m_items[0];
        first->setStore(GRStore::create());
        first->store()->setKolor(Kolor::fromWord(0x640000FFu));
        first->setNeeded(true);
        QPalette palette = m_view->palette();
        palette.setColor(QPalette::Text, Qt::darkGreen);
        palette.setColor(QPalette::Highlight, Qt::blue);
        m_view->setPalette(palette);
        m_area->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(m_area.get()));
        m_view->setFocus();
        const QImage image = m_view->grab().toImage();
        const QRect cell = GRItemGridLayout::highlightRect(m_view->itemRect(0)).toAlignedRect();
        const auto inCell = [&](int index, const QColor &c) {
            return countPixels(image.copy(cell.translated(0, index * cell.height())), c);
        };
        QVERIFY(inCell(0, Qt::red) > 10 && inCell(1, Qt::darkGreen) > 10);
        QVERIFY(inCell(0, Qt::black) > 0 && inCell(1, Qt::black) == 0);
        QVERIFY(inCell(0, Qt::blue) > cell.width() * cell.height() / 2 && inCell(1, Qt::blue) == 0);
    }
};

QTEST_MAIN(TestItemListView)
#include "tst_itemlistview.moc"
