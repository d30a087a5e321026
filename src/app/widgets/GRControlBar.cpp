#include "GRControlBar.h"

#include <QChildEvent>
#include <QEvent>

#include <cmath>

int CenteredControlX(int viewX, int viewWidth, int controlWidth)
{
    return viewX + int(std::floor((viewWidth - controlWidth) * 0.5));
}

GRControlBar::GRControlBar(QWidget *parent) : QWidget(parent)
{
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
}

void GRControlBar::setAnchor(QWidget *view)
{
    if (m_anchor)
        m_anchor->removeEventFilter(this);
    m_anchor = view;
    if (m_anchor)
        m_anchor->installEventFilter(this);
    recentre();
}

QWidget *GRControlBar::control() const
{
    return findChild<QWidget *>(QString(), Qt::FindDirectChildrenOnly);
}

void GRControlBar::recentre()
{
    QWidget *centred = control();
    if (!centred)
        return;
    setFixedHeight(centred->sizeHint().height());
    centred->resize(centred->sizeHint());
    int viewX = 0;
    int viewWidth = width();
    if (m_anchor && window() == m_anchor->window()) {
        viewX = m_anchor->mapTo(window(), QPoint(0, 0)).x() - mapTo(window(), QPoint(0, 0)).x();
        viewWidth = m_anchor->width();
    }
    const int x = CenteredControlX(viewX, viewWidth, centred->width());
    if (centred->x() == x)
        return;
    centred->hide();
    centred->move(x, 0);
    centred->show();
}

void GRControlBar::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    recentre();
}

bool GRControlBar::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_anchor && (event->type() == QEvent::Resize || event->type() == QEvent::Move))
        recentre();
    return QWidget::eventFilter(watched, event);
}

void GRControlBar::childEvent(QChildEvent *event)
{
    QWidget::childEvent(event);
    if (event->type() == QEvent::ChildPolished)
        recentre();
}
