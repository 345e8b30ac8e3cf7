// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include <QSignalSpy>
#include <QTest>

#include "msp.h"

using namespace simulator;
using Info = MSPInfo;
using Client = MSPClient;

namespace {

QString text(const MspModel::Events &events)
{
    QStringList all;
    for (const MspModel::Event &event : events)
        all.append(QStringLiteral("%1/%2").arg(event.event).arg(event.code));
    return all.join(QLatin1Char(' '));
}

} // namespace

class TstMsp : public QObject
{
    Q_OBJECT
private slots:
    void command_isObeyedInItsStatesOnly_data();
    void command_isObeyedInItsStatesOnly();
    void shot_goesThroughTheHardStates();
    void pressInAnotherState_opensNothingAndReleasesSilently();
    void abort_closesTheOpenShutter();
    void fault_setsItsFlagAndNeedsAcknowledgement_data();
    void fault_setsItsFlagAndNeedsAcknowledgement();
    void shock_setsTheFlagUntilReset();
    void unknownCode_isAnEventOnly();
    void failingShutter_reportsAFault();
    void refusedCommand_isRefusedInEveryState();
    void dac_takesNumbersInRange();
    void server_answersAndSendsEvents();
};

void TstMsp::command_isObeyedInItsStatesOnly_data()
{
    QTest::addColumn<int>("command");
    QTest::addColumn<QVector<int>>("obeyed"); // states, with the state that follows
    using States = QVector<int>;
    const int s = Info::STANDBY, rh = Info::READY_HARD, oh = Info::SHUTTER_OPEN_HARD, e = Info::ERROR,
              rs = Info::READY_SOFT, os = Info::SHUTTER_OPEN_SOFT;
    const States stay = {s, s, rh, rh, oh, oh, e, e, rs, rs, os, os};
    QTest::newRow("LIGHT_ON") << int(Client::LIGHT_ON) << stay;
    QTest::newRow("LIGHT_OFF") << int(Client::LIGHT_OFF) << stay;
    QTest::newRow("RESET_SHOCK") << int(Client::RESET_SHOCK) << stay;
    QTest::newRow("RUN_HARD") << int(Client::RUN_HARD) << States{s, rh, rh, rh, rs, rh};
    QTest::newRow("RUN_SOFT") << int(Client::RUN_SOFT) << States{s, rs, rh, rs, rs, rs};
    QTest::newRow("SHUT_OPEN") << int(Client::SHUT_OPEN) << States{rs, os};
    QTest::newRow("SHUT_CLOSE") << int(Client::SHUT_CLOSE) << States{os, rs};
    QTest::newRow("ABORT") << int(Client::ABORT) << States{s, s, rh, s, oh, s, rs, s, os, s};
    QTest::newRow("ACK_ERROR") << int(Client::ACK_ERROR) << States{e, s};
    QTest::newRow("MEAS_DONE") << int(Client::MEAS_DONE) << States{oh, rh};
    QTest::newRow("NB_COMMANDS") << int(Client::NB_COMMANDS) << States{};
    QTest::newRow("unknown") << 99 << States{};
}

void TstMsp::command_isObeyedInItsStatesOnly()
{
    QFETCH(int, command);
    QFETCH(QVector<int>, obeyed);
    for (int state = Info::STANDBY; state <= Info::SHUTTER_OPEN_SOFT; ++state) {
        MspModel model;
        model.info.setState(static_cast<Info::MSPState>(state));
        MspModel::Events events;
        int expected = -1;
        for (int i = 0; i < obeyed.size(); i += 2) {
            if (obeyed.at(i) == state)
                expected = obeyed.at(i + 1);
        }
        const bool accepted = model.execute(static_cast<Client::MSPCommand>(command), QString(), events);
        QVERIFY2(accepted == (expected >= 0), qPrintable(QString::number(state)));
        QCOMPARE(int(model.info.state()), accepted ? expected : state);
    }
}

