#include "MGAlertController.h"

#include "MGAlert.h"
#include "MGAlertLayout.h"
#include "ui_MGAlertWindow.h"

#include <QApplication>
#include <QFontMetricsF>
#include <QKeyEvent>
#include <QThread>

#include <memory>

class MGAlertController::WindowPresenter : public MGAlert::Presenter
{
public:
    std::optional<MGAlert::Answer> runModal(const MGAlert::Request &request) override
    {
        if (!canShowWindows())
            return std::nullopt;
        bool suppress = false;
        QPointer<MGAlertController> controller = new MGAlertController(
            request.message, request.moreInfo, request.buttonStrings,
            request.showSuppressButton ? &suppress : nullptr, QApplication::activeWindow());
        const int answer = controller->runModal();
        // The flag lives on this stack frame: the window must not outlive it.
        delete controller.data();
        return MGAlert::Answer{answer, suppress};
    }

    void runSheet(const MGAlert::Request &request, QObject *hostWindow, MGAlert::SheetHandler done) override
    {
        if (!canShowWindows()) {
            if (done)
                done(0, false);
            return;
        }
        QWidget *host = qobject_cast<QWidget *>(hostWindow);
        if (host)
            host = host->window();
        auto suppress = std::make_shared<bool>(false);
        auto *controller = new MGAlertController(request.message, request.moreInfo, request.buttonStrings,
                                                 request.showSuppressButton ? suppress.get() : nullptr, host);
        QPointer<MGAlertController> guard = controller;
        controller->beginSheet(host, [guard, suppress, done = std::move(done)](int answer) {
            if (guard)
                guard->deleteLater();
            if (done)
                done(answer, *suppress);
        });
    }

private:
    static bool canShowWindows()
    {
        return qobject_cast<QApplication *>(QCoreApplication::instance()) &&
               QThread::currentThread() == QCoreApplication::instance()->thread();
    }
};

const QString &MGAlertController::suppressionTitle()
{
    static const QString title = QStringLiteral("Don't show this message again");
    return title;
}

MGAlertController::MGAlertController(const QString &message, const QString &moreInfo,
                                     const QStringList &buttonStrings, bool *suppressFutureAlerts,
                                     QWidget *parent)
    : QDialog(parent), m_ui(std::make_unique<Ui::MGAlertWindow>()), m_suppressPtr(suppressFutureAlerts),
      m_message(message), m_moreInfo(moreInfo), m_buttonStrings(buttonStrings)
{
    m_ui->setupUi(this);
    for (QPushButton *button : {m_ui->button1, m_ui->button2, m_ui->button3})
        connect(button, &QPushButton::clicked, this, &MGAlertController::buttonClicked);
    awakeFromNib();
}

MGAlertController::~MGAlertController() = default;

void MGAlertController::installPresenter()
{
    static WindowPresenter presenter;
    MGAlert::sharedInstance().setPresenter(&presenter);
}

QPushButton *MGAlertController::button1() const
{
    return m_ui->button1;
}

QPushButton *MGAlertController::button2() const
{
    return m_ui->button2;
}

QPushButton *MGAlertController::button3() const
{
    return m_ui->button3;
}

QCheckBox *MGAlertController::suppressionButton() const
{
    return m_ui->suppressionButton;
}

QLabel *MGAlertController::messageField() const
{
    return m_ui->messageField;
}

QLabel *MGAlertController::infoField() const
{
    return m_ui->infoField;
}

static QString buttonText(const QString &title)
{
    // A title is shown as given; '&' would otherwise turn into a mnemonic.
    QString text = title;
    text.replace(QLatin1Char('&'), QLatin1String("&&"));
    return text;
}

void MGAlertController::awakeFromNib()
{
    setWindowTitle(QStringLiteral("Groceries"));
    m_ui->messageField->setText(m_message);

    QPushButton *buttons[] = {m_ui->button1, m_ui->button2, m_ui->button3};
    for (int i = 0; i < 3 && i < m_buttonStrings.size(); ++i)
        buttons[i]->setText(buttonText(m_buttonStrings.at(i)));
    widenForButtons();

    MGAlertLayout layout;
    layout.window = size();
    layout.infoField = m_ui->infoField->geometry();
    layout.suppressionButton = m_ui->suppressionButton->geometry();
    layout.button1 = m_ui->button1->geometry();
    layout.button2 = m_ui->button2->geometry();
    layout.button3 = m_ui->button3->geometry();

    const bool hasMoreInfo = !m_moreInfo.isEmpty();
    qreal measured = 0;
    if (hasMoreInfo) {
        const QFontMetricsF metrics(QApplication::font());
        const QRectF bounds(0, 0, qMax(1, layout.measureWidth()), 1e6);
        measured = metrics.boundingRect(bounds, Qt::AlignLeft | Qt::AlignTop | Qt::TextWordWrap, m_moreInfo)
                       .height();
    }
    layout.layOut(hasMoreInfo, measured, m_suppressPtr != nullptr, m_buttonStrings.size());

    m_ui->infoField->setGeometry(layout.infoField);
    m_ui->infoField->setVisible(layout.infoFieldVisible);
    if (hasMoreInfo)
        m_ui->infoField->setText(m_moreInfo);

    m_ui->suppressionButton->setGeometry(layout.suppressionButton);
    m_ui->suppressionButton->setVisible(layout.suppressionVisible);
    if (layout.suppressionTakesDefaultTitle)
        m_ui->suppressionButton->setText(suppressionTitle());

    m_ui->button1->setGeometry(layout.button1);
    m_ui->button2->setGeometry(layout.button2);
    m_ui->button3->setGeometry(layout.button3);
    if (m_buttonStrings.size() < 2)
        m_ui->button2->setFocusPolicy(Qt::NoFocus); // out of sight, but Escape still answers with it
    m_ui->button3->setVisible(layout.button3Visible);

    placeButtonsInRow();
    setFixedSize(layout.window);
}

