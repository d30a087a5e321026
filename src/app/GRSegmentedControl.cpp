#include "GRSegmentedControl.h"

#include <QButtonGroup>
#include <QHBoxLayout>
#include <QToolButton>

GRSegmentedControl::GRSegmentedControl(const QStringList &labels, bool selecting, QWidget *parent)
    : QWidget(parent), m_group(new QButtonGroup(this)), m_selecting(selecting)
{
    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
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
        layout->addWidget(button);
        m_buttons.append(button);
    }
    connect(m_group, &QButtonGroup::idClicked, this, &GRSegmentedControl::segmentClicked);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
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
