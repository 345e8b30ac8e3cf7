// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <cstdio>

#include <sys/stat.h>
#include <unistd.h>

#include <QsLog.h>
#include <QsLogDest.h>

using QsLogging::DestinationFactory;
using QsLogging::DestinationPtr;

class TstQsLogDest : public QObject
{
    Q_OBJECT
private slots:
    void file_holdsEachLineAtOnce();
    void file_isAppendedTo();
    void fileName_mayHoldAnyLetters();
    void newFile_isItsOwnersOnly();
    void oldFile_keepsItsMode();
    void rotation_keepsTheOldFilesAsked();
    void rotationWithoutOldFiles_keepsTheLastLines();
    void unwritablePath_givesAnInvalidDestination_data();
    void unwritablePath_givesAnInvalidDestination();
    void fullDisk_losesLinesOnly();
    void standardError_receivesTheLines();
    void missingFunction_isInvalidAndSilent();
    void loggersLines_reachTheFile();
};

namespace {

QByteArray content(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("cannot be read");
}

int modeOf(const QString &path)
{
    struct stat status = {};
    return stat(QFile::encodeName(path).constData(), &status) == 0 ? int(status.st_mode & 0777) : -1;
}

} // namespace

void TstQsLogDest::file_holdsEachLineAtOnce()
{
    const QTemporaryDir directory;
    const QString path = directory.filePath(QStringLiteral("log.txt"));
    const DestinationPtr file = DestinationFactory::MakeFileDestination(path);
    QVERIFY(file->isValid());
    file->write(QStringLiteral("Négative %v"), QsLogging::InfoLevel);
    QCOMPARE(content(path), QByteArray("Négative %v\n"));
    file->write(QString(), QsLogging::TraceLevel);
    file->write(QStringLiteral("last"), QsLogging::FatalLevel);
    QCOMPARE(content(path), QByteArray("Négative %v\n\nlast\n"));
}

void TstQsLogDest::file_isAppendedTo()
{
    const QTemporaryDir directory;
    const QString path = directory.filePath(QStringLiteral("log.txt"));
    DestinationFactory::MakeFileDestination(path)->write(QStringLiteral("yesterday"), QsLogging::InfoLevel);
    DestinationFactory::MakeFileDestination(path)->write(QStringLiteral("today"), QsLogging::InfoLevel);
    QCOMPARE(content(path), QByteArray("yesterday\ntoday\n"));
}

void TstQsLogDest::fileName_mayHoldAnyLetters()
{
    const QTemporaryDir directory;
    const QString path = directory.filePath(QStringLiteral("journal de l'été.txt"));
    DestinationFactory::MakeFileDestination(path)->write(QStringLiteral("x"), QsLogging::InfoLevel);
    QCOMPARE(content(path), QByteArray("x\n"));
}

void TstQsLogDest::newFile_isItsOwnersOnly()
{
    const QTemporaryDir directory;
    const mode_t before = umask(0);
    DestinationFactory::MakeFileDestination(directory.filePath(QStringLiteral("log.txt")))
        ->write(QStringLiteral("line"), QsLogging::InfoLevel);
    const DestinationPtr rotated = DestinationFactory::MakeFileDestination(
        directory.filePath(QStringLiteral("rotated.txt")), QsLogging::EnableLogRotation,
        QsLogging::MaxSizeBytes(10), QsLogging::MaxOldLogCount(2));
    for (int i = 0; i < 3; ++i)
        rotated->write(QStringLiteral("long enough"), QsLogging::InfoLevel);
    umask(before);
    const QStringList files = QDir(directory.path()).entryList(QDir::Files);
    QCOMPARE(files.size(), 4);
    for (const QString &file : files)
        QCOMPARE(modeOf(directory.filePath(file)), 0600);
}

void TstQsLogDest::oldFile_keepsItsMode()
{
    const QTemporaryDir directory;
    const QString path = directory.filePath(QStringLiteral("log.txt"));
    DestinationFactory::MakeFileDestination(path)->write(QStringLiteral("yesterday"), QsLogging::InfoLevel);
    QCOMPARE(chmod(QFile::encodeName(path).constData(), 0640), 0);
    DestinationFactory::MakeFileDestination(path)->write(QStringLiteral("today"), QsLogging::InfoLevel);
    QCOMPARE(modeOf(path), 0640);
}

void TstQsLogDest::rotation_keepsTheOldFilesAsked()
{
    const QTemporaryDir directory;
    const DestinationPtr file = DestinationFactory::MakeFileDestination(
        directory.filePath(QStringLiteral("log.txt")), QsLogging::EnableLogRotation,
        QsLogging::MaxSizeBytes(100), QsLogging::MaxOldLogCount(2));
    QVERIFY(file->isValid());
    for (int line = 0; line < 40; ++line)
        file->write(QStringLiteral("line %1 of twenty bytes").arg(line, 2), QsLogging::InfoLevel);
    const QFileInfoList files = QDir(directory.path()).entryInfoList(QDir::Files);
    QCOMPARE(files.size(), 3);
    QByteArray all;
    for (const QFileInfo &info : files) {
        QVERIFY2(info.size() <= 100, qPrintable(info.fileName()));
        all += content(info.filePath());
    }
    QVERIFY(content(directory.filePath(QStringLiteral("log.txt"))).contains("line 39"));
    // 24 bytes a line, 4 lines a file: what is left is the end of the log, without a gap.
    for (int line = 28; line < 40; ++line)
        QVERIFY2(all.contains(QStringLiteral("line %1 ").arg(line).toLatin1()),
                 qPrintable(QString::number(line)));
    QVERIFY(!all.contains("line 27 "));
}

