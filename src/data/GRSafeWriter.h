#pragma once

#include <QByteArray>
#include <QString>

class GRFileOps;

// Replaces a file without ever leaving it half-written: the new text goes to a flushed
// temporary file in the same folder, the current file gets a second name as the backup, and
// the temporary file is renamed over the original. Whatever step fails, the original file keeps
// its bytes and the temporary file is removed.
class GRSafeWriter
{
public:
    enum Failure
    {
        NoFailure,
        WriteFailed,  // the new text could not be written or put in place
        BackupFailed, // the current file could not be kept as the backup
    };

    explicit GRSafeWriter(GRFileOps &ops) : m_ops(ops) {}

    bool save(const QString &path, const QString &backupPath, const QByteArray &bytes);

    Failure failure() const { return m_failure; }
    QString reason() const { return m_reason; }
    // After a failure once the new file was in place, putting the backup back failed too.
    bool restoreFailed() const { return m_restoreFailed; }
    QString restoreReason() const { return m_restoreReason; }

    static constexpr qint64 ChunkSize = 1 << 20;

private:
    bool writeTemporary(const QString &folder, const QString &baseName, const QByteArray &bytes,
                        QString *temporaryPath);
    bool fail(Failure failure, const QString &reason);

    GRFileOps &m_ops;
    Failure m_failure = NoFailure;
    QString m_reason;
    bool m_restoreFailed = false;
    QString m_restoreReason;
};
