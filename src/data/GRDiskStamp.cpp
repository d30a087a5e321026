#include "GRDiskStamp.h"

#include <QCryptographicHash>
#include <QFile>

#include <sys/stat.h>

namespace {

bool statFile(const QString &path, struct stat *info)
{
    return ::stat(QFile::encodeName(path).constData(), info) == 0 && S_ISREG(info->st_mode);
}

qint64 nanoseconds(const struct timespec &time)
{
    return qint64(time.tv_sec) * 1000000000 + time.tv_nsec;
}

} // namespace

QByteArray GRDiskStamp::digestOf(const QString &path)
{
    QFile file(path);
    QCryptographicHash hash(QCryptographicHash::Sha256);
    if (!file.open(QIODevice::ReadOnly) || !hash.addData(&file))
        return {};
    return hash.result();
}

GRDiskStamp GRDiskStamp::ofStat(const QString &path)
{
    GRDiskStamp stamp;
    stamp.m_taken = true;
    struct stat info;
    if (!statFile(path, &info))
        return stamp;
    stamp.m_exists = true;
    stamp.m_size = info.st_size;
    stamp.m_modified = nanoseconds(info.st_mtim);
    stamp.m_inode = info.st_ino;
    return stamp;
}

GRDiskStamp GRDiskStamp::ofFile(const QString &path, QByteArray *contents)
{
    GRDiskStamp stamp = ofStat(path);
    QFile file(path);
    if (!stamp.m_exists || !file.open(QIODevice::ReadOnly))
        return stamp;
    const QByteArray bytes = file.readAll();
    if (file.error() != QFileDevice::NoError)
        return stamp;
    stamp.m_digest = QCryptographicHash::hash(bytes, QCryptographicHash::Sha256);
    if (contents)
        *contents = bytes;
    return stamp;
}

GRDiskStamp GRDiskStamp::ofWritten(const QString &path, const QByteArray &contents)
{
    GRDiskStamp stamp = ofStat(path);
    if (stamp.m_exists)
        stamp.m_digest = QCryptographicHash::hash(contents, QCryptographicHash::Sha256);
    return stamp;
}

bool GRDiskStamp::matches(const QString &path) const
{
    struct stat info;
    if (!m_taken || !statFile(path, &info))
        return true;
    if (!m_exists)
        return false;
    if (info.st_size == m_size && nanoseconds(info.st_mtim) == m_modified && info.st_ino == m_inode)
        return true;
    return info.st_size == m_size && !m_digest.isEmpty() && digestOf(path) == m_digest;
}
