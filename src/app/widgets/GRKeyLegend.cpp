#include "GRKeyLegend.h"

#include <QHeaderView>
#include <QMouseEvent>
#include <QPropertyAnimation>
#include <QTableWidget>
#include <QToolButton>
#include <QVBoxLayout>

GRKeyLegend::GRKeyLegend(QWidget *parent) : QWidget(parent)
{
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(6);

    m_keyDisclosureButton = new QToolButton(this);
    m_keyDisclosureButton->setObjectName(QStringLiteral("keyDisclosureButton"));
    m_keyDisclosureButton->setText(tr("Key"));
    m_keyDisclosureButton->setCheckable(true);
    m_keyDisclosureButton->setChecked(true);
    m_keyDisclosureButton->setAutoRaise(true);
    m_keyDisclosureButton->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    m_keyDisclosureButton->setArrowType(Qt::DownArrow);
    m_keyDisclosureButton->setToolTip(tr("Show or hide the key legend"));
    connect(m_keyDisclosureButton, &QToolButton::clicked, this, &GRKeyLegend::toggled);
    layout->addWidget(m_keyDisclosureButton, 0, Qt::AlignLeft);

    m_pane = new QWidget(this);
    auto *paneLayout = new QVBoxLayout(m_pane);
    paneLayout->setContentsMargins(0, 0, 0, 0);
    m_keyList = new QTableWidget(6, 2, m_pane);
    m_keyList->setObjectName(QStringLiteral("keyList"));
    m_keyList->horizontalHeader()->hide();
    m_keyList->verticalHeader()->hide();
    m_keyList->setShowGrid(false);
    m_keyList->setSelectionMode(QAbstractItemView::NoSelection);
    m_keyList->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_keyList->setFocusPolicy(Qt::NoFocus);
    m_keyList->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_keyList->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    const int keyRow = m_keyList->fontMetrics().height() + 6;
    m_keyList->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    m_keyList->verticalHeader()->setDefaultSectionSize(keyRow);
    m_keyList->horizontalHeader()->setSectionResizeMode(0, QHeaderView::Fixed);
    m_keyList->horizontalHeader()->resizeSection(0, keyRow + 8);
    m_keyList->horizontalHeader()->setSectionResizeMode(1, QHeaderView::Stretch);
    m_keyList->setFixedHeight(6 * keyRow + 2 * m_keyList->frameWidth());
    m_keyList->viewport()->installEventFilter(this);
    paneLayout->addWidget(m_keyList);
    layout->addWidget(m_pane);
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Maximum);
}

void GRKeyLegend::setKeyStrings(const QStringList &lines)
{
    QFont keyFont = m_keyList->font();
    keyFont.setPointSizeF(keyFont.pointSizeF() * 1.15);
    for (int row = 0; row < m_keyList->rowCount(); ++row) {
        const QString line = lines.value(row);
        const qsizetype tab = line.indexOf(QLatin1Char('\t'));
        auto *mark = new QTableWidgetItem(tab < 0 ? QString() : line.left(tab));
        mark->setTextAlignment(Qt::AlignCenter);
        mark->setFont(keyFont);
        mark->setFlags(Qt::ItemIsEnabled);
        auto *name = new QTableWidgetItem(tab < 0 ? line : line.mid(tab + 1));
        name->setFlags(Qt::ItemIsEnabled);
        m_keyList->setItem(row, 0, mark);
        m_keyList->setItem(row, 1, name);
    }
}

void GRKeyLegend::setShown(bool shown, bool animate)
{
    m_keyDisclosureButton->setChecked(shown);
    m_keyDisclosureButton->setArrowType(shown ? Qt::DownArrow : Qt::RightArrow);
    if (animate && m_shown == shown)
        return;
    m_shown = shown;
    if (m_animation)
        m_animation->stop();
    if (!animate || !isVisible()) {
        m_pane->setMaximumHeight(shown ? QWIDGETSIZE_MAX : 0);
        m_pane->setVisible(shown);
        return;
    }
    // The groups table above gives up (or takes back) the legend's height as it grows or shrinks.
    auto *animation = new QPropertyAnimation(m_pane, "maximumHeight", this);
    animation->setDuration(160);
    animation->setEasingCurve(QEasingCurve::InOutQuad);
    animation->setStartValue(shown ? 0 : m_pane->height());
    animation->setEndValue(shown ? m_keyList->height() : 0);
    if (shown) {
        m_pane->setMaximumHeight(0);
        m_pane->setVisible(true);
    }
    connect(animation, &QPropertyAnimation::finished, this, [this, shown] {
        m_pane->setMaximumHeight(shown ? QWIDGETSIZE_MAX : 0);
        m_pane->setVisible(shown);
    });
    m_animation = animation;
    animation->start(QAbstractAnimation::DeleteWhenStopped);
}

bool GRKeyLegend::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_keyList->viewport() &&
        (event->type() == QEvent::MouseButtonPress || event->type() == QEvent::MouseButtonDblClick)) {
        emit clicked();
        return true;
    }
    return QWidget::eventFilter(watched, event);
}
