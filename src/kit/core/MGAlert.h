#pragma once

#include <QList>
#include <QObject>
#include <QString>
#include <QStringList>

#include <functional>
#include <optional>

// The alert service. The answer is the index of the button pressed (0 for the first title).
// The widget side (MGAlertController) installs itself as the presenter; without a presenter,
// as in command-line use and core tests, alerts are logged and answer 0. Tests queue answers.
class MGAlert
{
public:
    struct Request
    {
        QString message;
        QString moreInfo;
        QStringList buttonStrings;
        bool showSuppressButton = false;
    };
    struct Answer
    {
        int button = 0;
        bool suppress = false;
    };
    using SheetHandler = std::function<void(int answer, bool suppress)>;

    class Presenter
    {
    public:
        virtual ~Presenter() = default;
        // Runs the alert application-modal; std::nullopt when it could not be run.
        virtual std::optional<Answer> runModal(const Request &request) = 0;
        // Runs the alert window-modal on hostWindow and calls done when it ends.
        virtual void runSheet(const Request &request, QObject *hostWindow, SheetHandler done) = 0;
    };

    static MGAlert &sharedInstance();

    int giveAlertMessage(const QString &message, const QString &moreInfo, const QStringList &buttonStrings,
                         bool *suppressFutureAlerts = nullptr);
    int giveAlertMessage(const QString &message, const QString &moreInfo, const QStringList &buttonStrings,
                         bool *suppressFutureAlerts, bool allowDelay);
    void startAlertMessage(const QString &message, const QString &moreInfo, const QStringList &buttonStrings,
                           bool showSuppressButton, QObject *hostWindow, SheetHandler done);
    void giveAlertWithStrings(const QStringList &strings);
    static bool isAlertActive();

    void setPresenter(Presenter *presenter) { m_presenter = presenter; }
    Presenter *presenter() const { return m_presenter; }

    // Test seams: queued answers are used, first in first out, instead of showing anything; while
    // recording, every alert asked for is kept.
    void setNextAnswer(int button, bool suppress = false);
    void clearNextAnswers() { m_nextAnswers.clear(); }
    void setRecordingAlerts(bool recording) { m_recording = recording; }
    const QList<Request> &shownAlerts() const { return m_shown; }
    void clearShownAlerts() { m_shown.clear(); }

private:
    MGAlert() = default;

    Presenter *m_presenter = nullptr;
    QList<Answer> m_nextAnswers;
    QList<Request> m_shown;
    bool m_recording = false;
    int m_nesting = 0;
};

// Asks with "OK" and "Cancel"; true for "OK".
bool OkToProceed(const QString &title, const QString &text);
