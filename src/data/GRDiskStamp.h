#pragma once

#include <QByteArray>
#include <QString>

// What a file on disk was when the program last read or wrote it, to tell whether another
// program has changed it since. Size, time and inode decide quickly; when they differ, the
// contents decide, so a file touched or rewritten with the same text doesn't count as changed.
class GRDiskStamp
{
public:
    // No stamp taken: matches whatever is on disk.
    GRDiskStamp() = default;
    // The file at path as it is now; a missing file has a stamp too. The bytes read are handed
    // out through contents, so a caller that needs them reads the file once.
    static GRDiskStamp ofFile(const QString &path, QByteArray *contents = nullptr);
    // The file at path just after this program wrote contents to it: nothing is read back.
    static GRDiskStamp ofWritten(const QString &path, const QByteArray &contents);

    bool exists() const { return m_exists; }
    // True when the file at path now holds what this stamp saw; a file that has gone since
    // counts as unchanged, since saving over it loses nothing.
    bool matches(const QString &path) const;

private:
    static GRDiskStamp ofStat(const QString &path);
    static QByteArray digestOf(const QString &path);

    bool m_taken = false;
    bool m_exists = false;
    qint64 m_size = -1;
    qint64 m_modified = 0; // nanoseconds
    quint64 m_inode = 0;
    QByteArray m_digest;
};
