#pragma once

#include <QList>
#include <QSet>
#include <QVariant>
#include <QWidget>

class MGToolbarSegmentsDelegate;
class QAction;
class QPainter;
class QToolBar;

// A row of adjacent tabs for a toolbar. It draws itself, tracks the mouse itself and tells its
// delegate about clicks in one of three selection styles.
class MGToolbarSegments : public QWidget
{
    Q_OBJECT

public:
    enum SelectStyle : quint64
    {
        Momentary = 0,
        SingleSelection = 1,
        AnySelection = 2,
    };

    explicit MGToolbarSegments(QWidget *parent = nullptr);
    MGToolbarSegments(quint64 selectStyle, bool roundEndcaps, QWidget *parent = nullptr);

    MGToolbarSegmentsDelegate *delegate() const { return m_delegate; }
    // Not owned; the delegate must outlive the control or be replaced first.
    void setDelegate(MGToolbarSegmentsDelegate *delegate);
    quint64 barTag() const { return m_barTag; }
    void setBarTag(quint64 barTag) { m_barTag = barTag; }
    quint64 selectStyle() const { return m_selectStyle; }
    void setSelectStyle(quint64 selectStyle);
    bool roundEndcaps() const { return m_roundEndcaps; }
    void setRoundEndcaps(bool roundEndcaps);
    double extraCenterTabWidth() const { return m_extraCenterTabWidth; }
    void setExtraCenterTabWidth(double width);

    const QList<QVariant> &tabs() const { return m_tabs; }
    const QList<double> &tabWidths() const { return m_tabWidths; }
    double endcapWidth() const { return m_endcapWidth; }
    quint64 tabEnabledMask() const { return m_tabEnabledMask; }
    bool useNormalFont() const { return m_useNormalFont; }
    bool isPressed() const { return m_isPressed; }
    qint64 pressedTab() const { return m_pressedTab; }
    qint64 selectedTab() const { return m_selectedTab; }

    void setup();
    void reloadTabs();
    void layoutTabs();
    void selectTab(qint64 index);
    void setSelectedTab(qint64 index);
    void setSelected(bool flag, qint64 forTab);
    bool isTabSelected(qint64 index) const;
    qint64 selectedTabIndex() const;
    // The whole control's enabled state is the widget's own.
    using QWidget::setEnabled;
    void setEnabled(bool flag, qint64 forTab);
    bool isTabEnabled(qint64 tab) const;
    void updateContent(const QVariant &content, qint64 forTab);
    qint64 tabFromPoint(const QPointF &point) const;

    // The control when itemWidget is one, or when its first child widget is one.
    static MGToolbarSegments *tabsForToolbarItem(QWidget *itemWidget);
    // Searches the toolbar's widgets from the last to the first for a control with barTag;
    // item receives the toolbar action that holds it.
    static MGToolbarSegments *tabsForToolbar(QToolBar *toolbar, quint64 barTag, QAction **item = nullptr);

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void leaveEvent(QEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    void computeTabWidths();
    QFont tabFont() const;
    void drawContent(QPainter &painter, const QVariant &content, const QRectF &rect, bool enabled) const;

    MGToolbarSegmentsDelegate *m_delegate = nullptr;
    quint64 m_barTag = 0;
    quint64 m_selectStyle = Momentary;
    bool m_roundEndcaps = false;
    QList<QVariant> m_tabs;
    QList<double> m_tabWidths;
    double m_endcapWidth = 0;
    double m_extraCenterTabWidth = 0;
    quint64 m_tabEnabledMask = ~quint64(0);
    bool m_useNormalFont = true;
    bool m_isPressed = false;
    bool m_layingOut = false;
    qint64 m_pressedTab = -1;
    qint64 m_selectedTab = -1;
    QSet<qint64> m_selectedTabs;
};
