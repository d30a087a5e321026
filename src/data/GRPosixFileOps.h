#pragma once

#include "GRFileOps.h"

// The real file system, through POSIX calls.
class GRPosixFileOps : public GRFileOps
{
public:
    static GRPosixFileOps &shared();

    // The names createTemporary gives in a folder for baseName, as a wildcard filter.
    static QString temporaryNameFilter(const QString &baseName);

    int createTemporary(const QString &folder, const QString &baseName, QString *path,
                        QString *error) override;
    qint64 write(int handle, const char *data, qint64 size, QString *error) override;
    bool sync(int handle, QString *error) override;
    bool close(int handle, QString *error) override;

    bool exists(const QString &path) override;
    bool remove(const QString &path, QString *error) override;
    bool link(const QString &from, const QString &to, QString *error) override;
    bool copy(const QString &from, const QString &to, QString *error) override;
    bool rename(const QString &from, const QString &to, QString *error) override;
    bool syncFolder(const QString &folder, QString *error) override;
};
