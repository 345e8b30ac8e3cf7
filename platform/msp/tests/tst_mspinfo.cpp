// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include <QMetaEnum>
#include <QTest>

#include <mspclient.h>
#include <mspinfo.h>

class TstMspInfo : public QObject
{
    Q_OBJECT
private slots:
    void fresh_hasNoFaultAndIsInStandby();
    void setters_changeTheirOwnFlagOnly();
    void debugStream_showsEverything();
    void debugStream_showsTheNumberOfAnUnknownState();
    void debugStream_leavesTheStreamsSpacing();
    void states_haveTheMicrocontrollersNumbers();
    void commandsAndEvents_haveTheMicrocontrollersNumbers();
    void metaTypes_areRegisteredUnderTheirNames();
};

void TstMspInfo::fresh_hasNoFaultAndIsInStandby()
{
    const MSPInfo info;
    QVERIFY(info.fwVersion.isEmpty());
    QVERIFY(info.MSPVersion.isEmpty());
    QVERIFY(!info.shock() && !info.shutter() && !info.shockDetector() && !info.DAC());
    QVERIFY(!info.highVoltage() && !info.shutterPosition() && !info.abort() && !info.probe());
    QCOMPARE(info.state(), MSPInfo::STANDBY);
}

void TstMspInfo::setters_changeTheirOwnFlagOnly()
{
    using Setter = void (MSPInfo::*)(bool);
    using Getter = bool (MSPInfo::*)() const;
    const QVector<QPair<Setter, Getter>> flags{
        {&MSPInfo::setShock, &MSPInfo::shock},
        {&MSPInfo::setShutter, &MSPInfo::shutter},
        {&MSPInfo::setShockDetector, &MSPInfo::shockDetector},
        {&MSPInfo::setDAC, &MSPInfo::DAC},
        {&MSPInfo::setHighVoltage, &MSPInfo::highVoltage},
        {&MSPInfo::setShutterPosition, &MSPInfo::shutterPosition},
        {&MSPInfo::setAbort, &MSPInfo::abort},
        {&MSPInfo::setProbe, &MSPInfo::probe},
    };
    for (int set = 0; set < flags.size(); ++set) {
        MSPInfo info;
        (info.*flags.at(set).first)(true);
        for (int read = 0; read < flags.size(); ++read)
            QCOMPARE((info.*flags.at(read).second)(), read == set);
    }
}

void TstMspInfo::debugStream_showsEverything()
{
    MSPInfo info;
    info.fwVersion = QStringLiteral("2.1");
    info.MSPVersion = QStringLiteral("1.4");
    info.setShock(true);
    info.setHighVoltage(true);
    info.setState(MSPInfo::SHUTTER_OPEN_HARD);
    QString text;
    QDebug(&text) << info;
    QCOMPARE(
        text.trimmed(),
        QStringLiteral("MSPInfo(fwVersion \"2.1\", MSPVersion \"1.4\", state SHUTTER_OPEN_HARD, shock true, "
                       "shutter false, shockDetector false, DAC false, highVoltage true, "
                       "shutterPosition false, abort false, probe false)"));
}

void TstMspInfo::debugStream_showsTheNumberOfAnUnknownState()
{
    MSPInfo info;
    info.setState(MSPInfo::MSPState(17));
    QString text;
    QDebug(&text) << info;
    QVERIFY2(text.contains(QStringLiteral(", state 17, ")), qPrintable(text));
}

void TstMspInfo::debugStream_leavesTheStreamsSpacing()
{
    QString text;
    QDebug(&text) << MSPInfo() << 1 << 2;
    QVERIFY2(text.endsWith(QStringLiteral("probe false) 1 2 ")), qPrintable(text));
}

void TstMspInfo::states_haveTheMicrocontrollersNumbers()
{
    QCOMPARE(int(MSPInfo::STANDBY), 2);
    QCOMPARE(int(MSPInfo::READY_HARD), 3);
    QCOMPARE(int(MSPInfo::SHUTTER_OPEN_HARD), 4);
    QCOMPARE(int(MSPInfo::ERROR), 5);
    QCOMPARE(int(MSPInfo::READY_SOFT), 6);
    QCOMPARE(int(MSPInfo::SHUTTER_OPEN_SOFT), 7);
}

void TstMspInfo::commandsAndEvents_haveTheMicrocontrollersNumbers()
{
    const auto keys = [](const QMetaEnum &enumeration) {
        QStringList list;
        for (int i = 0; i < enumeration.keyCount(); ++i)
            list += QStringLiteral("%1=%2").arg(QLatin1String(enumeration.key(i))).arg(enumeration.value(i));
        return list.join(QLatin1Char(' '));
    };
    QCOMPARE(
        keys(QMetaEnum::fromType<MSPClient::MSPCommand>()),
        QStringLiteral("LIGHT_ON=0 LIGHT_OFF=1 RESET_SHOCK=2 RUN_HARD=3 RUN_SOFT=4 SHUT_OPEN=5 SHUT_CLOSE=6 "
                       "ABORT=7 SET_DAC=8 ACK_ERROR=9 MEAS_DONE=10 NB_COMMANDS=11"));
    QCOMPARE(keys(QMetaEnum::fromType<MSPClient::MSPEvent>()),
             QStringLiteral("SYS_ERR=0 SHUT_OPENED=1 SHUT_CLOSED=2 PROBE_OFF=3 PROBE_ON=4 TRIG_OFF=5"));
}

void TstMspInfo::metaTypes_areRegisteredUnderTheirNames()
{
    const MSPClient client;
    QCOMPARE(QMetaType::type("MSPInfo"), qMetaTypeId<MSPInfo>());
    QCOMPARE(QMetaType::type("MSPClient::MSPCommand"), qMetaTypeId<MSPClient::MSPCommand>());
    QCOMPARE(QMetaType::type("MSPClient::MSPEvent"), qMetaTypeId<MSPClient::MSPEvent>());
}

QTEST_GUILESS_MAIN(TstMspInfo)
#include "tst_mspinfo.moc"
