// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <cerrno>
#include <csignal>
#include <memory>

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include "filereplace.h"

namespace {

/// What the system calls below do while a test wants them to; they stand before the C library's own.
struct SystemCalls
{
    bool watched = false;
    QStringList seen;
    bool interruptWrites = false; ///< every other write() is interrupted, the others take one byte
    bool writeNothing = false;
    bool failFileSync = false;
    bool failDirectorySync = false;
    int syncError = EIO;
};
SystemCalls calls;

int failWith(int error)
{
    errno = error;
    return -1;
}

} // namespace

extern "C" int fsync(int descriptor)
{
    if (calls.watched) {
        struct stat status = {};
        fstat(descriptor, &status);
        const bool directory = S_ISDIR(status.st_mode);
        calls.seen.append(directory ? QStringLiteral("sync-directory") : QStringLiteral("sync-file"));
        if (directory ? calls.failDirectorySync : calls.failFileSync)
            return failWith(calls.syncError);
    }
    return static_cast<int>(syscall(SYS_fsync, descriptor));
}

extern "C" int rename(const char *from, const char *to) noexcept
{
    if (calls.watched)
        calls.seen.append(QStringLiteral("rename"));
    return static_cast<int>(syscall(SYS_renameat2, AT_FDCWD, from, AT_FDCWD, to, 0));
}

extern "C" ssize_t write(int descriptor, const void *bytes, size_t count)
{
    if (calls.interruptWrites) {
        static bool interrupt = false;
        interrupt = !interrupt;
        if (interrupt)
            return failWith(EINTR);
        count = qMin<size_t>(count, 1);
    }
    if (calls.writeNothing)
        return 0;
    return syscall(SYS_write, descriptor, bytes, count);
}

