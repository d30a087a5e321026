#include "GRPosixFileOps.h"

#include <QFile>
#include <QRandomGenerator>

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

QString reason(int code)
{
    return qt_error_string(code);
}

void setError(QString *error, int code)
{
    if (error)
        *error = reason(code);
}

QByteArray native(const QString &path)
{
    return QFile::encodeName(path);
}

int openRetrying(const QByteArray &path, int flags, mode_t mode = 0)
{
    int fd;
    do
        fd = ::open(path.constData(), flags | O_CLOEXEC, mode);
    while (fd < 0 && errno == EINTR);
    return fd;
}

// Writes all of size or fails; a regular file only takes less than asked when it can't grow.
bool writeAll(int fd, const char *data, qint64 size, QString *error)
{
    while (size > 0) {
        const ssize_t n = ::write(fd, data, size_t(size));
        if (n < 0 && errno == EINTR)
            continue;
        if (n <= 0) {
            setError(error, n < 0 ? errno : ENOSPC);
            return false;
        }
        data += n;
        size -= n;
    }
    return true;
}

} // namespace

GRPosixFileOps &GRPosixFileOps::shared()
{
    static GRPosixFileOps ops;
    return ops;
}

QString GRPosixFileOps::temporaryNameFilter(const QString &baseName)
{
    return QLatin1Char('.') + baseName + QLatin1String(".*");
}

int GRPosixFileOps::createTemporary(const QString &folder, const QString &baseName, QString *path,
                                    QString *error)
{
    static const char letters[] = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789";
    for (int attempt = 0; attempt < 100; ++attempt) {
        QString suffix;
        for (int i = 0; i < 8; ++i)
            suffix += QLatin1Char(letters[QRandomGenerator::global()->bounded(int(sizeof letters - 1))]);
        const QString candidate = folder + u'/' + temporaryNameFilter(baseName).chopped(1) + suffix;
        const int fd = openRetrying(native(candidate), O_WRONLY | O_CREAT | O_EXCL, 0666);
        if (fd >= 0) {
            if (path)
                *path = candidate;
            return fd;
        }
        if (errno != EEXIST) {
            setError(error, errno);
            return -1;
        }
    }
    setError(error, EEXIST);
    return -1;
}

qint64 GRPosixFileOps::write(int handle, const char *data, qint64 size, QString *error)
{
    ssize_t n;
    do
        n = ::write(handle, data, size_t(size));
    while (n < 0 && errno == EINTR);
    if (n < 0)
        setError(error, errno);
    return n;
}

bool GRPosixFileOps::sync(int handle, QString *error)
{
    if (::fsync(handle) == 0)
        return true;
    setError(error, errno);
    return false;
}

bool GRPosixFileOps::close(int handle, QString *error)
{
    // Linux releases the descriptor even when close reports an error, so it is never retried.
    if (::close(handle) == 0 || errno == EINTR)
        return true;
    setError(error, errno);
    return false;
}

bool GRPosixFileOps::exists(const QString &path)
{
    struct stat info;
    return ::lstat(native(path).constData(), &info) == 0;
}

bool GRPosixFileOps::remove(const QString &path, QString *error)
{
    if (::unlink(native(path).constData()) == 0)
        return true;
    setError(error, errno);
    return false;
}

bool GRPosixFileOps::link(const QString &from, const QString &to, QString *error)
{
    if (::link(native(from).constData(), native(to).constData()) == 0)
        return true;
    setError(error, errno);
    return false;
}

bool GRPosixFileOps::copy(const QString &from, const QString &to, QString *error)
{
    const int in = openRetrying(native(from), O_RDONLY);
    if (in < 0) {
        setError(error, errno);
        return false;
    }
    struct stat info;
    const int statError = ::fstat(in, &info) == 0 ? 0 : errno;
    if (statError || !S_ISREG(info.st_mode)) {
        setError(error, statError ? statError : S_ISDIR(info.st_mode) ? EISDIR : EINVAL);
        ::close(in);
        return false;
    }
    const int out = openRetrying(native(to), O_WRONLY | O_CREAT | O_TRUNC, 0666);
    if (out < 0) {
        setError(error, errno);
        ::close(in);
        return false;
    }
    bool ok = true;
    char buffer[65536];
    for (;;) {
        const ssize_t n = ::read(in, buffer, sizeof buffer);
        if (n < 0 && errno == EINTR)
            continue;
        if (n < 0) {
            setError(error, errno);
            ok = false;
            break;
        }
        if (n == 0)
            break;
        if (!writeAll(out, buffer, n, error)) {
            ok = false;
            break;
        }
    }
    ::close(in);
    if (ok)
        ok = sync(out, error);
    if (::close(out) != 0 && ok && errno != EINTR) {
        setError(error, errno);
        ok = false;
    }
    if (!ok)
        ::unlink(native(to).constData());
    return ok;
}

bool GRPosixFileOps::rename(const QString &from, const QString &to, QString *error)
{
    if (::rename(native(from).constData(), native(to).constData()) == 0)
        return true;
    setError(error, errno);
    return false;
}

bool GRPosixFileOps::syncFolder(const QString &folder, QString *error)
{
    const int fd = openRetrying(native(folder), O_RDONLY | O_DIRECTORY);
    if (fd < 0) {
        setError(error, errno);
        return false;
    }
    // Some file systems can't flush a folder and say so with EINVAL; nothing more can be done.
    const bool ok = ::fsync(fd) == 0 || errno == EINVAL;
    if (!ok)
        setError(error, errno);
    ::close(fd);
    return ok;
}
