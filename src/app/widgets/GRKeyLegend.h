#pragma once

#include <QPointer>
#include <QWidget>

class QTableWidget;
class QToolButton;
class QVariantAnimation;

// The legend of the six key marks under the groups table: a disclosure button and a table of
// "mark, name" rows that slides open and shut. The table never takes a selection.
class GRKeyLegend : public QWidget
{
    Q_OBJECT

public:
    explicit GRKeyLegend(QWidget *parent = nullptr);

    QTableWidget *keyList() const { return m_keyList; }
    QToolButton *keyDisclosureButton() const { return m_keyDisclosureButton; }

    // One "mark<tab>name" line per key.
    void setKeyStrings(const QStringList &lines);
    // The state the legend is in, or sliding towards.
    bool isShown() const { return m_shown; }
    // Shows or hides the table; slides when animate and the legend is on screen.
    void setShown(bool shown, bool animate);

signals:
    // The disclosure button was clicked; shown is its new state.
    void toggled(bool shown);
    // A click on the table, which the window answers by focusing the groups table.
    void clicked();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    QToolButton *m_keyDisclosureButton = nullptr;
    QWidget *m_pane = nullptr;
    QTableWidget *m_keyList = nullptr;
    QPointer<QVariantAnimation> m_animation;
    bool m_shown = true;
};