class TstFileReplace : public QObject
{
    Q_OBJECT

private:
    QString path(const QString &name) const { return m_directory->filePath(name); }
    QByteArray content(const QString &name) const
    {
        QFile file(path(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(cannot be read)");
    }
    void put(const QString &name, const QByteArray &bytes) const
    {
        QFile file(path(name));
        QVERIFY(file.open(QIODevice::WriteOnly));
        QCOMPARE(file.write(bytes), qint64(bytes.size()));
    }
    /// -1 when there is no such file.
    int modeOf(const QString &name) const
    {
        struct stat status = {};
        const int found = stat(QFile::encodeName(path(name)).constData(), &status);
        return found == 0 ? int(status.st_mode & 07777) : -1;
    }
    QStringList entries() const
    {
        return QDir(m_directory->path())
            .entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot, QDir::Name);
    }

    std::unique_ptr<QTemporaryDir> m_directory;
    const QString m_name = QStringLiteral("état.xml");

private slots:
    void init()
    {
        calls = SystemCalls();
        m_directory = std::make_unique<QTemporaryDir>();
        QVERIFY(m_directory->isValid());
    }
    void cleanup() { calls = SystemCalls(); }

    void missingFile_isCreated()
    {
        QVERIFY(halvar::replaceFile(path(m_name), "neuf\n"));
        QCOMPARE(entries(), QStringList{m_name});
        QCOMPARE(content(m_name), QByteArray("neuf\n"));
    }

    void oldFile_isReplacedWhole_data()
    {
        QTest::addColumn<QByteArray>("replacement");
        QTest::newRow("shorter") << QByteArray("a");
        QTest::newRow("empty") << QByteArray("");
        QTest::newRow("with null bytes") << QByteArray("a\0b", 3);
        QTest::newRow("5 MB") << QByteArray(5 * 1024 * 1024, 'x');
    }
    void oldFile_isReplacedWhole()
    {
        QFETCH(QByteArray, replacement);
        put(m_name, "the old content");
        QVERIFY(halvar::replaceFile(path(m_name), replacement));
        QCOMPARE(entries(), QStringList{m_name});
        QVERIFY(content(m_name) == replacement);
    }

    void syncsFile_renames_syncsDirectory_inThisOrder()
    {
        calls.watched = true;
        QVERIFY(halvar::replaceFile(path(m_name), "new"));
        QCOMPARE(calls.seen,
                 (QStringList{QStringLiteral("sync-file"), QStringLiteral("rename"),
                              QStringLiteral("sync-directory")}));
    }

    void readerOfTheOldFile_keepsItsContent()
    {
        put(m_name, "old");
        QFile reader(path(m_name));
        QVERIFY(reader.open(QIODevice::ReadOnly | QIODevice::Unbuffered));
        QVERIFY(halvar::replaceFile(path(m_name), "new"));
        QCOMPARE(reader.readAll(), QByteArray("old"));
    }

    void staleTemporaryFile_isOverwritten()
    {
        put(m_name, "old");
        put(m_name + QStringLiteral(".tmp"), "what a power cut left behind, longer than the new content");
        QVERIFY(halvar::replaceFile(path(m_name), "new"));
        QCOMPARE(entries(), QStringList{m_name});
        QCOMPARE(content(m_name), QByteArray("new"));
    }

    void givenTemporaryPath_isTheOneUsed()
    {
        const QString temporary = QStringLiteral("état.tmp");
        put(temporary, "stale");
        QVERIFY(halvar::replaceFile(path(m_name), "new", nullptr, path(temporary)));
        QCOMPARE(entries(), QStringList{m_name});
    }

    void permissions_areKept()
    {
        put(m_name, "old");
        const auto permissions = QFile::ReadOwner | QFile::WriteOwner | QFile::ReadGroup;
        QVERIFY(QFile::setPermissions(path(m_name), permissions));
        QVERIFY(halvar::replaceFile(path(m_name), "new"));
        QCOMPARE(modeOf(m_name), 0640);
    }

    void newFile_isItsOwnersOnly_data()
    {
        QTest::addColumn<int>("mask");
        QTest::newRow("generous mask") << 0;
        QTest::newRow("usual mask") << 022;
        QTest::newRow("mask that takes everything") << 0777;
    }
    void newFile_isItsOwnersOnly()
    {
        QFETCH(int, mask);
        const mode_t before = umask(static_cast<mode_t>(mask));
        const bool replaced = halvar::replaceFile(path(m_name), "new");
        umask(before);
        QVERIFY(replaced);
        QCOMPARE(modeOf(m_name), 0600);
    }

    void newFileForEverybody_isReadByAll_writtenByItsOwner_data() { newFile_isItsOwnersOnly_data(); }
    void newFileForEverybody_isReadByAll_writtenByItsOwner()
    {
        QFETCH(int, mask);
        const mode_t before = umask(static_cast<mode_t>(mask));
        const bool replaced =
            halvar::replaceFile(path(m_name), "new", nullptr, QString(), halvar::Readers::Everybody);
        umask(before);
        QVERIFY(replaced);
        QCOMPARE(modeOf(m_name), 0644);
    }

    void linkInPlaceOfTheTemporaryFile_isRemoved_notFollowed()
    {
        put(QStringLiteral("elsewhere"), "untouched");
        QVERIFY(QFile::link(path(QStringLiteral("elsewhere")), path(m_name + QStringLiteral(".tmp"))));
        QVERIFY(halvar::replaceFile(path(m_name), "new"));
        QCOMPARE(content(QStringLiteral("elsewhere")), QByteArray("untouched"));
        QCOMPARE(content(m_name), QByteArray("new"));
        QVERIFY(!QFileInfo(path(m_name)).isSymLink());
    }

    void pipeInPlaceOfTheTemporaryFile_isRemoved()
    {
        const QByteArray pipe = QFile::encodeName(path(m_name + QStringLiteral(".tmp")));
        QCOMPARE(mkfifo(pipe.constData(), 0600), 0);
        // Without a reader, opening it for writing would wait for ever.
        QVERIFY(halvar::replaceFile(path(m_name), "new"));
        QCOMPARE(entries(), QStringList{m_name});
        QCOMPARE(content(m_name), QByteArray("new"));
    }

    void interruptedAndShortWrites_areContinued()
    {
        calls.interruptWrites = true;
        QVERIFY(halvar::replaceFile(path(m_name), "a content of several bytes"));
        calls.interruptWrites = false;
        QCOMPARE(content(m_name), QByteArray("a content of several bytes"));
    }

    void missingDirectory_isNotOpened()
    {
        halvar::ReplaceFailure failure;
        QVERIFY(!halvar::replaceFile(path(QStringLiteral("none/file")), "new", &failure));
        QVERIFY(!failure.opened);
        QCOMPARE(failure.reason, QStringLiteral("No such file or directory"));
        QCOMPARE(entries(), QStringList());
    }

    void directoryThatTakesNoFiles_isNotOpened()
    {
        // Whoever runs the test, the superuser included, may not create files there.
        halvar::ReplaceFailure failure;
        QVERIFY(!halvar::replaceFile(QStringLiteral("/proc/halvar"), "new", &failure));
        QVERIFY(!failure.opened);
        QVERIFY(!failure.reason.isEmpty());
    }

    void directoryInPlaceOfTheTemporaryFile_isNotOpened()
    {
        put(m_name, "old");
        const QString temporary = m_name + QStringLiteral(".tmp");
        QVERIFY(QDir(m_directory->path()).mkdir(temporary));
        halvar::ReplaceFailure failure;
        QVERIFY(!halvar::replaceFile(path(m_name), "new", &failure));
        QVERIFY(!failure.opened);
        QCOMPARE(failure.reason, QStringLiteral("Is a directory"));
        QCOMPARE(content(m_name), QByteArray("old"));
        QVERIFY(entries().contains(temporary));
    }

    void directoryInPlaceOfTheFile_isNotReplaced()
    {
        QVERIFY(QDir(m_directory->path()).mkpath(m_name + QStringLiteral("/kept")));
        halvar::ReplaceFailure failure;
        QVERIFY(!halvar::replaceFile(path(m_name), "new", &failure));
        QVERIFY(failure.opened);
        QCOMPARE(failure.reason, QStringLiteral("Is a directory"));
        QCOMPARE(entries(), QStringList{m_name});
        QVERIFY(QDir(path(m_name)).exists(QStringLiteral("kept")));
    }

    void nullCharacterInTheName_isRefused()
    {
        put(m_name, "old");
        halvar::ReplaceFailure failure;
        QVERIFY(!halvar::replaceFile(path(m_name) + QChar::Null + QStringLiteral("x"), "new", &failure));
        QVERIFY(!failure.opened);
        QCOMPARE(failure.reason, QStringLiteral("Invalid argument"));
        QCOMPARE(entries(), QStringList{m_name});
        QCOMPARE(content(m_name), QByteArray("old"));
    }

    void fullDisk_leavesTheOldFile()
    {
        put(m_name, "old");
        rlimit before = {};
        QCOMPARE(getrlimit(RLIMIT_FSIZE, &before), 0);
        rlimit small = before;
        small.rlim_cur = 1000;
        const auto previousHandler = std::signal(SIGXFSZ, SIG_IGN);
        QCOMPARE(setrlimit(RLIMIT_FSIZE, &small), 0);
        halvar::ReplaceFailure failure;
        const bool replaced = halvar::replaceFile(path(m_name), QByteArray(1500, 'x'), &failure);
        setrlimit(RLIMIT_FSIZE, &before);
        std::signal(SIGXFSZ, previousHandler);
        QVERIFY(!replaced);
        QVERIFY(failure.opened);
        QCOMPARE(failure.reason, QStringLiteral("File too large"));
        QCOMPARE(entries(), QStringList{m_name});
        QCOMPARE(content(m_name), QByteArray("old"));
    }

    void writeThatTakesNothing_isAFailure()
    {
        put(m_name, "old");
        calls.writeNothing = true;
        halvar::ReplaceFailure failure;
        const bool replaced = halvar::replaceFile(path(m_name), "new", &failure);
        calls.writeNothing = false;
        QVERIFY(!replaced);
        QCOMPARE(failure.reason, QStringLiteral("No space left on device"));
        QCOMPARE(content(m_name), QByteArray("old"));
    }

    void failedSync_leavesTheOldFile()
    {
        put(m_name, "old");
        calls.watched = true;
        calls.failFileSync = true;
        halvar::ReplaceFailure failure;
        QVERIFY(!halvar::replaceFile(path(m_name), "new", &failure));
        QVERIFY(failure.opened);
        QCOMPARE(failure.reason, QStringLiteral("Input/output error"));
        QCOMPARE(calls.seen, QStringList{QStringLiteral("sync-file")});
        QCOMPARE(entries(), QStringList{m_name});
        QCOMPARE(content(m_name), QByteArray("old"));
    }

    void directoryWithoutSync_isNoFailure()
    {
        calls.watched = true;
        calls.failDirectorySync = true;
        QVERIFY(halvar::replaceFile(path(m_name), "new"));
        QCOMPARE(content(m_name), QByteArray("new"));
    }

    void failedDirectorySync_isTold_data()
    {
        QTest::addColumn<int>("error");
        QTest::addColumn<QString>("reason");
        QTest::newRow("input/output error") << EIO << QStringLiteral("Input/output error");
        QTest::newRow("a file system that synchronises no directories") << EINVAL << QString();
        QTest::newRow("a file system that does not know it") << ENOTSUP << QString();
    }
    void failedDirectorySync_isTold()
    {
        QFETCH(int, error);
        QFETCH(QString, reason);
        calls.watched = true;
        calls.failDirectorySync = true;
        calls.syncError = error;
        halvar::ReplaceFailure failure;
        QVERIFY(halvar::replaceFile(path(m_name), "new", &failure));
        QCOMPARE(failure.reason, reason);
        QCOMPARE(bool(failure), !reason.isEmpty());
        QCOMPARE(failure.replaced, !reason.isEmpty());
        QCOMPARE(content(m_name), QByteArray("new"));
    }

    void processKilledAtAnyInstant_leavesOneOfBothFilesWhole()
    {
        const QByteArray first(300000, '1');
        const QByteArray second(200000, '2');
        put(m_name, first);
        for (int round = 0; round < 40; ++round) {
            const pid_t child = fork();
            QVERIFY(child >= 0);
            if (child == 0) {
                for (;;) {
                    halvar::replaceFile(path(m_name), second);
                    halvar::replaceFile(path(m_name), first);
                }
            }
            usleep(static_cast<useconds_t>(500 + 371 * round));
            QCOMPARE(kill(child, SIGKILL), 0);
            QCOMPARE(waitpid(child, nullptr, 0), child);
            const QByteArray left = content(m_name);
            QVERIFY(left == first || left == second);
        }
    }
};

QTEST_APPLESS_MAIN(TstFileReplace)
#include "tst_filereplace.moc"
