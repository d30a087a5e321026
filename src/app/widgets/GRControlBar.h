#pragma once

#include <QPointer>
#include <QWidget>

// The x of a control centred under a view that starts at viewX and is viewWidth wide.
int CenteredControlX(int viewX, int viewWidth, int controlWidth);

// The strip under a list that holds the list's add/remove control and keeps it centred under the
// list's scroll view, whatever the window or the splitter does to either.
class GRControlBar : public QWidget
{
    Q_OBJECT

public:
    explicit GRControlBar(QWidget *parent = nullptr);

    // The view to centre under; without one, the bar's own width.
    void setAnchor(QWidget *view);
    QWidget *control() const;
    // Puts the control at its centred x, hiding it for the move.
    void recentre();

protected:
    void resizeEvent(QResizeEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;
    void childEvent(QChildEvent *event) override;

private:
    QPointer<QWidget> m_anchor;
};
