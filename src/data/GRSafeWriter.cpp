#include "GRSafeWriter.h"

#include "GRFileOps.h"

#include <QFileInfo>

bool GRSafeWriter::fail(Failure failure, const QString &reason)
{
    m_failure = failure;
    m_reason = reason;
    return false;
}

bool GRSafeWriter::writeTemporary(const QString &folder, const QString &baseName, const QByteArray &bytes,
                                  QString *temporaryPath)
{
    QString error;
    const int handle = m_ops.createTemporary(folder, baseName, temporaryPath, &error);
    if (handle < 0)
        return fail(WriteFailed, error);

    bool ok = true;
    for (qint64 offset = 0; ok && offset < bytes.size(); offset += ChunkSize) {
        const qint64 size = qMin(ChunkSize, bytes.size() - offset);
        const qint64 written = m_ops.write(handle, bytes.constData() + offset, size, &error);
        if (written != size) {
            // A short count is how a full device answers; it is never a partial success.
            ok = fail(WriteFailed, written < 0 ? error
                                               : QStringLiteral("only %1 of %2 bytes were written")
                                                     .arg(offset + written)
                                                     .arg(bytes.size()));
        }
    }
    if (ok && !m_ops.sync(handle, &error))
        ok = fail(WriteFailed, error);
    QString closeError;
    if (!m_ops.close(handle, &closeError) && ok)
        ok = fail(WriteFailed, closeError);
    if (!ok)
        m_ops.remove(*temporaryPath, nullptr);
    return ok;
}

bool GRSafeWriter::save(const QString &path, const QString &backupPath, const QByteArray &bytes)
{
    m_failure = NoFailure;
    m_reason.clear();
    m_restoreFailed = false;
    m_restoreReason.clear();

    const QFileInfo info(path);
    const QString folder = info.absolutePath();
    QString temporaryPath;
    if (!writeTemporary(folder, info.fileName(), bytes, &temporaryPath))
        return false;

    QString error;
    m_ops.remove(backupPath, nullptr);
    const bool hadPrevious = m_ops.exists(path);
    if (hadPrevious && !m_ops.link(path, backupPath, &error) && !m_ops.copy(path, backupPath, &error)) {
        m_ops.remove(temporaryPath, nullptr);
        return fail(BackupFailed, error);
    }

    if (!m_ops.rename(temporaryPath, path, &error)) {
        m_ops.remove(temporaryPath, nullptr);
        return fail(WriteFailed, error);
    }

    if (!m_ops.syncFolder(folder, &error)) {
        fail(WriteFailed, error);
        // The new file is in place but may not survive a crash: go back to the old one.
        QString restoreError;
        const bool restored =
            hadPrevious ? m_ops.rename(backupPath, path, &restoreError) : m_ops.remove(path, &restoreError);
        if (!restored) {
            m_restoreFailed = true;
            m_restoreReason = restoreError;
        }
        return false;
    }
    return true;
}
