#include "MGToolbarSegments.h"

#include "MGSegmentLayout.h"
#include "MGToolbarSegmentsDelegate.h"

#include <QAction>
#include <QApplication>
#include <QIcon>
#include <QImage>
#include <QLinearGradient>
#include <QMouseEvent>
#include <QPaintEngine>
#include <QPainter>
#include <QPainterPath>
#include <QPixmap>
#include <QPointer>
#include <QToolBar>

#include <algorithm>
#include <cmath>

namespace {

// Line heights of a single space in the system font and the small system font, measured once.
double s_normalLineHeight = 0;
double s_smallLineHeight = 0;

QFont smallSystemFont()
{
    QFont font = QApplication::font();
    if (font.pointSizeF() > 0)
        font.setPointSizeF(std::max(6.0, font.pointSizeF() - 2));
    else if (font.pixelSize() > 0)
        font.setPixelSize(std::max(6, font.pixelSize() - 2));
    return font;
}

double spaceLineHeight(const QFont &font)
{
    return QFontMetricsF(font).size(Qt::TextSingleLine, QStringLiteral(" ")).height();
}

QIcon iconFromContent(const QVariant &content)
{
    switch (content.typeId()) {
    case QMetaType::QIcon:
        return content.value<QIcon>();
    case QMetaType::QPixmap:
        return QIcon(content.value<QPixmap>());
    case QMetaType::QImage:
        return QIcon(QPixmap::fromImage(content.value<QImage>()));
    default:
        return QIcon();
    }
}

void fillGradient(QPainter &painter, const QRectF &rect, const QColor &top, const QColor &bottom)
{
    QLinearGradient gradient(rect.topLeft(), rect.bottomLeft());
    gradient.setColorAt(0, top);
    gradient.setColorAt(1, bottom);
    painter.fillRect(rect, gradient);
}

} // namespace

MGToolbarSegments::MGToolbarSegments(QWidget *parent) : MGToolbarSegments(Momentary, false, parent) {}

MGToolbarSegments::MGToolbarSegments(quint64 selectStyle, bool roundEndcaps, QWidget *parent)
    : QWidget(parent), m_selectStyle(selectStyle), m_roundEndcaps(roundEndcaps),
      m_useNormalFont(!roundEndcaps)
{
    // A press must never reach the toolbar, which would start moving it.
    setAttribute(Qt::WA_NoMousePropagation);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    setup();
}

void MGToolbarSegments::setDelegate(MGToolbarSegmentsDelegate *delegate)
{
    m_delegate = delegate;
    m_tabs.clear();
    update();
}

void MGToolbarSegments::setSelectStyle(quint64 selectStyle)
{
    m_selectStyle = selectStyle;
    m_selectedTabs.clear();
    update();
}

void MGToolbarSegments::setRoundEndcaps(bool roundEndcaps)
{
    m_roundEndcaps = roundEndcaps;
    m_useNormalFont = !roundEndcaps;
    computeTabWidths();
    updateGeometry();
    update();
}

void MGToolbarSegments::setExtraCenterTabWidth(double width)
{
    m_extraCenterTabWidth = width;
    computeTabWidths();
    updateGeometry();
    update();
}

void MGToolbarSegments::setup()
{
    if (s_normalLineHeight == 0) {
        s_normalLineHeight = spaceLineHeight(QApplication::font());
        s_smallLineHeight = spaceLineHeight(smallSystemFont());
    }
    m_tabs.clear();
    m_tabWidths.clear();
    m_tabEnabledMask = ~quint64(0);
    m_pressedTab = -1;
    m_isPressed = false;
    setSelectedTab(-1);
    QWidget::setEnabled(true);
}

void MGToolbarSegments::reloadTabs()
{
    m_tabs.clear();
    m_selectedTab = -1;
    update();
}

void MGToolbarSegments::layoutTabs()
{
    // A delegate that selects a tab while handing out the tabs would otherwise recurse.
    if (m_layingOut)
        return;
    m_layingOut = true;
    QList<QVariant> tabs = m_delegate ? m_delegate->tabsForSegments(this) : QList<QVariant>();
    m_layingOut = false;
    m_tabs = std::move(tabs);
    computeTabWidths();
    if (m_selectedTab != 0 && m_selectedTab >= m_tabs.size())
        m_selectedTab = -1;
    updateGeometry();
    update();
}

