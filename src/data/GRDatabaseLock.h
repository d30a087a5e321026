#pragma once

#include <QLockFile>
#include <QString>

// One writer per data folder: the copy of the program that holds the lock file "Groceries.lock"
// may save the list; another copy started on the same folder is told who holds it. The lock of a
// copy that crashed on this computer is taken over; one held from another computer never expires
// by age, because a shared home folder can be in use there for days.
class GRDatabaseLock
{
public:
    enum class Result
    {
        Acquired,
        HeldElsewhere,
        Unavailable, // the lock file can't be made here (a read-only folder, say)
    };

    explicit GRDatabaseLock(const QString &folder);

    Result acquire();
    bool isLocked() const { return m_lock.isLocked(); }
    QString folder() const { return m_folder; }
    QString path() const { return m_path; }
    // "process 1234 on host" of the copy that holds the lock, after HeldElsewhere.
    QString holder() const { return m_holder; }

private:
    QString m_folder;
    QString m_path;
    QLockFile m_lock;
    QString m_holder;
};
