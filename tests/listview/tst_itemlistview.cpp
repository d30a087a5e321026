#include "DrawQuartzCheckbox.h"
#include "GRItem.h"
#include "GRItemListView.h"
#include "GRLists.h"
#include "GRPrefController.h"
#include "GRStore.h"
#include "GRTestSupport.h"
#include "MGNotificationCenter.h"

#include <QPainter>
#include <QScrollArea>
#include <QTest>

// Needed items named as given, all at one store of colour word.
static QList<GRItemPtr> makeItems(const QStringList &names, quint32 word = Kolor::DefaultWord)
{
    const GRStorePtr store = GRStore::create();
    store->setKolor(Kolor::fromWord(word));
    QList<GRItemPtr> items;
    for (const QString &name : names) {
        items.append(GRItem::create());
        items.last()->setName(name);
        items.last()->setStore(store);
        items.last()->setNeeded(true);
    }
    return items;
}

static int countPixels(const QImage &image, const QColor &c)
{
    int count = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const QColor p = image.pixelColor(x, y);
            count += qAbs(p.red() - c.red()) + qAbs(p.green() - c.green()) + qAbs(p.blue() - c.blue()) < 24;
        }
    }
    return count;
}

class TestItemListView : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { GRTestSupport::initEnvironment(); }
    void init();
    void redisplay_data();
    void redisplay();
    void frame_data();
    void frame();
    void relayout_data();
    void relayout();
    void showSelectedItem();
    void paint_data();
    void paint();
    void checkbox_data();
    void checkbox();

private:
    // A shown scroll area around a fresh view, the viewport rows x pitch Y (+ 5) high and
    // columns x pitch X wide, showing count items.
    void showView(qreal rows, qreal columns, int count, quint32 word = Kolor::DefaultWord);

    std::unique_ptr<QScrollArea> m_area;
    GRItemListView *m_view = nullptr;
};

void TestItemListView::init()
{
    GRTestSupport::resetDatabase();
    GRPrefController::sharedInstance().setDisplayFont(DefaultUserFont());
    m_area.reset();
}

void TestItemListView::showView(qreal rows, qreal columns, int count, quint32 word)
{
    m_area = std::make_unique<QScrollArea>();
    m_view = new GRItemListView;
    m_area->setWidget(m_view);
    m_area->show();
    const QSizeF pitch = GRItemListView::itemSize() + QSizeF(8, 8);
    const QSize chrome = m_area->size() - m_area->viewport()->size();
    m_area->resize(QSize(qCeil(pitch.width() * columns), qCeil(pitch.height() * rows) + 5) + chrome);
    QVERIFY(QTest::qWaitForWindowExposed(m_area.get()));
    GRLists::shared().displayItems() = makeItems(QStringList(count, "x"), word);
    m_view->redisplayItemsCore(nullptr);
}

void TestItemListView::redisplay_data()
{
    QTest::addColumn<QStringList>("names");
    QTest::addColumn<int>("select"); // -1: none, -2: an item not on show
    QTest::addColumn<bool>("notify");
    QTest::addColumn<quint64>("expected");
    QTest::newRow("follows its item") << QStringList{"banana", "Apple", "cherry"} << 0 << false << 1ull;
    QTest::newRow("by notification") << QStringList{"banana", "Apple", "cherry"} << 1 << true << 0ull;
    QTest::newRow("no item") << QStringList{"banana", "Apple", "cherry"} << -1 << true << 0ull;
    QTest::newRow("item not on show") << QStringList{"banana", "Apple", "cherry"} << -2 << false << 0ull;
    QTest::newRow("identity, not name") << QStringList{"pear", "apple", "Apple"} << 2 << false << 1ull;
}

void TestItemListView::redisplay()
{
    QFETCH(QStringList, names);
    QFETCH(int, select);
    QFETCH(bool, notify);
    showView(3, 2, 0);
    QList<GRItemPtr> &items = GRLists::shared().displayItems();
    items = makeItems(names);
    m_view->setSelectedItem(2);
    const GRItemPtr item = select >= 0 ? items[select] : select == -2 ? GRItem::create() : GRItemPtr();
    if (notify)
        MGNotificationCenter::defaultCenter().post(
            "mwgroceries.redoItems", item ? QVariantMap{{"item", QVariant::fromValue(item)}} : QVariantMap{});
    else if (select >= 0)
        m_view->redisplayItemsCore(items[select]); // an entry of the list being sorted
    else
        m_view->redisplayItemsCore(item);
    QTEST(m_view->selectedItem(), "expected");
    if (item && select >= 0)
        QCOMPARE(items[qsizetype(m_view->selectedItem())], item);
}

void TestItemListView::frame_data()
{
    QTest::addColumn<int>("count");
    QTest::addColumn<qreal>("viewportColumns");
    QTest::addColumn<quint64>("columns");
    QTest::addColumn<qreal>("widthInColumns"); // 0: as wide as the viewport
    QTest::newRow("more columns than fit") << 7 << 2.0 << 3ull << 3.0;
    QTest::newRow("narrower than the viewport") << 4 << 2.5 << 2ull << 0.0;
    QTest::newRow("empty list") << 0 << 2.0 << 0ull << 0.0;
}

