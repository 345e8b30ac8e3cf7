// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
//
// With everything running, who could get in: the kernel's own lists of sockets, and the modes of what lies on
// disk.
#include <QDir>
#include <QHostAddress>
#include <QTest>
#include <QtEndian>

#include <sys/stat.h>
#include <unistd.h>

#include "bench.h"
#include "databaseitemlistmodel.h"
#include "halvar-error.h"

namespace {

/// The entries of one of the kernel's lists, their columns apart, without the head line.
QList<QStringList> kernelList(const char *name)
{
    QFile file(QStringLiteral("/proc/net/") + QLatin1String(name));
    if (!file.open(QIODevice::ReadOnly))
        return {};
    QStringList lines = QString::fromUtf8(file.readAll()).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    QList<QStringList> entries;
    for (const QString &line : lines.mid(1))
        entries.append(line.simplified().split(QLatin1Char(' ')));
    return entries;
}

/// "0100007F:0DE3" as an address and a port; the kernel writes words of four bytes in the machine's order.
QPair<QHostAddress, quint16> endpoint(const QString &text)
{
    const QStringList parts = text.split(QLatin1Char(':'));
    const QByteArray words = QByteArray::fromHex(parts.value(0).toLatin1());
    const quint16 port = quint16(parts.value(1).toUInt(nullptr, 16));
    QByteArray bytes;
    for (int word = 0; word + 4 <= words.size(); word += 4) {
        for (int byte = 0; byte < 4; ++byte)
            bytes.append(words.at(Q_BYTE_ORDER == Q_LITTLE_ENDIAN ? word + 3 - byte : word + byte));
    }
    if (bytes.size() == 4)
        return {QHostAddress(qFromBigEndian<quint32>(bytes.constData())), port};
    return {QHostAddress(reinterpret_cast<const quint8 *>(bytes.constData())), port};
}

int modeOf(const QString &path)
{
    struct stat status = {};
    return ::stat(QFile::encodeName(path).constData(), &status) == 0 ? int(status.st_mode & 07777) : -1;
}

constexpr int ColumnLocal = 1;
constexpr int ColumnRemote = 2;
constexpr int ColumnState = 3;
const QString Listening = QStringLiteral("0A");

} // namespace

class TstExposure : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<Bench> m_bench;
    mode_t m_mask = 0;

private slots:
    void initTestCase()
    {
        QVERIFY2(qEnvironmentVariableIsSet("HALVAR_INSTRUMENT"),
                 "Run through simulator/instrument: this test brings a whole instrument up.");
        // The most generous mask: whatever is closed was closed on purpose.
        m_mask = umask(0);
        m_bench = std::make_unique<Bench>();
        QVERIFY(m_bench->start());
    }
    void cleanupTestCase()
    {
        m_bench.reset();
        umask(m_mask);
    }

    void everyAddress_isOfTheLoopback()
    {
        QMap<quint16, QHostAddress> listening;
        int connections = 0;
        for (const char *list : {"tcp", "tcp6"}) {
            for (const QStringList &entry : kernelList(list)) {
                const auto [local, port] = endpoint(entry.value(ColumnLocal));
                QVERIFY2(local.isLoopback(), qPrintable(local.toString()));
                if (entry.value(ColumnState) == Listening) {
                    listening.insert(port, local);
                } else {
                    const QHostAddress remote = endpoint(entry.value(ColumnRemote)).first;
                    QVERIFY2(remote.isLoopback(), qPrintable(remote.toString()));
                    ++connections;
                }
            }
        }
        // The analysis service and the library's observer.
        QCOMPARE(listening.keys(), (QList<quint16>{3555, 3556}));
        QVERIFY(connections > 0);
    }

    void nothingElse_isOnTheNetwork_data()
    {
        QTest::addColumn<QByteArray>("list");
        for (const char *list : {"udp", "udp6", "udplite", "udplite6", "raw", "raw6", "packet"})
            QTest::newRow(list) << QByteArray(list);
    }
    void nothingElse_isOnTheNetwork()
    {
        QFETCH(QByteArray, list);
        if (!QFile::exists(QStringLiteral("/proc/net/") + QString::fromLatin1(list)))
            QSKIP("This kernel does not have that protocol.");
        QCOMPARE(kernelList(list.constData()).size(), 0);
    }

    void localSockets_areTheirOwnersOnly()
    {
        constexpr int columnFlags = 3;
        constexpr int columnPath = 7;
        const QString accepting = QStringLiteral("00010000");
        QStringList names;
        for (const QStringList &entry : kernelList("unix")) {
            if (entry.value(columnFlags) != accepting)
                continue;
            const QString path = entry.value(columnPath);
            // One without a file ("@...") has no mode that could close it.
            QVERIFY2(path.startsWith(QLatin1Char('/')), qPrintable(path));
            names.append(path);
        }
        // A socket is listed by the name that it was bound to, before it was moved to its place.
        QCOMPARE(names.size(), 2);
        const QDir places(QDir::tempPath());
        QStringList sockets = places.entryList({QStringLiteral("halvar-*")}, QDir::System);
        QCOMPARE(sockets.size(), 2);
        for (const QString &socket : sockets) {
            QCOMPARE(modeOf(places.filePath(socket)), 0700);
            struct stat status = {};
            QCOMPARE(::stat(QFile::encodeName(places.filePath(socket)).constData(), &status), 0);
            QCOMPARE(status.st_uid, geteuid());
        }
    }

    void dataFiles_areTheirOwnersOnly()
    {
        Bench &bench = *m_bench;
        bench->setFileName(QStringLiteral("Maison"));
        bench->saveFile();
        bench->error->setShock(true);
        bench.fixture->database.m_LocalItemsListModel->add(QStringLiteral("Cave"), QString());
        QVERIFY(QFile::remove(bench.home.file(QStringLiteral("database/database_unit.xml"))));
        QVERIFY(bench.fixture->database.write());
        QCOMPARE(modeOf(bench.home.path() + QStringLiteral("/files/Maison.xml")), 0600);
        QCOMPARE(modeOf(bench.home.file(QStringLiteral("shock/shock.xml"))), 0600);
        QCOMPARE(modeOf(bench.home.file(QStringLiteral("database/database_unit.xml"))), 0600);
        // For service tools, which need not be the instrument's user.
        QCOMPARE(modeOf(QStringLiteral("/data/lambrik/info.txt")), 0644);
    }
};

QTEST_GUILESS_MAIN(TstExposure)
#include "tst_exposure.moc"
