// What keeps the list whole around a save: one writer per folder, a question before replacing a
// file another program changed, every file-system fault, and a crash at every step of a save.
#include "GRDatabaseFile.h"
#include "GRDatabaseLock.h"
#include "GRDiskStamp.h"
#include "GRGroceryDatabase.h"
#include "GRPosixFileOps.h"
#include "GRSafeWriter.h"
#include "GRTestSupport.h"
#include "MGAlert.h"

#include <QDir>
#include <QProcess>
#include <QSysInfo>
#include <QTemporaryDir>
#include <QTest>

#include <csignal>
#include <sys/mount.h>
#include <sys/resource.h>
#include <unistd.h>

namespace {

using TS = GRTestSupport;

const QByteArray Older = "the version before the previous one\n";

// Items enough for the text to take more than one write.
QByteArray bigDocument(int items)
{
    QByteArray xml = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<groceries version=\"1\"><stores>"
                     "<store><name>Shop</name></store></stores><categories><category><name>Food</name>"
                     "</category></categories><items>";
    for (int i = 0; i < items; ++i)
        xml += "<item><name>Item " + QByteArray::number(i).rightJustified(6, '0') +
               " with a name long enough to fill the file</name><category>0</category><store>0</store>"
               "</item>";
    return xml + "</items></groceries>";
}

// The text a save of the document writes.
QByteArray savedText(const QByteArray &document)
{
    GRGroceryDatabase database;
    return ReadModernDatabaseData(document, database) ? GroceriesXml(database).toUtf8() : QByteArray();
}

// The real file system with the save's steps numbered. The failing steps fail the way a broken
// device would; at crash point crashAt (one before and one after every step) the process dies, having
// first dropped, for a power cut, the file data not yet flushed.
class StepOps : public GRPosixFileOps
{
public:
    using S = const QString &;
    using P = GRPosixFileOps;

    QList<int> failing;
    bool shortWrites = false; // as a full device takes them
    int crashAt = 0;
    bool powerCut = false;
    int steps = 0;
    int points = 0;

    int createTemporary(S folder, S base, QString *path, QString *e) override
    {
        if (!enter(e))
            return -1;
        const int handle = P::createTemporary(folder, base, path, e);
        if (handle >= 0)
            m_files.append({handle, *path, 0, 0});
        return leave(handle);
    }
    qint64 write(int h, const char *data, qint64 size, QString *e) override
    {
        if (!enter(e))
            return -1;
        const qint64 written = P::write(h, data, shortWrites ? qMin<qint64>(size, 100) : size, e);
        if (File *file = byHandle(h); file && written > 0)
            file->written += written;
        return leave(written);
    }
    bool sync(int h, QString *e) override
    {
        if (!enter(e))
            return false;
        const bool ok = P::sync(h, e);
        if (File *file = byHandle(h); file && ok)
            file->synced = file->written;
        return leave(ok);
    }
    bool close(int h, QString *e) override
    {
        if (!enter(e))
            return false;
        if (File *file = byHandle(h))
            file->handle = -1;
        return leave(P::close(h, e));
    }
    bool remove(S path, QString *e) override
    {
        if (!enter(e))
            return false;
        m_files.removeIf([&](const File &file) { return file.path == path; });
        return leave(P::remove(path, e));
    }
    bool link(S from, S to, QString *e) override { return enter(e) && leave(P::link(from, to, e)); }
    bool copy(S from, S to, QString *e) override { return enter(e) && leave(P::copy(from, to, e)); }
    bool rename(S from, S to, QString *e) override
    {
        if (!enter(e))
            return false;
        const bool ok = P::rename(from, to, e);
        for (File &file : m_files)
            file.path = ok && file.path == from ? to : file.path;
        return leave(ok);
    }
    bool syncFolder(S folder, QString *e) override { return enter(e) && leave(P::syncFolder(folder, e)); }

private:
    struct File
    {
        int handle;
        QString path;
        qint64 written;
        qint64 synced;
    };

    File *byHandle(int handle)
    {
        for (File &file : m_files)
            if (file.handle == handle)
                return &file;
        return nullptr;
    }
    void point()
    {
        if (++points != crashAt)
            return;
        if (powerCut) {
            for (const File &file : std::as_const(m_files))
                if (file.synced < file.written && ::truncate(QFile::encodeName(file.path), file.synced) != 0)
                    std::abort();
        }
        ::raise(SIGKILL);
    }
    bool enter(QString *error)
    {
        point();
        if (!failing.contains(++steps))
            return true;
        if (error)
            *error = QStringLiteral("Injected failure");
        point();
        return false;
    }
    template <typename T> T leave(T result)
    {
        point();
        return result;
    }