void MGToolbarSegments::computeTabWidths()
{
    const MGSegmentLayout::Result result =
        MGSegmentLayout::layout(width(), height(), m_tabs.size(), m_roundEndcaps, m_extraCenterTabWidth);
    m_endcapWidth = result.endcapWidth;
    m_tabWidths = result.tabWidths;
    if (result.centerTab >= 0)
        m_useNormalFont = false;
}

void MGToolbarSegments::selectTab(qint64 index)
{
    if (m_tabs.isEmpty())
        layoutTabs();
    m_selectedTab = index >= 0 && index < m_tabs.size() ? index : -1;
    update();
}

void MGToolbarSegments::setSelectedTab(qint64 index)
{
    if (m_selectStyle == AnySelection)
        m_selectedTabs.clear();
    else
        m_selectedTab = index;
    update();
}

void MGToolbarSegments::setSelected(bool flag, qint64 forTab)
{
    if (m_selectStyle != AnySelection)
        return;
    if (flag)
        m_selectedTabs.insert(forTab);
    else
        m_selectedTabs.remove(forTab);
    update();
}

bool MGToolbarSegments::isTabSelected(qint64 index) const
{
    if (!isEnabled())
        return false;
    switch (m_selectStyle) {
    case SingleSelection:
        return index == m_selectedTab;
    case AnySelection:
        return m_selectedTabs.contains(index);
    default:
        return false;
    }
}

qint64 MGToolbarSegments::selectedTabIndex() const
{
    return m_isPressed && m_pressedTab >= 0 ? m_pressedTab : m_selectedTab;
}

void MGToolbarSegments::setEnabled(bool flag, qint64 forTab)
{
    // The mask has 32 usable bits; tab 32 shares tab 0's bit.
    const quint64 bit = quint64(1) << (quint64(forTab) % 32);
    if (flag)
        m_tabEnabledMask |= bit;
    else
        m_tabEnabledMask &= ~bit;
    update();
}

bool MGToolbarSegments::isTabEnabled(qint64 tab) const
{
    return m_tabEnabledMask & (quint64(1) << (quint64(tab) % 32));
}

void MGToolbarSegments::updateContent(const QVariant &content, qint64 forTab)
{
    if (forTab < 0 || forTab >= m_tabs.size())
        return;
    m_tabs[forTab] = content;
    update();
}

qint64 MGToolbarSegments::tabFromPoint(const QPointF &point) const
{
    if (point.y() < 0 || point.y() > height())
        return -1;
    if (m_tabs.size() < 2)
        return 0;
    return MGSegmentLayout::tabFromPoint(point.x(), point.y(), height(), m_tabWidths);
}

MGToolbarSegments *MGToolbarSegments::tabsForToolbarItem(QWidget *itemWidget)
{
    if (!itemWidget)
        return nullptr;
    if (auto *segments = qobject_cast<MGToolbarSegments *>(itemWidget))
        return segments;
    for (QObject *child : itemWidget->children()) {
        if (child->isWidgetType())
            return qobject_cast<MGToolbarSegments *>(child);
    }
    return nullptr;
}

MGToolbarSegments *MGToolbarSegments::tabsForToolbar(QToolBar *toolbar, quint64 barTag, QAction **item)
{
    if (item)
        *item = nullptr;
    if (!toolbar)
        return nullptr;
    const QList<QAction *> actions = toolbar->actions();
    for (auto it = actions.crbegin(); it != actions.crend(); ++it) {
        MGToolbarSegments *segments = tabsForToolbarItem(toolbar->widgetForAction(*it));
        if (segments && segments->barTag() == barTag) {
            if (item)
                *item = *it;
            return segments;
        }
    }
    return nullptr;
}

QFont MGToolbarSegments::tabFont() const
{
    return m_useNormalFont ? QApplication::font() : smallSystemFont();
}

