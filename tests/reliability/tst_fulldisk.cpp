// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
//
// Every operation that replaces a file, on a data partition with no room left, or with a little.
#include <QDir>
#include <QTest>

#include <memory>

#include <sys/statvfs.h>

#include "trial.h"

namespace {

constexpr qint64 Page = 4096;
const QString ballast = QStringLiteral("/data/ballast");

qint64 freeBytes()
{
    struct statvfs status = {};
    if (statvfs("/data", &status) != 0)
        qFatal("/data cannot be measured");
    return qint64(status.f_bavail) * qint64(status.f_frsize);
}

/// Leaves \p room bytes of the partition.
void fill(qint64 room)
{
    QFile file(ballast);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Unbuffered))
        qFatal("Cannot write %s", qPrintable(ballast));
    const QByteArray page(Page, 'x');
    while (freeBytes() > room) {
        if (file.write(page) != Page)
            qFatal("Cannot fill /data");
    }
}

} // namespace

class TstFullDisk : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<TestHome> m_home;
    std::unique_ptr<ControllerFixture> m_controller;
    std::vector<std::unique_ptr<Operation>> m_operations;

private slots:
    void initTestCase()
    {
        QVERIFY2(qEnvironmentVariableIsSet("HALVAR_INSTRUMENT") && freeBytes() <= 1024 * 1024,
                 "Run through simulator/instrument --data-size 1048576: this test fills /data.");
        const QByteArray temporary = qgetenv("TMPDIR");
        qputenv("TMPDIR", "/data");
        m_home = std::make_unique<TestHome>();
        qputenv("TMPDIR", temporary);
        QVERIFY(m_home->path().startsWith(QStringLiteral("/data/")));
        m_controller = std::make_unique<ControllerFixture>(*m_home);
        m_operations = allOperations(*m_controller, *m_home);
    }
    void cleanupTestCase()
    {
        qInfo("%d runs, each with another number of free pages", Trial::runs());
        m_operations.clear();
        m_controller.reset();
    }

    void fullPartition_losesNothing_data()
    {
        QTest::addColumn<int>("operation");
        QTest::addColumn<int>("before");
        for (size_t i = 0; i < m_operations.size(); ++i) {
            const QByteArray name = m_operations[i]->name.toUtf8();
            QTest::addRow("%s", name.constData()) << int(i) << int(Trial::Exists);
            QTest::addRow("%s, for the first time", name.constData()) << int(i) << int(Trial::Missing);
        }
    }
    void fullPartition_losesNothing()
    {
        QFETCH(int, operation);
        QFETCH(int, before);
        const Trial trial(*m_operations[size_t(operation)],
                          {QDir::cleanPath(m_home->path()), QStringLiteral("/data/lambrik")},
                          Trial::Before(before));
        QVERIFY2(trial.problem().isEmpty(), qUtf8Printable(trial.problem()));
        const qint64 pages = trial.newContent().size() / Page + 2;
        for (qint64 room = 0; room <= pages; ++room) {
            const QString complaint =
                trial.survivesCause([&] { fill(room * Page); }, [] { QFile::remove(ballast); });
            QVERIFY2(complaint.isEmpty(),
                     qUtf8Printable(QStringLiteral("%1 pages free: ").arg(room) + complaint));
        }
    }

    void fullPartition_isFull()
    {
        fill(0);
        QFile file(QStringLiteral("/data/lambrik/one"));
        QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Unbuffered));
        QCOMPARE(file.write("x"), -1);
        QFile::remove(ballast);
    }
};

QTEST_GUILESS_MAIN(TstFullDisk)
#include "tst_fulldisk.moc"