    QList<File> m_files;
};

// The child side of the crash test: saves the document in folder and is killed at point k.
int crashingSave(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    TS::initEnvironment();
    GRGroceryDatabase database;
    if (!ReadModernDatabase(QString::fromLocal8Bit(argv[3]), database))
        return 5;
    g_databasePath = QString::fromLocal8Bit(argv[2]) + QLatin1String("/Groceries.xml");
    StepOps ops;
    ops.crashAt = atoi(argv[4]);
    ops.powerCut = qstrcmp(argv[5], "power") == 0;
    SetDatabaseFileOps(&ops);
    return SaveGroceries(database) ? 3 : 4; // the save ran out of points before k
}

// The child side of the stale-lock test: takes the lock and waits to be killed.
int holdLock(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    GRDatabaseLock lock(QString::fromLocal8Bit(argv[2]));
    if (lock.acquire() != GRDatabaseLock::Result::Acquired)
        return 5;
    if (::write(STDOUT_FILENO, "locked\n", 7) != 7)
        return 6;
    ::pause();
    return 0;
}

} // namespace

class TestSaveSafety : public QObject
{
    Q_OBJECT

    std::unique_ptr<QTemporaryDir> m_dir;
    QString m_folder;
    GRGroceryDatabase m_database;

    QString file(const QString &name) const { return m_folder + u'/' + name; }
    QByteArray database() const { return TS::readFile(g_databasePath); }
    QByteArray backup() const { return TS::readFile(DatabaseBackupPath(g_databasePath)); }
    QStringList leftovers() const
    {
        return QDir(m_folder).entryList({QStringLiteral(".Groceries.xml.*")}, QDir::Files | QDir::Hidden);
    }
    // A folder holding the previous version (none when previous is empty) and an older backup.
    void setUpFolder(const QByteArray &previous)
    {
        m_dir = std::make_unique<QTemporaryDir>();
        QVERIFY(m_dir->isValid());
        m_folder = m_dir->filePath(QStringLiteral("Marlowick"));
        QVERIFY(QDir().mkpath(m_folder));
        g_databasePath = file(QStringLiteral("Groceries.xml"));
        QVERIFY(previous.isEmpty() || TS::writeFile(g_databasePath, previous));
        QVERIFY(TS::writeFile(DatabaseBackupPath(g_databasePath), Older));
    }

private slots:
    void initTestCase()
    {
        TS::initEnvironment();
        QCoreApplication::setApplicationName(QStringLiteral("Groceries"));
    }

    void init()
    {
        TS::resetState();
        m_database.clear();
        QVERIFY(ReadModernDatabaseData(TS::sampleDatabase(), m_database));
        setUpFolder("previous version\n");
    }

    void cleanup()
    {
        SetDatabaseFileOps(nullptr);
        if (m_dir)
            ::umount2(qPrintable(m_folder), MNT_DETACH); // a tmpfs a row mounted, if any
    }

    void oneWriterPerFolder()
    {
        auto first = std::make_unique<GRDatabaseLock>(m_folder);
        GRDatabaseLock second(m_folder);
        QCOMPARE(first->acquire(), GRDatabaseLock::Result::Acquired);
        QVERIFY(LockDatabaseFolder(*first)); // taking it again is harmless

        GRLogCapture log;
        QVERIFY(!LockDatabaseFolder(second));
        const QString holder = QStringLiteral("process %1 on %2")
                                   .arg(QCoreApplication::applicationPid())
                                   .arg(QSysInfo::machineHostName());
        QCOMPARE(second.holder(), holder);
        QCOMPARE(TS::alerts(),
                 QStringList{"The grocery list is open elsewhere.|Another copy of Groceries (" + holder +
                             ") has the list open. Only one copy at a time can change it, so "
                             "this one closes and leaves the list as it is."});
        QVERIFY(log.contains(QStringLiteral("is open elsewhere")));
        QCOMPARE(database(), QByteArray("previous version\n"));

        first.reset();
        QCOMPARE(second.acquire(), GRDatabaseLock::Result::Acquired);
    }

