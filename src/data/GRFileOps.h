#pragma once

#include <QString>

// The file-system steps of a safe save, behind one interface so that tests can make any step
// fail the way a full disk or a read-only folder would, whatever the user running them may do.
// Every operation that fails puts the system's reason in *error.
class GRFileOps
{
public:
    virtual ~GRFileOps() = default;

    // Creates a new, empty file with a unique name in folder; its handle, or -1.
    virtual int createTemporary(const QString &folder, const QString &baseName, QString *path,
                                QString *error) = 0;
    // The number of bytes taken, which may be short of size; -1 on error.
    virtual qint64 write(int handle, const char *data, qint64 size, QString *error) = 0;
    virtual bool sync(int handle, QString *error) = 0;
    virtual bool close(int handle, QString *error) = 0;

    virtual bool exists(const QString &path) = 0;
    virtual bool remove(const QString &path, QString *error) = 0;
    // A second name for an existing file.
    virtual bool link(const QString &from, const QString &to, QString *error) = 0;
    // A flushed copy; a half-made copy is removed.
    virtual bool copy(const QString &from, const QString &to, QString *error) = 0;
    // Replaces to atomically when it exists.
    virtual bool rename(const QString &from, const QString &to, QString *error) = 0;
    virtual bool syncFolder(const QString &folder, QString *error) = 0;
};