void TstMsp::shot_goesThroughTheHardStates()
{
    MspModel model;
    MspModel::Events events;
    QVERIFY(model.execute(Client::RUN_HARD, QString(), events));
    QVERIFY(events.isEmpty());
    QVERIFY(model.press(events));
    QCOMPARE(text(events), QStringLiteral("1/0"));
    QCOMPARE(model.info.state(), Info::SHUTTER_OPEN_HARD);
    QVERIFY(model.info.shutterPosition());
    QVERIFY(!model.press(events));
    events.clear();
    QVERIFY(model.release(events));
    QCOMPARE(text(events), QStringLiteral("5/0"));
    // The shutter waits for the end of the measure, not for the finger.
    QVERIFY(model.shutterOpen());
    events.clear();
    QVERIFY(model.execute(Client::MEAS_DONE, QString(), events));
    QCOMPARE(text(events), QStringLiteral("2/0"));
    QCOMPARE(model.info.state(), Info::READY_HARD);
    QVERIFY(!model.info.shutterPosition());
    QVERIFY(!model.release(events));
}

void TstMsp::pressInAnotherState_opensNothingAndReleasesSilently()
{
    for (const auto state : {Info::STANDBY, Info::READY_SOFT, Info::ERROR}) {
        MspModel model;
        model.info.setState(state);
        MspModel::Events events;
        QVERIFY(model.press(events));
        QVERIFY(model.release(events));
        QVERIFY(events.isEmpty());
        QCOMPARE(model.info.state(), state);
    }
}

void TstMsp::abort_closesTheOpenShutter()
{
    MspModel model;
    MspModel::Events events;
    model.execute(Client::RUN_HARD, QString(), events);
    model.press(events);
    events.clear();
    QVERIFY(model.execute(Client::ABORT, QString(), events));
    QCOMPARE(text(events), QStringLiteral("2/0"));
    QCOMPARE(model.info.state(), Info::STANDBY);
    QVERIFY(!model.shutterOpen());
}

void TstMsp::fault_setsItsFlagAndNeedsAcknowledgement_data()
{
    QTest::addColumn<int>("code");
    QTest::newRow("shutter") << 2;
    QTest::newRow("shock detector") << 3;
    QTest::newRow("DAC") << 4;
    QTest::newRow("high voltage") << 5;
}

void TstMsp::fault_setsItsFlagAndNeedsAcknowledgement()
{
    QFETCH(int, code);
    MspModel model;
    MspModel::Events events;
    model.execute(Client::RUN_HARD, QString(), events);
    model.press(events);
    events.clear();
    model.happen(Client::SYS_ERR, short(code), events);
    QCOMPARE(text(events), QStringLiteral("2/0 0/%1").arg(code));
    QCOMPARE(model.info.state(), Info::ERROR);
    const auto flags = [&model] {
        return QVector<bool>{model.info.shutter(), model.info.shockDetector(), model.info.DAC(),
                             model.info.highVoltage()};
    };
    QCOMPARE(flags().indexOf(true), code - 2);
    QCOMPARE(flags().count(true), 1);
    QVERIFY(!model.execute(Client::RUN_HARD, QString(), events));
    QVERIFY(!model.execute(Client::ABORT, QString(), events));
    QVERIFY(model.execute(Client::ACK_ERROR, QString(), events));
    QCOMPARE(flags().count(true), 0);
    QCOMPARE(model.info.state(), Info::STANDBY);
}

void TstMsp::shock_setsTheFlagUntilReset()
{
    for (const short code : {short(0), short(1)}) {
        MspModel model;
        MspModel::Events events;
        model.happen(Client::SYS_ERR, code, events);
        QCOMPARE(text(events), QStringLiteral("0/%1").arg(code));
        QVERIFY(model.info.shock());
        QCOMPARE(model.info.state(), Info::STANDBY);
        QVERIFY(model.execute(Client::RESET_SHOCK, QString(), events));
        QVERIFY(!model.info.shock());
    }
}

void TstMsp::unknownCode_isAnEventOnly()
{
    MspModel model;
    MspModel::Events events;
    model.happen(Client::SYS_ERR, 6, events);
    model.happen(static_cast<Client::MSPEvent>(77), 3, events);
    model.happen(Client::PROBE_ON, 0, events);
    QCOMPARE(text(events), QStringLiteral("0/6 77/3 4/0"));
    QCOMPARE(model.info.state(), Info::STANDBY);
}

