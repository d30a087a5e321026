#include "MGAlert.h"

#include "MGLog.h"

#include <QCoreApplication>
#include <QTimer>

// Keeps the nesting counter right even if a presenter throws.
struct MGAlertNestingGuard
{
    explicit MGAlertNestingGuard(int &counter) : m_counter(counter) { ++m_counter; }
    ~MGAlertNestingGuard() { --m_counter; }
    MGAlertNestingGuard(const MGAlertNestingGuard &) = delete;
    MGAlertNestingGuard &operator=(const MGAlertNestingGuard &) = delete;
    int &m_counter;
};

static void logAlert(const MGAlert::Request &request)
{
    if (request.moreInfo.isEmpty())
        MGLog(QStringLiteral("Alert: %1").arg(request.message));
    else
        MGLog(QStringLiteral("Alert: %1 %2").arg(request.message, request.moreInfo));
}

MGAlert &MGAlert::sharedInstance()
{
    static MGAlert instance;
    return instance;
}

int MGAlert::giveAlertMessage(const QString &message, const QString &moreInfo,
                              const QStringList &buttonStrings, bool *suppressFutureAlerts)
{
    return giveAlertMessage(message, moreInfo, buttonStrings, suppressFutureAlerts, buttonStrings.isEmpty());
}

int MGAlert::giveAlertMessage(const QString &message, const QString &moreInfo,
                              const QStringList &buttonStrings, bool *suppressFutureAlerts, bool allowDelay)
{
    if (suppressFutureAlerts)
        *suppressFutureAlerts = false;

    Request request;
    request.message = message;
    request.moreInfo = moreInfo;
    request.buttonStrings = buttonStrings;
    request.showSuppressButton = suppressFutureAlerts != nullptr;
    if (m_recording)
        m_shown.append(request);

    MGAlertNestingGuard nesting(m_nesting);

    std::optional<Answer> answer;
    if (!m_nextAnswers.isEmpty()) {
        answer = m_nextAnswers.takeFirst();
    } else if (m_presenter) {
        answer = m_presenter->runModal(request);
        if (!answer && allowDelay && QCoreApplication::instance()) {
            const QStringList strings{message, moreInfo};
            QTimer::singleShot(0, QCoreApplication::instance(),
                               [strings] { MGAlert::sharedInstance().giveAlertWithStrings(strings); });
        }
    } else {
        logAlert(request);
    }

    if (!answer)
        return 0;
    if (suppressFutureAlerts)
        *suppressFutureAlerts = answer->suppress;
    return answer->button;
}

void MGAlert::startAlertMessage(const QString &message, const QString &moreInfo,
                                const QStringList &buttonStrings, bool showSuppressButton,
                                QObject *hostWindow, SheetHandler done)
{
    Request request;
    request.message = message;
    request.moreInfo = moreInfo;
    request.buttonStrings = buttonStrings;
    request.showSuppressButton = showSuppressButton;
    if (m_recording)
        m_shown.append(request);

    if (!m_nextAnswers.isEmpty()) {
        const Answer answer = m_nextAnswers.takeFirst();
        if (done)
            done(answer.button, answer.suppress);
        return;
    }
    if (m_presenter) {
        m_presenter->runSheet(request, hostWindow, std::move(done));
        return;
    }
    logAlert(request);
    if (done)
        done(0, false);
}

void MGAlert::giveAlertWithStrings(const QStringList &strings)
{
    giveAlertMessage(strings.value(0), strings.value(1), QStringList(), nullptr, false);
}

bool MGAlert::isAlertActive()
{
    return sharedInstance().m_nesting != 0;
}

void MGAlert::setNextAnswer(int button, bool suppress)
{
    m_nextAnswers.append(Answer{button, suppress});
}

bool OkToProceed(const QString &title, const QString &text)
{
    return MGAlert::sharedInstance().giveAlertMessage(title, text,
                                                      {QStringLiteral("OK"), QStringLiteral("Cancel")}) == 0;
}
