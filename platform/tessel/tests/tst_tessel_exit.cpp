// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include <QElapsedTimer>
#include <QTest>

#include "peerprocess.h"

class TstTesselExit : public QObject
{
    Q_OBJECT

private slots:
    void processWithTheMiddlewareInUse_endsCleanly_data()
    {
        QTest::addColumn<QString>("mode");
        for (const char *mode :
             {"no-application", "return", "return-amid-binding", "exit", "exit-in-other-thread",
              "application-gone", "next-application", "call-from-a-static", "listen-at-the-end"})
            QTest::newRow(mode) << QString::fromLatin1(mode);
    }
    void processWithTheMiddlewareInUse_endsCleanly()
    {
        QFETCH(QString, mode);
        const PeerProcess peer;
        QVERIFY(peer.port() != 0);
        for (int round = 0; round < 5; ++round) {
            QProcess process;
            process.start(QStringLiteral(TESSELPEER), {mode, QString::fromLatin1(peer.portText())});
            QVERIFY(process.waitForFinished(20000));
            QCOMPARE(process.readAllStandardError(), QByteArray());
            QCOMPARE(process.exitStatus(), QProcess::NormalExit);
            QCOMPARE(process.exitCode(), 0);
        }
        QVERIFY(peer.isRunning());
    }

    void serviceThatEndsTheProcess_endsItCleanly()
    {
        PeerProcess peer;
        const tessel::PService service = peer.bind();
        QVERIFY(service);
        QCOMPARE(callPeer(*service, "exit"), int(tessel::ERR_PEER_GONE));
        QVERIFY(peer.waitForFinished());
        QVERIFY(peer.exitedNormally());
        QCOMPARE(peer.exitCode(), 0);
    }
};

QTEST_GUILESS_MAIN(TstTesselExit)
#include "tst_tessel_exit.moc"
