// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
//
// What the simulated instrument's panel shows: what each part did last, the traffic of both links, at every
// size.
#include <QFile>
#include <QJsonArray>
#include <QProcess>
#include <QSignalSpy>
#include <QThread>
#include <QtMath>

#include <functional>

#include <mspclient.h>
#include <nap/napserver.h>

#include "eye.h"
#include "panelbench.h"

namespace nap = com::halvar::nap;

namespace {

const QSize Smallest(420, 600);
const QSize Middle(820, 760);
const QSize Usual(1280, 940);

/// The middleware's calls wait for this thread, and so are made on another.
int callService(const std::function<int(const nap::PNAPServer &)> &call)
{
    int result = 12345;
    const std::unique_ptr<QThread> thread(QThread::create([&] {
        nap::PNAPServer service;
        service.bind("nap_server@TCPIP:localhost:3555");
        result = service ? call(service) : tessel::ERR_PEER_GONE;
    }));
    thread->start();
    if (!QTest::qWaitFor([&] { return thread->isFinished(); }, 10000))
        qFatal("the service does not answer");
    return result;
}

} // namespace

class TstSimulatorPanelView : public QObject
{
    Q_OBJECT

private slots:
    void lastDone_tellsOfEachPart();
    void traffic_showsBothLinks();
    void traffic_keepsTheNewestAndFollowsThem();
    void changes_areToldInOnePiece();
    void window_looksRight_data();
    void window_looksRight();
};

void TstSimulatorPanelView::lastDone_tellsOfEachPart()
try {
    PanelBench bench;
    const auto shown = [&](const char *part) {
        return bench.text(QLatin1String(part) + QStringLiteral("What"));
    };
    for (const char *const part : {"beeper", "light", "shutter", "gpio", "shell"})
        QCOMPARE(shown(part), QStringLiteral("rien encore"));

    MSPClient msp;
    QSignalSpy answered(&msp, &MSPClient::msp_success);
    QTRY_COMPARE(bench.status(QStringLiteral("msp.clients")).toInt(), 1);
    msp.send(MSPClient::LIGHT_ON, QString());
    QTRY_COMPARE(shown("light"), QStringLiteral("allumée"));
    msp.send(MSPClient::LIGHT_OFF, QString());
    QTRY_COMPARE(shown("light"), QStringLiteral("éteinte"));
    // What is refused is not done.
    bench.run("mspRefuse", object(R"({"commands": "all"})"));
    msp.send(MSPClient::LIGHT_ON, QString());
    QTRY_COMPARE(answered.size(), 3);
    QTest::qWait(3 * simulator::Panel::PaceMs);
    QCOMPARE(shown("light"), QStringLiteral("éteinte"));
    bench.run("mspRefuse", object(R"({"commands": []})"));
    msp.send(MSPClient::RUN_SOFT, QString());
    msp.send(MSPClient::SHUT_OPEN, QString());
    QTRY_COMPARE(shown("shutter"), QStringLiteral("ouvert"));
    msp.send(MSPClient::SHUT_CLOSE, QString());
    QTRY_COMPARE(shown("shutter"), QStringLiteral("fermé"));

    const auto write = [](const char *file, const char *content) {
        QFile line(QStringLiteral("/sys/class/gpio/") + QLatin1String(file));
        return line.open(QIODevice::WriteOnly) && line.write(content) > 0;
    };
    QVERIFY(write("gpio79/direction", "out\n"));
    QTRY_COMPARE(shown("gpio"), QStringLiteral("gpio79/direction = out"));
    QVERIFY(write("gpio79/value", "1\n"));
    QTRY_COMPARE(shown("gpio"), QStringLiteral("gpio79/value = 1"));
    QCOMPARE(shown("beeper"), QStringLiteral("sonne"));
    QVERIFY(write("gpio79/value", "0\n"));
    QTRY_COMPARE(shown("gpio"), QStringLiteral("gpio79/value = 0"));
    QCOMPARE(shown("beeper"), QStringLiteral("muet, 1 en tout"));

    QCOMPARE(QProcess::execute(QStringLiteral("napwifi"), {QStringLiteral("1")}), 0);
    QTRY_COMPARE(shown("shell"), QStringLiteral("napwifi 1"));
    QCOMPARE(QProcess::execute(QStringLiteral("napssid"), {QStringLiteral("two words")}), 0);
    QTRY_COMPARE(shown("shell"), QStringLiteral("napssid 'two words'"));
    // As long as the one that the instrument begins with.
    QCOMPARE(QProcess::execute(QStringLiteral("napssid"),
                               {QStringLiteral("SIM-0001"), QStringLiteral("instrument-simule")}),
             0);
    QTRY_COMPARE(shown("shell"), QStringLiteral("napssid SIM-0001 instrument-simule"));
    const QJsonObject last = bench.panelWindow->panel().last();
    for (const char *const part : {"beeper", "light", "shutter", "gpio", "shell"})
        QVERIFY(
            !last.value(QLatin1String(part)).toObject().value(QLatin1String("time")).toString().isEmpty());
    for (const QSize &size : {Smallest, Middle, Usual}) {
        bench.resize(size);
        VERIFY_NOTHING_FOUND(complaints(bench.window));
    }
    VERIFY_NOTHING_FOUND(bench.watch.warnings());
} catch (const Failure &failure) {
    QFAIL(qUtf8Printable(failure.text));
}