    // A copy that was killed holding the lock doesn't keep the list locked, and what its save left
    // half-made goes when the lock is taken over.
    void staleLockIsTakenOver()
    {
        QProcess child;
        child.start(QCoreApplication::applicationFilePath(), {QStringLiteral("--hold-lock"), m_folder});
        QVERIFY(child.waitForReadyRead(20000));
        QCOMPARE(child.readAll(), QByteArray("locked\n"));
        GRDatabaseLock lock(m_folder);
        QCOMPARE(lock.acquire(), GRDatabaseLock::Result::HeldElsewhere);
        child.kill();
        QVERIFY(child.waitForFinished(20000));

        QVERIFY(TS::writeFile(file(QStringLiteral(".Groceries.xml.a1B2c3D4")), "half a save"));
        QVERIFY(LockDatabaseFolder(lock));
        QVERIFY(lock.isLocked());
        QCOMPARE(leftovers(), QStringList());
        QCOMPARE(QDir(m_folder).entryList(QDir::Files),
                 (QStringList{"Groceries.lock", "Groceries.xml", "Groceries~.xml"}));
    }

    void changedOnDiskAsksFirst_data()
    {
        QTest::addColumn<QString>("change"); // what another program does after the list was read
        QTest::addColumn<int>("answer");     // 1: "Save Anyway"
        QTest::addColumn<bool>("asked");
        QTest::addColumn<bool>("saved");
        QTest::newRow("nothing") << "" << -1 << false << true;
        QTest::newRow("same text written again") << "rewrite" << -1 << false << true;
        QTest::newRow("removed") << "remove" << -1 << false << true;
        QTest::newRow("changed, cancelled") << "change" << 0 << true << false;
        QTest::newRow("changed, saved anyway") << "change" << 1 << true << true;
        QTest::newRow("made where there was none") << "create" << 0 << true << false;
    }

    void changedOnDiskAsksFirst()
    {
        QFETCH(QString, change);
        QFETCH(int, answer);
        QFETCH(bool, asked);
        QFETCH(bool, saved);

        QVERIFY(TS::writeFile(g_databasePath, TS::sampleDatabase()));
        if (change == QLatin1String("create"))
            QVERIFY(QFile::remove(g_databasePath));
        GRGroceryDatabase opened;
        QCOMPARE(OpenGroceryDatabase(opened, m_folder, [](bool) { return int(GRTemplateVegan); }),
                 change == QLatin1String("create") ? GROpenResult::Created : GROpenResult::Loaded);
        const QByteArray other = "another program's text\n";
        QTest::qWait(5); // a later modification time
        if (change == QLatin1String("rewrite"))
            QVERIFY(TS::writeFile(g_databasePath, database()));
        else if (change == QLatin1String("remove"))
            QVERIFY(QFile::remove(g_databasePath));
        else if (!change.isEmpty())
            QVERIFY(TS::writeFile(g_databasePath, other));
        const QByteArray before = database();

        g_dirty = true;
        if (answer >= 0)
            MGAlert::sharedInstance().setNextAnswer(answer);
        GRLogCapture log;
        QCOMPARE(SaveGroceries(m_database), saved);
        const QStringList question{
            "The groceries database changed on disk.|Another program changed \u201CGroceries.xml\u201D since "
            "Groceries read it. If you save, this list replaces those changes; the file as it is now is kept "
            "as \u201CGroceries~.xml\u201D.|Cancel|Save Anyway"};
        QCOMPARE(TS::alerts(), asked ? question : QStringList());
        QCOMPARE(log.contains(QStringLiteral("changed on disk since it was read")), asked);
        QCOMPARE(database(), saved ? GroceriesXml(m_database).toUtf8() : before);
        QCOMPARE(g_dirty, !saved);
        if (saved && !before.isEmpty())
            QCOMPARE(backup(), before);

        // What this copy wrote itself is no change.
        if (saved) {
            MGAlert::sharedInstance().clearShownAlerts();
            QVERIFY(SaveGroceries(m_database));
            QCOMPARE(TS::alerts(), QStringList());
        }
    }

    // Every fault the file system can throw at a save: either the save goes through whole, or it
    // is refused with the alert and log line and nothing of the previous version is lost.
    void faultsLoseNothing_data()
    {
        QTest::addColumn<QString>("fault");
        QTest::addColumn<bool>("hasPrevious");
        QTest::newRow("every step and pair of steps") << "steps" << true;
        QTest::newRow("every step and pair of steps, first save") << "steps" << false;
        QTest::newRow("short writes") << "short" << true;
        QTest::newRow("full disk") << "full" << true;
        QTest::newRow("read-only folder") << "readonly" << true;
        QTest::newRow("folder in place of the database") << "folder" << false;
        QTest::newRow("folder in place of the backup") << "backupFolder" << true;
        QTest::newRow("database is a symbolic link") << "symlink" << true;
    }