QSize MGToolbarSegments::sizeHint() const
{
    constexpr double minimumTabWidth = 36;
    const QFontMetricsF metrics(tabFont());
    double width = m_extraCenterTabWidth;
    if (m_tabs.isEmpty())
        width += 2 * minimumTabWidth;
    for (const QVariant &content : m_tabs) {
        double tabWidth = minimumTabWidth;
        if (content.typeId() == QMetaType::QString)
            tabWidth = std::max(tabWidth, std::ceil(metrics.horizontalAdvance(content.toString())) + 20);
        width += tabWidth;
    }
    const int height = std::max(24, int(std::ceil(metrics.height())) + 8);
    return QSize(int(std::ceil(width)), height);
}

void MGToolbarSegments::paintEvent(QPaintEvent *)
{
    if (m_tabs.isEmpty() && m_delegate)
        layoutTabs();
    if (width() < 4 || height() < 4)
        return;

    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);

    const bool active = isActiveWindow();
    const bool enabled = isEnabled();
    const QColor base = palette().color(QPalette::Active, QPalette::Button);
    QColor outline = base.darker(active && enabled ? 150 : 125);

    // Half-unit insets put the 1-unit outline on whole device pixels at 100% and 200%.
    const QRectF bar = QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5);
    const double radius = m_roundEndcaps ? bar.height() / 2 : std::min(4.0, bar.height() / 2);
    QPainterPath barPath;
    barPath.addRoundedRect(bar, radius, radius);

    painter.save();
    painter.setClipPath(barPath);
    fillGradient(painter, bar, base.lighter(active ? 112 : 106), base.darker(active ? 104 : 101));

    const qint64 count = std::min<qint64>(m_tabs.size(), m_tabWidths.size());
    for (qint64 i = 0; i < count; ++i) {
        const bool pressed = m_isPressed && m_pressedTab == i;
        if (!pressed && !isTabSelected(i))
            continue;
        const QRectF tabRect(MGSegmentLayout::tabLeft(i, m_tabWidths), 0, m_tabWidths[i], height());
        if (!active)
            fillGradient(painter, tabRect, base.darker(114), base.darker(106));
        else if (pressed)
            fillGradient(painter, tabRect, base.darker(145), base.darker(125));
        else
            fillGradient(painter, tabRect, base.darker(128), base.darker(112));
        // A faint inner shadow along the top edge makes the tab look pushed in.
        QColor shadow = Qt::black;
        shadow.setAlphaF(active ? 0.18 : 0.08);
        painter.fillRect(QRectF(tabRect.left(), 0, tabRect.width(), 2), shadow);
    }
    painter.restore();

    painter.setPen(QPen(outline, 1));
    painter.setBrush(Qt::NoBrush);
    for (qint64 i = 1; i < count; ++i) {
        const double x = std::floor(MGSegmentLayout::tabLeft(i, m_tabWidths)) + 0.5;
        painter.drawLine(QPointF(x, bar.top()), QPointF(x, bar.bottom()));
    }
    painter.drawPath(barPath);

    for (qint64 i = 0; i < count; ++i) {
        if (!(m_tabWidths[i] > 0))
            continue;
        const QRectF tabRect(MGSegmentLayout::tabLeft(i, m_tabWidths), 0, m_tabWidths[i], height());
        const bool tabEnabled = enabled && isTabEnabled(i);
        painter.setOpacity(!tabEnabled ? 0.35 : active ? 1.0 : 0.7);
        drawContent(painter, m_tabs[i], tabRect, tabEnabled);
    }
}