void TstSimulatorPanelView::traffic_showsBothLinks()
try {
    PanelBench bench;
    bench.run("sample", object(R"({"concentration": 2.4})"));
    MSPClient msp;
    msp.info();
    msp.send(MSPClient::RUN_HARD, QString());
    msp.send(MSPClient::SHUT_OPEN, QString());
    QTRY_VERIFY(bench.passed(QStringLiteral("MSP SHUT_OPEN refused, READY_HARD")));
    QTRY_VERIFY(bench.passed(QStringLiteral("MSP RUN_HARD accepted, READY_HARD")));
    QTRY_COMPARE(bench.status(QStringLiteral("msp.infoRequests")).toInt(), 1);
    bench.run("press");
    QTRY_VERIFY(bench.passed(QStringLiteral("MSP SHUT_OPENED 0")));

    QCOMPARE(callService([](const nap::PNAPServer &service) {
                 return service.startMeasure(nap::MeasureCustomData(), true);
             }),
             0);
    QTRY_VERIFY(bench.passed(QStringLiteral("NAP startMeasure(autoStop: true) = 0")));
    QVERIFY(bench.passed(QStringLiteral("NAP NAP_STATUS IN_PROGRESS")));
    QVERIFY(bench.passed(QStringLiteral("NAP NAP_DETECTION 0.000 ± 0.000")));
    QTRY_VERIFY(bench.passed(QStringLiteral("NAP NAP_SPECTRUM")));
    QTRY_VERIFY(bench.passed(QStringLiteral("NAP NAP_STATUS NOT_STARTED")));

    // One link by itself, both again, none of it.
    const int all = bench.traffic()->rowCount();
    const auto linesOf = [&](const char *link) {
        bench.hand->tap(QStringLiteral("show") + QLatin1String(link));
        for (int row = 0; row < bench.traffic()->rowCount(); ++row) {
            if (!bench.line(row).startsWith(QLatin1String(link)))
                return -1;
        }
        return bench.traffic()->rowCount();
    };
    const int ofMsp = linesOf("MSP");
    const int ofNap = linesOf("NAP");
    QVERIFY(ofMsp >= 4);
    QVERIFY(ofNap >= 5);
    QCOMPARE(ofMsp + ofNap, all);
    QCOMPARE(linesOf(""), all);
    bench.hand->tap(QStringLiteral("clear"));
    QCOMPARE(bench.traffic()->rowCount(), 0);
    VERIFY_NOTHING_FOUND(bench.watch.warnings());
} catch (const Failure &failure) {
    QFAIL(qUtf8Printable(failure.text));
}

void TstSimulatorPanelView::traffic_keepsTheNewestAndFollowsThem()
try {
    PanelBench bench;
    const int limit = simulator::Traffic::Limit;
    const auto send = [&](int first, int count) {
        for (int code = first; code < first + count; ++code)
            bench.run(
                "mspEvent",
                {{QStringLiteral("event"), QStringLiteral("PROBE_ON")}, {QStringLiteral("code"), code}});
    };
    QQuickItem *list = bench.item(QStringLiteral("trafficList"));
    // Less than a screen, then more, then more than are kept, in one piece and in several.
    int sent = 0;
    for (const int count : {3, 40, 1200, 1, 499, 500}) {
        send(sent, count);
        sent += count;
        QTRY_COMPARE(bench.line(bench.traffic()->rowCount() - 1),
                     QStringLiteral("MSP PROBE_ON %1").arg(sent - 1));
        QCOMPARE(bench.traffic()->rowCount(), qMin(sent, limit));
        QCOMPARE(bench.line(0), QStringLiteral("MSP PROBE_ON %1").arg(sent - qMin(sent, limit)));
        QTRY_VERIFY2(list->property("atYEnd").toBool(),
                     qPrintable(QStringLiteral("%1: %2 of %3 from %4")
                                    .arg(sent)
                                    .arg(list->property("contentY").toDouble())
                                    .arg(list->property("contentHeight").toDouble())
                                    .arg(list->property("originY").toDouble())));
    }
    // No more delegates than fit, and as many again that wait for their next use.
    int delegates = 0;
    const QList<QQuickItem *> children = list->property("contentItem").value<QQuickItem *>()->childItems();
    for (const QQuickItem *child : children)
        delegates += child->objectName() == QLatin1String("trafficLine") ? 1 : 0;
    const int fit = qCeil(list->height() / 22) + 1;
    QVERIFY2(delegates >= fit - 2 && delegates <= 2 * fit, qPrintable(QString::number(delegates)));
    // The list lays itself out with the next picture.
    QTRY_VERIFY(complaints(bench.window).isEmpty());
    // The first line in sight is a whole one.
    const double top = list->property("contentY").toDouble();
    int drawn = 0;
    for (const QQuickItem *child : children) {
        if (child->objectName() != QLatin1String("trafficLine") || child->opacity() < 1)
            continue;
        ++drawn;
        QVERIFY2(child->y() > top - 1 || child->y() + child->height() <= top,
                 qPrintable(QStringLiteral("%1 px are cut").arg(top - child->y())));
    }
    QVERIFY2(drawn >= fit - 2, qPrintable(QString::number(drawn)));
    VERIFY_NOTHING_FOUND(bench.watch.warnings());
} catch (const Failure &failure) {
    QFAIL(qUtf8Printable(failure.text));
}