    void faultsLoseNothing()
    {
        QFETCH(QString, fault);
        QFETCH(bool, hasPrevious);
        const QByteArray previous = hasPrevious ? QByteArray("previous version\n") : QByteArray();
        const QByteArray text = savedText(bigDocument(800)); // more than the full disk takes
        m_database.clear();
        QVERIFY(ReadModernDatabaseData(bigDocument(800), m_database));

        // The steps of a sound save, then each of them failing alone and with each later one.
        StepOps counter;
        SetDatabaseFileOps(&counter);
        setUpFolder(previous);
        QVERIFY(SaveGroceries(m_database));
        QList<QList<int>> faults{{}};
        for (int n = 1; fault == QLatin1String("steps") && n <= counter.steps; ++n) {
            faults.append(QList<int>{n});
            for (int m = n + 1; m <= counter.steps; ++m)
                faults.append(QList<int>{n, m});
        }
        if (faults.size() > 1)
            faults.removeFirst();

        int refused = 0;
        qint64 lost = 0;
        for (const QList<int> &failing : std::as_const(faults)) {
            setUpFolder(previous);
            TS::resetState();
            StepOps ops;
            ops.failing = failing;
            ops.shortWrites = fault == QLatin1String("short");
            SetDatabaseFileOps(&ops);
            QString target = g_databasePath;
            rlimit limit{};
            getrlimit(RLIMIT_FSIZE, &limit);
            const rlimit original = limit;
            if (fault == QLatin1String("full") || fault == QLatin1String("readonly")) {
                // A tmpfs where the test may mount one; otherwise a file-size limit or permissions.
                const bool mounted = ::mount("tmpfs", qPrintable(m_folder), "tmpfs", 0, "size=64k") == 0;
                QVERIFY(!mounted || TS::writeFile(g_databasePath, previous));
                if (mounted && fault == QLatin1String("readonly"))
                    QCOMPARE(::mount(nullptr, qPrintable(m_folder), nullptr, MS_REMOUNT | MS_RDONLY, nullptr),
                             0);
                if (!mounted && fault == QLatin1String("full")) {
                    std::signal(SIGXFSZ, SIG_IGN);
                    limit.rlim_cur = 64 * 1024;
                    QCOMPARE(setrlimit(RLIMIT_FSIZE, &limit), 0);
                }
                if (!mounted && fault == QLatin1String("readonly")) {
                    if (geteuid() == 0)
                        QSKIP("root without the right to mount writes into read-only folders");
                    QFile::setPermissions(m_folder, QFileDevice::ReadOwner | QFileDevice::ExeOwner);
                }
            } else if (fault == QLatin1String("folder")) {
                QVERIFY(QDir().mkpath(g_databasePath));
            } else if (fault == QLatin1String("backupFolder")) {
                QVERIFY(QFile::remove(DatabaseBackupPath(g_databasePath)));
                QVERIFY(QDir().mkpath(DatabaseBackupPath(g_databasePath)));
            } else if (fault == QLatin1String("symlink")) {
                target = m_dir->filePath(QStringLiteral("elsewhere.xml"));
                QVERIFY(QFile::rename(g_databasePath, target));
                QVERIFY(QFile::link(target, g_databasePath));
            }

            g_dirty = true;
            GRLogCapture log;
            const bool saved = SaveGroceries(m_database);
            setrlimit(RLIMIT_FSIZE, &original);
            QFile::setPermissions(m_folder,
                                  QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner);
            const QByteArray now = TS::readFile(target);
            const QString backupPath = DatabaseBackupPath(g_databasePath);
            const bool restoreFailed =
                log.contains("Can't restore database after failure " + backupPath + ": ");
            lost += now == previous || backup() == previous ? 0 : previous.size();
            const QString why = QString::number(failing.value(0)) + u'+' + QString::number(failing.value(1)) +
                                u'\n' + log.lines().join(u'\n');
            if (saved) {
                QCOMPARE(now, text);
                QCOMPARE(backup(), previous.isEmpty() ? Older : previous);
            } else {
                ++refused;
                // Both failures at the last steps leave the new file in place and the old as the backup.
                QVERIFY2(restoreFailed ? now == text && backup() == previous : now == previous,
                         qPrintable(why));
                QCOMPARE(TS::alerts(), QStringList{"Save failed.|I can't save the groceries database."});
                QVERIFY2(log.contains("Can't write database " + g_databasePath + ": ") ||
                             log.contains("Can't rename previous version " + g_databasePath + " to " +
                                          backupPath + ": "),
                         qPrintable(why));
                QVERIFY(g_dirty);
            }
            // A temporary file whose removal failed too goes at the next start.
            QVERIFY2(failing.size() == 2 || leftovers().isEmpty(), qPrintable(why));
            QCOMPARE(QFileInfo(g_databasePath).isSymLink(), fault == QLatin1String("symlink"));
            ::umount2(qPrintable(m_folder), MNT_DETACH);
            GRDatabaseLock lock(m_folder);
            QVERIFY(LockDatabaseFolder(lock));
            QCOMPARE(leftovers(), QStringList());

            // Nothing stays broken: on a sound file system the next save goes through.
            SetDatabaseFileOps(nullptr);
            if (fault == QLatin1String("folder") || fault == QLatin1String("backupFolder"))
                QVERIFY(
                    QDir(fault == QLatin1String("folder") ? g_databasePath : backupPath).removeRecursively());
            QVERIFY2(SaveGroceries(m_database), qPrintable(why));
            QCOMPARE(TS::readFile(target), text);
        }
        qInfo("%lld faults tried, %d saves refused, %lld bytes lost", faults.size(), refused, lost);
        QCOMPARE(lost, 0);
        QCOMPARE(refused > 0, fault != QLatin1String("symlink"));
    }

