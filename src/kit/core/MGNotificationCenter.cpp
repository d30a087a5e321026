#include "MGNotificationCenter.h"

#include <algorithm>

MGNotificationCenter &MGNotificationCenter::defaultCenter()
{
    static MGNotificationCenter center;
    return center;
}

void MGNotificationCenter::addObserver(const QString &name, QObject *context, Handler handler)
{
    if (!handler)
        return;
    prune();
    Observer observer;
    observer.name = name;
    observer.context = context;
    observer.hasContext = context != nullptr;
    observer.handler = std::move(handler);
    observer.id = m_nextId++;
    m_observers.append(std::move(observer));
}

void MGNotificationCenter::removeObserver(QObject *context)
{
    m_observers.removeIf([context](const Observer &observer) {
        return !isAlive(observer) ||
               (observer.hasContext == (context != nullptr) && observer.context == context);
    });
}

void MGNotificationCenter::removeObserver(QObject *context, const QString &name)
{
    m_observers.removeIf([&](const Observer &observer) {
        return !isAlive(observer) || (observer.hasContext == (context != nullptr) &&
                                      observer.context == context && observer.name == name);
    });
}

void MGNotificationCenter::post(const QString &name, const QVariantMap &userInfo)
{
    // Handlers may add or remove observers (even themselves) or post again, so walk a snapshot of
    // ids and look each one up afresh.
    QList<quint64> ids;
    for (const Observer &observer : std::as_const(m_observers)) {
        if (observer.name == name)
            ids.append(observer.id);
    }
    bool sawDead = false;
    for (quint64 id : std::as_const(ids)) {
        auto it = std::find_if(m_observers.cbegin(), m_observers.cend(),
                               [id](const Observer &observer) { return observer.id == id; });
        if (it == m_observers.cend())
            continue;
        if (!isAlive(*it)) {
            sawDead = true;
            continue;
        }
        const Handler handler = it->handler;
        handler(userInfo);
    }
    if (sawDead)
        prune();
}

void MGNotificationCenter::prune()
{
    m_observers.removeIf([](const Observer &observer) { return !isAlive(observer); });
}
