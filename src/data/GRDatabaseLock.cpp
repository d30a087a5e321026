#include "GRDatabaseLock.h"

GRDatabaseLock::GRDatabaseLock(const QString &folder)
    : m_folder(folder), m_path(folder + QLatin1String("/Groceries.lock")), m_lock(m_path)
{
    m_lock.setStaleLockTime(0);
}

GRDatabaseLock::Result GRDatabaseLock::acquire()
{
    if (m_lock.isLocked() || m_lock.tryLock(0))
        return Result::Acquired;
    if (m_lock.error() != QLockFile::LockFailedError)
        return Result::Unavailable;
    qint64 pid = 0;
    QString host, application;
    if (m_lock.getLockInfo(&pid, &host, &application))
        m_holder = QStringLiteral("process %1 on %2")
                       .arg(pid)
                       .arg(host.isEmpty() ? QStringLiteral("this computer") : host);
    else
        m_holder = QStringLiteral("another copy of Groceries");
    return Result::HeldElsewhere;
}