    // A save killed at every point, before and after each step, with and without losing what
    // was not flushed: the folder always holds the old version or the new one, whole.
    void crashAtEveryStep_data()
    {
        QTest::addColumn<bool>("hasPrevious");
        QTest::newRow("previous version") << true;
        QTest::newRow("first save") << false;
    }

    void crashAtEveryStep()
    {
        QFETCH(bool, hasPrevious);
        const QByteArray older = savedText(TS::sampleDatabase());
        const QByteArray previous = hasPrevious ? savedText(bigDocument(3)) : QByteArray();
        const QByteArray next = bigDocument(9000);
        const QByteArray text = savedText(next);
        QVERIFY(text.size() > GRSafeWriter::ChunkSize);
        const QString source = m_dir->filePath(QStringLiteral("next.xml"));
        QVERIFY(TS::writeFile(source, next));

        int points = 0, recovered = 0;
        for (int k = 1;; ++k) {
            bool ended = false;
            for (const char *mode : {"kill", "power"}) {
                QVERIFY(QDir(m_folder).removeRecursively() && QDir().mkpath(m_folder));
                QVERIFY(previous.isEmpty() || TS::writeFile(g_databasePath, previous));
                QVERIFY(TS::writeFile(DatabaseBackupPath(g_databasePath), older));
                QProcess child;
                child.start(QCoreApplication::applicationFilePath(),
                            {QStringLiteral("--crash-save"), m_folder, source, QString::number(k), mode});
                QVERIFY(child.waitForFinished(60000));
                if (child.exitStatus() == QProcess::NormalExit) {
                    QCOMPARE(child.exitCode(), 3);
                    ended = true;
                    break;
                }
                ++points;
                const QByteArray now = database();
                const bool present = QFile::exists(g_databasePath);
                const bool whole = present ? now == text || (hasPrevious && now == previous) : !hasPrevious;
                QVERIFY2(
                    whole,
                    qPrintable(QStringLiteral("point %1 (%2): %3 bytes").arg(k).arg(mode).arg(now.size())));
                const QByteArray kept = backup();
                QVERIFY(kept.isEmpty() || kept == older || kept == previous);

                // The next start reads what is there and clears what the save left half-made.
                GRDatabaseLock lock(m_folder);
                QVERIFY(LockDatabaseFolder(lock));
                QCOMPARE(leftovers(), QStringList());
                GRGroceryDatabase read;
                GRReadReport report;
                QCOMPARE(ReadModernDatabase(g_databasePath, read, &report), present);
                QVERIFY(!report.damaged());
                QVERIFY(!present || GroceriesXml(read).toUtf8() == now);
                ++recovered;
            }
            if (ended)
                break;
        }
        qInfo("%d/%d crash points recovered", recovered, points);
        QVERIFY(points >= 2 * 16);
        QCOMPARE(recovered, points);
    }
};

int main(int argc, char **argv)
{
    if (argc == 6 && qstrcmp(argv[1], "--crash-save") == 0)
        return crashingSave(argc, argv);
    if (argc == 3 && qstrcmp(argv[1], "--hold-lock") == 0)
        return holdLock(argc, argv);
    QCoreApplication app(argc, argv);
    TestSaveSafety test;
    QTEST_SET_MAIN_SOURCE_PATH
    return QTest::qExec(&test, argc, argv);
}

#include "tst_savesafety.moc"