void TestItemListView::frame()
{
    QFETCH(int, count);
    QFETCH(qreal, viewportColumns);
    QFETCH(qreal, widthInColumns);
    showView(3, viewportColumns, count);
    QCOMPARE(m_view->rowCount(), 3ull);
    QTEST(m_view->columnCount(), "columns");
    const int width = widthInColumns ? qCeil((GRItemListView::itemSize().width() + 8) * widthInColumns)
                                     : m_area->viewport()->width();
    QCOMPARE(m_view->size(), QSize(width, m_area->viewport()->height()));
    QCOMPARE(m_view->itemAt(QPointF(2, 2)), count ? 0 : -1);
}

void TestItemListView::relayout_data()
{
    QTest::addColumn<bool>("byFont"); // else the viewport grows by a row
    QTest::addColumn<quint64>("rows");
    QTest::newRow("taller viewport") << false << 4ull;
    QTest::newRow("three times the font") << true << 1ull;
}

void TestItemListView::relayout()
{
    QFETCH(bool, byFont);
    showView(3, 2, 7);
    m_view->setSelectedItem(5);
    const QSizeF before = GRItemListView::itemSize();
    if (byFont) {
        QFont font = DefaultUserFont();
        font.setPointSizeF(font.pointSizeF() * 3);
        GRPrefController::sharedInstance().setDisplayFont(font);
        MGNotificationCenter::defaultCenter().post("mwgroceries.font");
        QVERIFY(GRItemListView::itemSize().width() > before.width());
    } else {
        m_area->resize(m_area->size() + QSize(0, int(before.height() + 8)));
    }
    QTEST(m_view->rowCount(), "rows");
    QCOMPARE(m_view->selectedItem(), 0ull);
}

void TestItemListView::showSelectedItem()
{
    showView(2, 1.5, 7);
    m_view->setSelectedItem(4);
    m_view->showSelectedItem();
    const QRect cell = GRItemGridLayout::highlightRect(m_view->itemRect(4)).toAlignedRect();
    QVERIFY(QRect(-m_view->pos(), m_area->viewport()->size()).contains(cell));
}

void TestItemListView::paint_data()
{
    QTest::addColumn<quint32>("kolor");
    QTest::addColumn<QColor>("textColour");
    QTest::addColumn<bool>("focused");
    QTest::newRow("store colour, selection filled") << 0x640000FFu << QColor(255, 0, 0) << true;
    QTest::newRow("default black follows the palette") << Kolor::DefaultWord << QColor(0, 170, 0) << false;
}

void TestItemListView::paint()
{
    QFETCH(quint32, kolor);
    QFETCH(QColor, textColour);
    QFETCH(bool, focused);
    QFont font = DefaultUserFont();
    font.setPointSize(24);
    GRPrefController::sharedInstance().setDisplayFont(font);
    showView(3, 2, 2, kolor);
    QPalette palette = m_view->palette();
    palette.setColor(QPalette::Text, QColor(0, 170, 0));
    palette.setColor(QPalette::Highlight, QColor(0, 0, 255));
    m_view->setPalette(palette);
    if (focused) {
        m_area->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(m_area.get()));
        m_view->setFocus();
    } else {
        m_view->clearFocus();
    }
    const QImage image = m_view->grab().toImage();
    QVERIFY(countPixels(image, textColour) > 10);
    QVERIFY(countPixels(image, Qt::black) > 0); // ticks
    // A filled selection covers the first cell; an outline is only its edge.
    const QSizeF cell = GRItemListView::itemSize() + QSizeF(8, 8);
    const int highlight = countPixels(image, QColor(0, 0, 255));
    QVERIFY(focused ? highlight > cell.width() * cell.height() / 2
                    : highlight < 2 * (cell.width() + cell.height()));
}

void TestItemListView::checkbox_data()
{
    QTest::addColumn<qreal>("itemHeight");
    QTest::addColumn<bool>("checked");
    QTest::addColumn<QRectF>("box");
    QTest::addColumn<bool>("drawn");
    QTest::newRow("11 high item: too small") << 11.0 << true << QRectF(5, 6, 9, 9) << false;
    QTest::newRow("12 high item, unchecked") << 12.0 << false << QRectF(5, 6, 10, 10) << true;
    QTest::newRow("12 high item, checked") << 12.0 << true << QRectF(5, 6, 10, 10) << true;
    QTest::newRow("tall item caps the box") << 25.0 << true << QRectF(5, 8, 18, 18) << true;
}

void TestItemListView::checkbox()
{
    QFETCH(qreal, itemHeight);
    QFETCH(bool, checked);
    QFETCH(bool, drawn);
    const QRectF box = GRItemGridLayout::checkboxRect(QRectF(5, 5, 30, itemHeight));
    QTEST(box, "box");
    QImage image(40, 40, QImage::Format_ARGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    DrawQuartzCheckbox(painter, checked, box);
    painter.end();
    QCOMPARE(countPixels(image, Qt::white) < 40 * 40, drawn);
    QCOMPARE(countPixels(image, Qt::black) > 0, drawn && checked);
}

QTEST_MAIN(TestItemListView)
#include "tst_itemlistview.moc"