void TstMsp::failingShutter_reportsAFault()
{
    MspModel model;
    MspModel::Events events;
    model.shutterFailures = 1;
    model.execute(Client::RUN_HARD, QString(), events);
    QVERIFY(model.press(events));
    QCOMPARE(text(events), QStringLiteral("0/2"));
    QCOMPARE(model.info.state(), Info::ERROR);
    QVERIFY(model.info.shutter());
    events.clear();
    QVERIFY(model.release(events));
    QVERIFY(events.isEmpty());
    model.execute(Client::ACK_ERROR, QString(), events);
    model.execute(Client::RUN_HARD, QString(), events);
    QVERIFY(model.press(events));
    QCOMPARE(text(events), QStringLiteral("1/0"));
}

void TstMsp::refusedCommand_isRefusedInEveryState()
{
    MspModel model;
    model.refused = {Client::RUN_HARD};
    MspModel::Events events;
    QVERIFY(!model.execute(Client::RUN_HARD, QString(), events));
    QCOMPARE(model.info.state(), Info::STANDBY);
    QVERIFY(model.execute(Client::RUN_SOFT, QString(), events));
}

void TstMsp::dac_takesNumbersInRange()
{
    MspModel model;
    MspModel::Events events;
    QVERIFY(model.execute(Client::SET_DAC, QStringLiteral("0"), events));
    QVERIFY(model.execute(Client::SET_DAC, QStringLiteral("4095"), events));
    for (const char *wrong : {"", "-1", "4096", "abc"})
        QVERIFY2(!model.execute(Client::SET_DAC, QString::fromLatin1(wrong), events), wrong);
}

void TstMsp::server_answersAndSendsEvents()
{
    const QTemporaryDir directory;
    qputenv("HALVAR_MSP_SERVER", directory.filePath(QStringLiteral("msp")).toUtf8());
    Msp msp;
    QVERIFY(msp.start());
    QSignalSpy executed(&msp, &Msp::executed);
    MSPClient client;
    QStringList log;
    connect(&client, &MSPClient::msp_success, this,
            [&log](bool ok) { log.append(ok ? QStringLiteral("ok") : QStringLiteral("refused")); });
    connect(&client, &MSPClient::msp_event, this, [&log](MSPClient::MSPEvent event, short code) {
        log.append(QStringLiteral("%1/%2").arg(event).arg(code));
    });
    connect(&client, &MSPClient::msp_info, this, [&log](const MSPInfo &info) {
        log.append(QStringLiteral("%1 %2 %3").arg(info.state()).arg(info.fwVersion, info.MSPVersion));
    });
    QTRY_COMPARE(msp.clientCount(), 1);
    client.send(MSPClient::MEAS_DONE, QString());
    client.send(MSPClient::RUN_HARD, QString());
    QTRY_COMPARE(log.size(), 2);
    QVERIFY(msp.press());
    client.info();
    QTRY_COMPARE(log.size(), 4);
    QCOMPARE(log,
             QStringList({QStringLiteral("refused"), QStringLiteral("ok"), QStringLiteral("1/0"),
                          QStringLiteral("4 2.4.1 1.3.0")}));
    client.send(MSPClient::MEAS_DONE, QString());
    QTRY_COMPARE(log.size(), 6);
    // The client tells an answer when it is back in its event loop, an event at once.
    QVERIFY(log.mid(4).contains(QStringLiteral("ok")));
    QVERIFY(log.mid(4).contains(QStringLiteral("2/0")));
    QCOMPARE(msp.commands().value(QStringLiteral("RUN_HARD")), 1);
    QCOMPARE(msp.refusals().value(QStringLiteral("MEAS_DONE")), 1);
    QCOMPARE(msp.infoRequests(), 1);
    QCOMPARE(executed.size(), 3);

    msp.die();
    QVERIFY(!msp.isAlive());
    client.send(MSPClient::LIGHT_ON, QString());
    QTRY_COMPARE(log.size(), 7);
    QCOMPARE(log.last(), QStringLiteral("refused"));
    QVERIFY(msp.start());
    QTRY_COMPARE(msp.clientCount(), 1);
}

QTEST_GUILESS_MAIN(TstMsp)
#include "tst_msp.moc"
