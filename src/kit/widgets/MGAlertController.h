#pragma once

#include <QDialog>
#include <QPointer>
#include <QString>
#include <QStringList>

#include <functional>
#include <memory>

class QAbstractButton;
class QCheckBox;
class QLabel;
class QPushButton;

namespace Ui {
class MGAlertWindow;
}

// One alert window: a message, an optional further text, up to three buttons and an optional
// check box whose final state is written to the caller's flag. The answer is the tag of the
// button pressed (0, 1, 2).
class MGAlertController : public QDialog
{
    Q_OBJECT

public:
    using CompletionHandler = std::function<void(int answer)>;

    static const QString &suppressionTitle();

    // suppressFutureAlerts: where the check box's state goes when the alert closes; null hides it.
    MGAlertController(const QString &message, const QString &moreInfo, const QStringList &buttonStrings,
                      bool *suppressFutureAlerts, QWidget *parent = nullptr);
    ~MGAlertController() override;

    // Makes MGAlert show its alerts in this window.
    static void installPresenter();

    int runModal();
    // Window-modal on hostWindow's window; handler gets the answer after the window is hidden.
    void beginSheet(QWidget *hostWindow, CompletionHandler handler);
    void closeAlert(QAbstractButton *button);

    QPushButton *button1() const;
    QPushButton *button2() const;
    QPushButton *button3() const;
    QCheckBox *suppressionButton() const;
    QLabel *messageField() const;
    QLabel *infoField() const;
    QWidget *hostWindow() const { return m_hostWindow; }

public slots:
    void reject() override;

protected:
    void keyPressEvent(QKeyEvent *event) override;

private:
    class WindowPresenter;

    void awakeFromNib();
    int buttonsInUse() const;
    int buttonSpacing() const;
    void widenForButtons();
    void placeButtonsInRow();
    void buttonClicked();

    std::unique_ptr<Ui::MGAlertWindow> m_ui;
    QPointer<QWidget> m_hostWindow;
    bool *m_suppressPtr = nullptr;
    QString m_message;
    QString m_moreInfo;
    QStringList m_buttonStrings;
    CompletionHandler m_handler;
    bool m_sheet = false;
    bool m_closed = false;
};
