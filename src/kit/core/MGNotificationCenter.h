#pragma once

#include <QList>
#include <QObject>
#include <QPointer>
#include <QString>
#include <QVariantMap>

#include <functional>

// Process-internal notifications: observers registered per name, delivered synchronously, in
// registration order, on the posting thread (always the main thread here).
class MGNotificationCenter
{
public:
    using Handler = std::function<void(const QVariantMap &userInfo)>;

    static MGNotificationCenter &defaultCenter();

    // The observation ends when context is destroyed or removeObserver(context) is called.
    void addObserver(const QString &name, QObject *context, Handler handler);
    void removeObserver(QObject *context);
    void removeObserver(QObject *context, const QString &name);
    void post(const QString &name, const QVariantMap &userInfo = {});

private:
    struct Observer
    {
        QString name;
        QPointer<QObject> context;
        bool hasContext = false; // a null context observes until removeObserver(nullptr)
        Handler handler;
        quint64 id;
    };
    static bool isAlive(const Observer &observer) { return !observer.hasContext || observer.context; }
    void prune();

    QList<Observer> m_observers;
    quint64 m_nextId = 1;
};
