#include "GRSegmentedControl.h"

#include <QButtonGroup>
#include <QHBoxLayout>
#include <QToolButton>

GRSegmentedControl::GRSegmentedControl(QWidget *parent) : QWidget(parent), m_group(new QButtonGroup(this))
{
    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    connect(m_group, &QButtonGroup::idClicked, this, &GRSegmentedControl::segmentClicked);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

void GRSegmentedControl::setSegments(const QStringList &labels, bool selecting)
{
    qDeleteAll(m_buttons);
    m_buttons.clear();
    m_selecting = selecting;
    m_group->setExclusive(selecting);
    for (int i = 0; i < labels.size(); ++i) {
        auto *button = new QToolButton(this);
        button->setText(labels.at(i));
        button->setCheckable(selecting);
        button->setToolButtonStyle(Qt::ToolButtonTextOnly);
        button->setFocusPolicy(Qt::TabFocus);
        button->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
        if (!selecting)
            button->setMinimumWidth(button->sizeHint().height() + 4);
        m_group->addButton(button, i);
        layout()->addWidget(button);
        m_buttons.append(button);
    }
    adjustSize();
}

int GRSegmentedControl::selectedSegment() const
{
    return m_selecting ? m_group->checkedId() : -1;
}

void GRSegmentedControl::setSelectedSegment(int segment)
{
    if (QToolButton *button = m_buttons.value(segment); button && m_selecting)
        button->setChecked(true);
}

void GRSegmentedControl::setSegmentEnabled(int segment, bool enabled)
{
    if (QToolButton *button = m_buttons.value(segment))
        button->setEnabled(enabled);
}

bool GRSegmentedControl::isSegmentEnabled(int segment) const
{
    QToolButton *button = m_buttons.value(segment);
    return button && button->isEnabled();
}

void GRSegmentedControl::setSegmentToolTip(int segment, const QString &tip)
{
    if (QToolButton *button = m_buttons.value(segment))
        button->setToolTip(tip);
}