void MGToolbarSegments::drawContent(QPainter &painter, const QVariant &content, const QRectF &rect,
                                    bool enabled) const
{
    if (content.typeId() == QMetaType::QString) {
        const QFont font = tabFont();
        const QFontMetricsF metrics(font);
        const QString text = metrics.elidedText(content.toString(), Qt::ElideRight, rect.width() - 8);
        const double lineHeight = m_useNormalFont ? s_normalLineHeight : s_smallLineHeight;
        const QRectF textRect(rect.left(), std::round(rect.top() + (rect.height() - lineHeight) / 2),
                              rect.width(), lineHeight);
        painter.setFont(font);
        painter.setPen(
            palette().color(enabled ? QPalette::Active : QPalette::Disabled, QPalette::ButtonText));
        painter.drawText(textRect, Qt::AlignCenter, text);
        return;
    }

    const QIcon icon = iconFromContent(content);
    if (icon.isNull())
        return;
    const int side = std::max(8, int(rect.height()) - 8);
    const QSize size = icon.actualSize(QSize(side, side));
    if (size.isEmpty())
        return;
    // The engine's device is the real target (backing store, image or printer), whose ratio can
    // differ from the widget's own when rendering elsewhere.
    const QPaintDevice *device = painter.paintEngine() ? painter.paintEngine()->paintDevice() : nullptr;
    const qreal ratio = std::max(device ? device->devicePixelRatioF() : 1.0, devicePixelRatioF());
    const QPixmap pixmap = icon.pixmap(size, ratio);
    // Whole-unit origins keep the icon's pixels unblurred.
    const QPointF origin(std::round(rect.center().x() - size.width() / 2.0),
                         std::round(rect.center().y() - size.height() / 2.0));
    painter.drawPixmap(origin, pixmap);
}

void MGToolbarSegments::mousePressEvent(QMouseEvent *event)
{
    event->accept();
    if (event->button() != Qt::LeftButton || !isEnabled())
        return;
    if (m_tabs.isEmpty() && m_delegate)
        layoutTabs();
    const QPointF point = event->position();
    m_pressedTab =
        m_tabs.isEmpty() ? -1 : tabFromPoint(QPointF(std::floor(point.x()), std::floor(point.y())));
    if (m_pressedTab >= 0 && !isTabEnabled(m_pressedTab))
        m_pressedTab = -1;
    m_isPressed = m_pressedTab >= 0;
    update();
}

void MGToolbarSegments::mouseMoveEvent(QMouseEvent *event)
{
    event->accept();
    if (m_pressedTab < 0)
        return;
    const QPointF point = event->position();
    const bool inside = tabFromPoint(QPointF(std::floor(point.x()), std::floor(point.y()))) == m_pressedTab;
    if (inside != m_isPressed) {
        m_isPressed = inside;
        update();
    }
}

void MGToolbarSegments::leaveEvent(QEvent *event)
{
    if (m_pressedTab >= 0 && m_isPressed) {
        m_isPressed = false;
        update();
    }
    QWidget::leaveEvent(event);
}

void MGToolbarSegments::mouseReleaseEvent(QMouseEvent *event)
{
    event->accept();
    if (event->button() != Qt::LeftButton)
        return;
    // The delegate may delete the control from inside its call.
    QPointer<MGToolbarSegments> alive(this);
    if (m_pressedTab >= 0 && m_isPressed) {
        const qint64 tab = m_pressedTab;
        switch (m_selectStyle) {
        case SingleSelection:
            if (tab == m_selectedTab) {
                if (m_delegate)
                    m_delegate->sameTabWasSelected(m_selectedTab, this);
            } else {
                selectTab(tab);
                if (m_delegate && m_selectedTab >= 0)
                    m_delegate->tabWasSelected(m_selectedTab, this);
            }
            break;
        case AnySelection:
            setSelected(!m_selectedTabs.contains(tab), tab);
            if (m_delegate)
                m_delegate->tabWasSelected(tab, this);
            if (alive)
                m_selectedTab = -1;
            break;
        default:
            if (m_delegate)
                m_delegate->tabWasSelected(tab, this);
            if (alive)
                m_selectedTab = -1;
            break;
        }
        if (!alive)
            return;
    }
    m_pressedTab = -1;
    m_isPressed = false;
    update();
}

void MGToolbarSegments::resizeEvent(QResizeEvent *event)
{
    computeTabWidths();
    QWidget::resizeEvent(event);
}

void MGToolbarSegments::changeEvent(QEvent *event)
{
    switch (event->type()) {
    case QEvent::EnabledChange:
        m_pressedTab = -1;
        m_isPressed = false;
        update();
        break;
    case QEvent::ActivationChange:
    case QEvent::PaletteChange:
    case QEvent::FontChange:
        update();
        break;
    default:
        break;
    }
    QWidget::changeEvent(event);
}
