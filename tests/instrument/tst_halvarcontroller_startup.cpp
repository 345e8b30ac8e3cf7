// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
//
// What the start of a controller asks of its peers and writes to the log, in which order.
#include <QTest>

#include "servicefixture.h"

class TstHalvarControllerStartup : public QObject, private ServiceFixture
{
    Q_OBJECT

private slots:
    void initTestCase() { QVERIFY(publishService()); }
    void init()
    {
        m_home = std::make_unique<TestHome>();
        m_service->nap().reset();
    }
    void cleanup() { endController(); }

    void construction_isTraced();
    void links_comeUpInOrder();
    void information_isAskedForOnce_afterTheBeep();
    void calibrationDate_isToldBeforeTheObserverIsRegistered();
};

void TstHalvarControllerStartup::construction_isTraced()
{
    LogRecorder log;
    m_fixture = std::make_unique<ControllerFixture>(*m_home);
    QCOMPARE(log.count(QStringLiteral("TRACE [Halvar Controller]: HalvarController()")), 1);
    // Nobody is called before the interface asks for the links.
    QCOMPARE(calls(), QStringList());
}

void TstHalvarControllerStartup::links_comeUpInOrder()
{
    m_fixture = std::make_unique<ControllerFixture>(*m_home);
    LogRecorder log;
    m_fixture->controller->init();
    const QStringList expected{
        QStringLiteral("TRACE [Halvar Controller]: initNAP()"),
        QStringLiteral("INFO [Halvar Controller]: * NAP_Server: \"OK\""),
        QStringLiteral("INFO [Halvar Controller]: * Observer manager: \"OK\""),
        QStringLiteral("INFO [Halvar Controller]: * Observer \"OK\""),
    };
    QCOMPARE(log.lines().mid(0, expected.size()), expected);
    QCOMPARE(calls().join(QLatin1Char(' ')), QStringLiteral("getLastCalibrationDate registerObserver"));
    m_fixture.reset();
    QCOMPARE(calls().mid(2).join(QLatin1Char(' ')), QStringLiteral("unregisterObserver"));
}

void TstHalvarControllerStartup::information_isAskedForOnce_afterTheBeep()
{
    m_fixture = std::make_unique<ControllerFixture>(*m_home);
    QFile line(QStringLiteral("/sys/class/gpio/gpio79/value"));
    QVERIFY(line.open(QIODevice::WriteOnly | QIODevice::Truncate));
    QVERIFY(line.write("untouched") > 0);
    line.close();
    QStringList found;
    connect(m_fixture->controller.get(), &HalvarController::msp_info_request, this, [&] {
        QVERIFY(line.open(QIODevice::ReadOnly));
        found.append(line.readAll().startsWith("untouched") ? QStringLiteral("silent")
                                                            : QStringLiteral("beeped"));
        line.close();
    });
    m_fixture->controller->init();
    QCOMPARE(found, QStringList{QStringLiteral("beeped")});
}

void TstHalvarControllerStartup::calibrationDate_isToldBeforeTheObserverIsRegistered()
{
    m_service->nap().setCalibrationDate(tessel::TimeDate(2026, 3, 9));
    m_fixture = std::make_unique<ControllerFixture>(*m_home);
    QStringList told;
    connect(
        m_fixture->controller.get(), &HalvarController::sendLastCalibrationDate, this,
        [&](const QString &date) { told.append(date + QLatin1Char(' ') + calls().join(QLatin1Char(' '))); });
    m_fixture->controller->init();
    QCOMPARE(told, QStringList{QStringLiteral("09-03-2026 getLastCalibrationDate")});
}

QTEST_GUILESS_MAIN(TstHalvarControllerStartup)
#include "tst_halvarcontroller_startup.moc"