int MGAlertController::buttonsInUse() const
{
    return int(qBound(qsizetype(1), m_buttonStrings.size(), qsizetype(3)));
}

int MGAlertController::buttonSpacing() const
{
    return m_ui->button1->geometry().left() - m_ui->button2->geometry().right() - 1;
}

// Long titles widen the window rather than crowd the buttons.
void MGAlertController::widenForButtons()
{
    QPushButton *buttons[] = {m_ui->button1, m_ui->button2, m_ui->button3};
    int needed = buttonSpacing() * (buttonsInUse() - 1);
    for (int i = 0; i < buttonsInUse(); ++i)
        needed += qMax(buttons[i]->width(), buttons[i]->sizeHint().width());
    const int available = m_ui->button1->geometry().right() + 1 - m_ui->messageField->geometry().left();
    const int extra = needed - available;
    if (extra <= 0)
        return;
    resize(width() + extra, height());
    for (QWidget *field :
         {static_cast<QWidget *>(m_ui->messageField), static_cast<QWidget *>(m_ui->infoField),
          static_cast<QWidget *>(m_ui->suppressionButton)})
        field->resize(field->width() + extra, field->height());
    for (QPushButton *button : buttons)
        button->move(button->x() + extra, button->y());
}

// Right-aligned on button1's right edge, each button as wide as its title needs.
void MGAlertController::placeButtonsInRow()
{
    const int spacing = buttonSpacing();
    int right = m_ui->button1->geometry().right() + 1;
    QPushButton *buttons[] = {m_ui->button1, m_ui->button2, m_ui->button3};
    for (int i = 0; i < buttonsInUse(); ++i) {
        QRect frame = buttons[i]->geometry();
        const int width = qMax(frame.width(), buttons[i]->sizeHint().width());
        frame.setLeft(right - width);
        frame.setWidth(width);
        buttons[i]->setGeometry(frame);
        right = frame.left() - spacing;
    }
}

int MGAlertController::runModal()
{
    m_sheet = false;
    m_closed = false;
    m_hostWindow = nullptr;
    return exec();
}

void MGAlertController::beginSheet(QWidget *hostWindow, CompletionHandler handler)
{
    m_sheet = true;
    m_closed = false;
    m_hostWindow = hostWindow;
    m_handler = std::move(handler);
    if (hostWindow && parentWidget() != hostWindow->window())
        setParent(hostWindow->window(), windowFlags());
    setWindowModality(hostWindow ? Qt::WindowModal : Qt::ApplicationModal);
    show();
    activateWindow();
}

void MGAlertController::closeAlert(QAbstractButton *button)
{
    if (m_closed || !button)
        return;
    m_closed = true;
    const int answer = button->property("tag").toInt();
    if (m_suppressPtr)
        *m_suppressPtr = m_ui->suppressionButton->isChecked();
    done(answer);
    if (m_sheet) {
        m_hostWindow = nullptr;
        const CompletionHandler handler = std::exchange(m_handler, {});
        if (handler)
            handler(answer);
    }
}

void MGAlertController::buttonClicked()
{
    closeAlert(qobject_cast<QAbstractButton *>(sender()));
}

void MGAlertController::reject()
{
    closeAlert(m_ui->button2);
}

static QChar typedCharacter(const QKeyEvent *event)
{
    // With Control held the platform may deliver a control character as text; fall back to the key.
    const QString text = event->text();
    if (!text.isEmpty() && text.at(0).isPrint())
        return text.at(0);
    const int key = event->key();
    if (key > 0 && key <= 0xFFFF && QChar(key).isPrint())
        return QChar(key);
    return {};
}

void MGAlertController::keyPressEvent(QKeyEvent *event)
{
    switch (event->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        closeAlert(m_ui->button1);
        return;
    case Qt::Key_Escape:
        closeAlert(m_ui->button2);
        return;
    default:
        break;
    }
    if ((event->modifiers() & Qt::ControlModifier) && m_ui->button3->isVisibleTo(this) &&
        m_buttonStrings.size() >= 3 && !m_buttonStrings.at(2).isEmpty()) {
        const QChar typed = typedCharacter(event);
        if (!typed.isNull() && typed.toLower() == m_buttonStrings.at(2).at(0).toLower()) {
            closeAlert(m_ui->button3);
            return;
        }
    }
    QDialog::keyPressEvent(event);
}