void TstSimulatorPanelView::changes_areToldInOnePiece()
try {
    PanelBench bench;
    QTest::qWait(2 * simulator::Panel::PaceMs);
    QSignalSpy states(&bench.panelWindow->panel(), &simulator::Panel::stateChanged);
    QSignalSpy lasts(&bench.panelWindow->panel(), &simulator::Panel::lastChanged);
    QSignalSpy rows(bench.traffic(), &QAbstractItemModel::rowsInserted);
    for (int code = 0; code < 200; ++code) {
        bench.run("mspEvent", object(R"({"event": "SHUT_OPENED"})"));
        bench.run("sample", {{QStringLiteral("distance"), code / 10.0}});
    }
    QVERIFY(states.isEmpty());
    QVERIFY(lasts.isEmpty());
    QVERIFY(rows.isEmpty());
    QTRY_COMPARE(states.size(), 1);
    QCOMPARE(lasts.size(), 1);
    QCOMPARE(rows.size(), 1);
    // And none for nothing.
    QTest::qWait(5 * simulator::Panel::PaceMs);
    QCOMPARE(states.size(), 1);
} catch (const Failure &failure) {
    QFAIL(qUtf8Printable(failure.text));
}

void TstSimulatorPanelView::window_looksRight_data()
{
    QTest::addColumn<QSize>("size");
    QTest::addColumn<QLocale>("locale");
    const auto row = [](const char *name, const QSize &size) {
        for (const char *const code : {"fr", "en"})
            QTest::addRow("%s, %s", name, code) << size << QLocale(QLatin1String(code));
    };
    row("smallest", Smallest);
    row("beside the interface on a small screen", Middle);
    row("usual", Usual);
}

void TstSimulatorPanelView::window_looksRight()
try {
    QFETCH(QSize, size);
    QFETCH(QLocale, locale);
    PanelBench bench(locale);
    QCOMPARE(bench.window->minimumSize(), Smallest);
    bench.resize(size);
    QCOMPARE(bench.window->title(),
             locale.language() == QLocale::French ? QStringLiteral("Instrument simulé")
                                                  : QStringLiteral("Simulated instrument"));
    QQuickItem *sheet = bench.item(QStringLiteral("sheet"));
    bench.run("conditions", object(R"({"temperature": 300})"));
    // In all its words, and from the top to the end.
    for (const char *const state : {"STANDBY", "READY_HARD", "SHUTTER_OPEN_HARD", "ERROR"}) {
        bench.run("mspInfo", {{QStringLiteral("state"), QLatin1String(state)}});
        bench.run("mspEvent", object(R"({"event": "SYS_ERR", "code": 0})"));
        QTest::qWait(2 * simulator::Panel::PaceMs);
        const double end = qMax(0.0, sheet->property("contentHeight").toDouble() - sheet->height());
        for (double y = 0; y <= end; y = y < end ? qMin(end, y + sheet->height() / 2) : end + 1) {
            sheet->setProperty("contentY", y);
            VERIFY_NOTHING_FOUND(complaints(bench.window));
        }
    }
    VERIFY_NOTHING_FOUND(bench.watch.warnings());
} catch (const Failure &failure) {
    QFAIL(qUtf8Printable(failure.text));
}

QTEST_MAIN(TstSimulatorPanelView)
#include "tst_simulator_panelview.moc"
