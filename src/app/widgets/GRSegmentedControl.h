#pragma once

#include <QList>
#include <QStringList>
#include <QWidget>

class QButtonGroup;
class QToolButton;

// A row of joined buttons. Selecting keeps one segment checked (the list picker); otherwise every
// click is momentary (the add/remove controls).
class GRSegmentedControl : public QWidget
{
    Q_OBJECT

public:
    explicit GRSegmentedControl(QWidget *parent = nullptr);

    // One button per label, replacing any there were.
    void setSegments(const QStringList &labels, bool selecting);
    int segmentCount() const { return int(m_buttons.size()); }
    QToolButton *button(int segment) const { return m_buttons.value(segment); }
    // -1 when the control does not select.
    int selectedSegment() const;
    void setSelectedSegment(int segment);
    void setSegmentEnabled(int segment, bool enabled);
    bool isSegmentEnabled(int segment) const;
    void setSegmentToolTip(int segment, const QString &tip);

signals:
    void segmentClicked(int segment);

private:
    QList<QToolButton *> m_buttons;
    QButtonGroup *m_group = nullptr;
    bool m_selecting = false;
};