void TstQsLogDest::rotationWithoutOldFiles_keepsTheLastLines()
{
    const QTemporaryDir directory;
    const QString path = directory.filePath(QStringLiteral("log.txt"));
    const DestinationPtr file = DestinationFactory::MakeFileDestination(
        path, QsLogging::EnableLogRotation, QsLogging::MaxSizeBytes(20), QsLogging::MaxOldLogCount(0));
    for (int line = 0; line < 9; ++line)
        file->write(QStringLiteral("line %1").arg(line), QsLogging::InfoLevel);
    QCOMPARE(QDir(directory.path()).entryList(QDir::Files), QStringList{QStringLiteral("log.txt")});
    QCOMPARE(content(path), QByteArray("line 8\n"));
}

void TstQsLogDest::unwritablePath_givesAnInvalidDestination_data()
{
    QTest::addColumn<bool>("rotating");
    QTest::addColumn<QString>("name");
    for (const bool rotating : {false, true}) {
        const QString suffix = rotating ? QStringLiteral(", rotating") : QString();
        QTest::newRow(qPrintable(QStringLiteral("a directory") + suffix))
            << rotating << QStringLiteral("directory");
        QTest::newRow(qPrintable(QStringLiteral("below a file") + suffix))
            << rotating << QStringLiteral("file/log.txt");
        QTest::newRow(qPrintable(QStringLiteral("no name") + suffix)) << rotating << QString();
    }
}

void TstQsLogDest::unwritablePath_givesAnInvalidDestination()
{
    QFETCH(const bool, rotating);
    QFETCH(const QString, name);
    const QTemporaryDir directory;
    QVERIFY(QDir(directory.path()).mkdir(QStringLiteral("directory")));
    QFile file(directory.filePath(QStringLiteral("file")));
    QVERIFY(file.open(QIODevice::WriteOnly));
    const DestinationPtr destination = DestinationFactory::MakeFileDestination(
        name.isEmpty() ? name : directory.filePath(name),
        rotating ? QsLogging::EnableLogRotation : QsLogging::DisableLogRotation);
    QVERIFY(destination);
    QVERIFY(!destination->isValid());
    destination->write(QStringLiteral("lost"), QsLogging::ErrorLevel);
}

void TstQsLogDest::fullDisk_losesLinesOnly()
{
    const DestinationPtr file = DestinationFactory::MakeFileDestination(QStringLiteral("/dev/full"));
    QVERIFY(file->isValid());
    for (int line = 0; line < 3; ++line)
        file->write(QString(100000, QLatin1Char('x')), QsLogging::InfoLevel);
    QVERIFY(file->isValid());
}

void TstQsLogDest::standardError_receivesTheLines()
{
    const QTemporaryDir directory;
    const QString path = directory.filePath(QStringLiteral("stderr.txt"));
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    fflush(stderr);
    const int kept = dup(STDERR_FILENO);
    QVERIFY(dup2(file.handle(), STDERR_FILENO) >= 0);
    DestinationFactory::MakeDebugOutputDestination()->write(QStringLiteral("ERROR x"), QsLogging::ErrorLevel);
    fflush(stderr);
    dup2(kept, STDERR_FILENO);
    close(kept);
    QCOMPARE(content(path), QByteArray("ERROR x\n"));
}

void TstQsLogDest::missingFunction_isInvalidAndSilent()
{
    const DestinationPtr destination = DestinationFactory::MakeFunctorDestination(nullptr);
    QVERIFY(!destination->isValid());
    destination->write(QStringLiteral("lost"), QsLogging::ErrorLevel);
}

void TstQsLogDest::loggersLines_reachTheFile()
{
    const QTemporaryDir directory;
    const QString path = directory.filePath(QStringLiteral("log.txt"));
    const DestinationPtr file = DestinationFactory::MakeFileDestination(path);
    QsLogging::Logger::instance().addDestination(file);
    QLOG_WARN() << "[Halvar Controller]: Durée" << 3;
    QsLogging::Logger::instance().removeDestination(file);
    const QByteArray line = content(path);
    QVERIFY2(line.startsWith("WARN  "), line.constData());
    QVERIFY2(line.endsWith(" [Halvar Controller]: Durée 3 \n"), line.constData());
    QCOMPARE(line.count('\n'), 1);
}

QTEST_GUILESS_MAIN(TstQsLogDest)
#include "tst_qslogdest.moc"
