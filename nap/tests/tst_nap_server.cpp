// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include <QProcess>
#include <QTest>

#include <cstdio>

#include <nap/napserver.h>
#include <nap/notificationobserver.h>

using namespace com::halvar::nap;
using namespace tessel;

namespace {

using Wide = int (PNAPServer::*)(const Tuple &, Tuple &) const;

struct WideOperation
{
    const char *name;
    Wide operation;
};

/// Those that take and give plain tuples.
const WideOperation wideOperations[] = {
    {"getNAPConfiguration", &PNAPServer::getNAPConfiguration},
    {"setNAPConfiguration", &PNAPServer::setNAPConfiguration},
    {"resetNAPConfiguration", &PNAPServer::resetNAPConfiguration},
    {"exit", &PNAPServer::exit},
    {"setLogLevel", &PNAPServer::setLogLevel},
    {"getInstrumentCharacteristics", &PNAPServer::getInstrumentCharacteristics},
    {"setInstrumentCharacteristics", &PNAPServer::setInstrumentCharacteristics},
    {"init", &PNAPServer::init},
    {"serve", &PNAPServer::serve},
    {"destroy", &PNAPServer::destroy},
    {"startSpectrumAcquisitionByDuration", &PNAPServer::startSpectrumAcquisitionByDuration},
    {"startSpectrumAcquisitionByCounts", &PNAPServer::startSpectrumAcquisitionByCounts},
    {"getLastMeasures", &PNAPServer::getLastMeasures},
    {"getMeasure", &PNAPServer::getMeasure},
    {"getMeasures", &PNAPServer::getMeasures},
    {"notify", &PNAPServer::notify},
};

struct PlainOperation
{
    const char *name;
    int (PNAPServer::*operation)() const;
};

const PlainOperation plainOperations[] = {
    {"requestStopMeasure", &PNAPServer::requestStopMeasure},
    {"startCalibration", &PNAPServer::startCalibration},
    {"abort", &PNAPServer::abort},
    {"startAccuracyCheck", &PNAPServer::startAccuracyCheck},
    {"sendLastStatus", &PNAPServer::sendLastStatus},
};

/// Shows the request as "class: name=type ...".
QString shown(const Tuple &request)
{
    QString text = QString::fromUtf8(request.class_name()) + QLatin1Char(':');
    for (int i = 0; i < request.size(); ++i) {
        text += QLatin1Char(' ') + QString::fromUtf8(request.name(i)) + QLatin1Char('=')
            + QString::number(request.value(i).type());
    }
    return text;
}

/// Speaks for a service that is somewhere else: sees the requests as they travel.
class Elsewhere : public Service
{
public:
    explicit Elsewhere(const char *interfaceName = "com.halvar.nap.NAPServer")
        : Service(interfaceName)
    { }
    int call(const Tuple &request, Tuple &reply) override
    {
        last = request;
        reply = answer;
        return status;
    }
    Tuple last;
    Tuple answer;
    int status = 0;
};

class Implementation : public NAPServer
{
public:
    int getLastCalibrationDate(TimeDate &result) override
    {
        if (status >= 0)
            result = TimeDate(2025, 12, 31);
        return note("getLastCalibrationDate");
    }
    int startMeasure(const MeasureCustomData &customData, bool autoStop) override
    {
        data = customData;
        stopsItself = autoStop;
        return note("startMeasure");
    }
    int requestStopMeasure() override { return note("requestStopMeasure"); }
    int startCalibration() override { return note("startCalibration"); }
    int abort() override { return note("abort"); }
    int startAccuracyCheck() override { return note("startAccuracyCheck"); }
    int sendLastStatus() override { return note("sendLastStatus"); }
    int getLastMeasure(MeasureSummary &measure) override
    {
        if (status >= 0)
            measure.set_id(42);
        return note("getLastMeasure");
    }
    int registerObserver(const AString &description) override
    {
        observer = description;
        return note("registerObserver");
    }
    int unregisterObserver(const AString &description) override
    {
        observer = description;
        return note("unregisterObserver");
    }
    int getMeasure(const Tuple &request, Tuple &reply) override
    {
        reply = request;
        return note("getMeasure");
    }

    int note(const char *name)
    {
        calls << QString::fromLatin1(name);
        Tuple now;
        context = Service::save_session_context(now) ? now.get("service").toAString().toString() : QString();
        return status;
    }

    QStringList calls;
    QString context;
    int status = 3;
    MeasureCustomData data;
    bool stopsItself = false;
    AString observer;
};

QString prefixed(const char *operation)
{
    return QStringLiteral("com.halvar.nap.NAPServer.") + QLatin1String(operation);
}

int serveInThisProcess()
{
    const AutoRef<Implementation> server(new Implementation);
    server->set_name("nap_server");
    server->publish();
    if (!ServiceManager::auto_create().listen("TCPIP:localhost:0"))
        return 2;
    std::printf("%d\n", ServiceManager::auto_create().port());
    std::fflush(stdout);
    return QCoreApplication::exec();
}

} // namespace

class TstNapServer : public QObject
{
    Q_OBJECT

    AutoRef<Elsewhere> m_elsewhere;
    AutoRef<Implementation> m_implementation;
    PNAPServer m_remote;
    PNAPServer m_direct;

private slots:
    void init()
    {
        NAPServer::load_stub();
        Service::clear_session_context();
        m_elsewhere = AutoRef<Elsewhere>(new Elsewhere);
        m_remote = PNAPServer(m_elsewhere.get());
        m_implementation = AutoRef<Implementation>(new Implementation);
        m_implementation->set_name("direct");
        m_direct = PNAPServer::create(m_implementation.get());
    }

    void names()
    {
        QCOMPARE(QByteArray(NAPServer::get_factory_class_name()), QByteArray("com.halvar.nap.NAPServer"));
        QCOMPARE(m_implementation->interface_name(), QByteArray("com.halvar.nap.NAPServer"));
        QCOMPARE(QByteArray(NotificationObserver::get_factory_class_name()),
                 QByteArray("com.halvar.nap.NotificationObserver"));
    }

    void base_implementsNothing_directlyAndByRequest()
    {
        const AutoRef<NAPServer> base(new NAPServerBase);
        const PNAPServer direct = PNAPServer::create(base.get());
        Tuple reply;
        for (const WideOperation &wide : wideOperations) {
            QCOMPARE((direct.*wide.operation)(Tuple(), reply), -1000014);
            QCOMPARE(base->call(Tuple(prefixed(wide.name).toLatin1().constData()), reply), -1000014);
        }
        for (const PlainOperation &plain : plainOperations) {
            QCOMPARE((direct.*plain.operation)(), -1000014);
            QCOMPARE(base->call(Tuple(prefixed(plain.name).toLatin1().constData()), reply), -1000014);
        }
        TimeDate date(7);
        MeasureSummary measure;
        QCOMPARE(direct.getLastCalibrationDate(date), -1000014);
        QCOMPARE(direct.getLastMeasure(measure), -1000014);
        QCOMPARE(direct.startMeasure(MeasureCustomData(), true), -1000014);
        QCOMPARE(direct.registerObserver("x"), -1000014);
        QCOMPARE(direct.unregisterObserver("x"), -1000014);
        for (const char *name : {"getLastCalibrationDate", "getLastMeasure", "startMeasure",
                                 "registerObserver", "unregisterObserver"})
            QCOMPARE(base->call(Tuple(prefixed(name).toLatin1().constData()), reply), -1000014);
        QVERIFY(date == TimeDate(7));
        QVERIFY(measure.isEmpty() && reply.isEmpty());
    }

    void emptyHandle_answersThatNobodyIsThere()
    {
        const PNAPServer none;
        Tuple reply;
        for (const WideOperation &wide : wideOperations)
            QCOMPARE((none.*wide.operation)(Tuple(), reply), int(ERR_PEER_GONE));
        for (const PlainOperation &plain : plainOperations)
            QCOMPARE((none.*plain.operation)(), int(ERR_PEER_GONE));
        TimeDate date(7);
        QCOMPARE(none.getLastCalibrationDate(date), int(ERR_PEER_GONE));
        QVERIFY(date == TimeDate(7));
    }

    void request_ofAnOperationWithoutArguments_isItsName()
    {
        for (const PlainOperation &plain : plainOperations) {
            m_elsewhere->status = 5;
            QCOMPARE((m_remote.*plain.operation)(), 5);
            QCOMPARE(shown(m_elsewhere->last), prefixed(plain.name) + QLatin1Char(':'));
        }
    }

    void request_ofAnOperationOfTuples_carriesTheFields()
    {
        Tuple argument("whatever");
        argument.set("number", Value(7));
        for (const WideOperation &wide : wideOperations) {
            m_elsewhere->answer = Tuple("answer");
            Tuple reply;
            QCOMPARE((m_remote.*wide.operation)(argument, reply), 0);
            QCOMPARE(shown(m_elsewhere->last), prefixed(wide.name) + QStringLiteral(": number=2"));
            QVERIFY(reply == Tuple("answer"));
        }
    }

    void request_ofStartMeasure()
    {
        MeasureCustomData data;
        data.set_sampleType(AString("paint"));
        QCOMPARE(m_remote.startMeasure(data, true), 0);
        QCOMPARE(shown(m_elsewhere->last),
                 prefixed("startMeasure") + QStringLiteral(": customData=5 autoStop=1"));
        QVERIFY(m_elsewhere->last.get("customData").toTuple() == data);
        QCOMPARE(m_elsewhere->last.get("customData").toTuple().class_name(),
                 QByteArray("com::halvar::nap::MeasureCustomData"));
        QVERIFY(m_elsewhere->last.get("autoStop").toBool());
        m_remote.startMeasure(data, false);
        QVERIFY(!m_elsewhere->last.get("autoStop").toBool());
    }

    void request_ofTheObserversOperations()
    {
        const AString description("nap_server@TCPIP:localhost:3556");
        QCOMPARE(m_remote.registerObserver(description), 0);
        QCOMPARE(shown(m_elsewhere->last),
                 prefixed("registerObserver") + QStringLiteral(": serviceDescription=4"));
        QVERIFY(m_elsewhere->last.get("serviceDescription").toAString() == description);
        QCOMPARE(m_remote.unregisterObserver(description), 0);
        QCOMPARE(shown(m_elsewhere->last),
                 prefixed("unregisterObserver") + QStringLiteral(": serviceDescription=4"));
        QVERIFY(m_elsewhere->last.get("serviceDescription").toAString() == description);
    }

    void getLastCalibrationDate_readsTheDate()
    {
        m_elsewhere->answer.set("date", Value(TimeDate(2025, 12, 31)));
        TimeDate date;
        QCOMPARE(m_remote.getLastCalibrationDate(date), 0);
        QCOMPARE(shown(m_elsewhere->last), prefixed("getLastCalibrationDate") + QLatin1Char(':'));
        QVERIFY(date == TimeDate(2025, 12, 31));
    }

    void getLastCalibrationDate_withoutADateIsTimeDate0()
    {
        TimeDate date(7);
        QCOMPARE(m_remote.getLastCalibrationDate(date), 0);
        QVERIFY(date == TimeDate(0));
        date = TimeDate(7);
        m_elsewhere->answer.set("date", Value(AString("31-12-2025")));
        QCOMPARE(m_remote.getLastCalibrationDate(date), 0);
        QVERIFY(date == TimeDate(0));
    }

    void getLastCalibrationDate_thatFailsLeavesTheDate()
    {
        m_elsewhere->answer.set("date", Value(TimeDate(2025, 12, 31)));
        m_elsewhere->status = -1;
        TimeDate date(7);
        QCOMPARE(m_remote.getLastCalibrationDate(date), -1);
        QVERIFY(date == TimeDate(7));
    }

    void getLastMeasure_takesTheFieldsOverAndKeepsTheOthers()
    {
        MeasureSummary answer;
        answer.set_id(42);
        m_elsewhere->answer.set("measure", Value(answer));
        MeasureSummary measure;
        measure.set_id(1);
        MeasureCustomData data;
        data.set_sampleType(AString("paint"));
        measure.set_customData(data);
        QCOMPARE(m_remote.getLastMeasure(measure), 0);
        QCOMPARE(shown(m_elsewhere->last), prefixed("getLastMeasure") + QLatin1Char(':'));
        QCOMPARE(measure.get_id(), 42);
        QVERIFY(measure.get_customData() == data);
        QCOMPARE(measure.class_name(), QByteArray("com::halvar::nap::MeasureSummary"));
    }

    void getLastMeasure_withoutAMeasureOrThatFailsLeavesItAsItWas()
    {
        MeasureSummary measure;
        measure.set_id(1);
        QCOMPARE(m_remote.getLastMeasure(measure), 0);
        QCOMPARE(measure.get_id(), 1);
        MeasureSummary answer;
        answer.set_id(42);
        m_elsewhere->answer.set("measure", Value(answer));
        m_elsewhere->status = -5;
        QCOMPARE(m_remote.getLastMeasure(measure), -5);
        QCOMPARE(measure.get_id(), 1);
    }

    void directCall_reachesTheImplementation()
    {
        QStringList expected;
        for (const PlainOperation &plain : plainOperations) {
            QCOMPARE((m_direct.*plain.operation)(), 3);
            expected << QString::fromLatin1(plain.name);
        }
        QCOMPARE(m_implementation->calls, expected);
        TimeDate date;
        QCOMPARE(m_direct.getLastCalibrationDate(date), 3);
        QVERIFY(date == TimeDate(2025, 12, 31));
        MeasureSummary measure;
        QCOMPARE(m_direct.getLastMeasure(measure), 3);
        QCOMPARE(measure.get_id(), 42);
        QCOMPARE(m_direct.registerObserver("x@TCPIP:localhost:1"), 3);
        QVERIFY(m_implementation->observer == "x@TCPIP:localhost:1");
        Tuple request("r");
        request.set("n", Value(1));
        Tuple reply;
        QCOMPARE(m_direct.getMeasure(request, reply), 3);
        QVERIFY(reply == request);
    }

    void directCall_setsTheObjectsSessionContext_andItStays()
    {
        QCOMPARE(m_direct.abort(), 3);
        QCOMPARE(m_implementation->context, QStringLiteral("direct"));
        Tuple context;
        QVERIFY(Service::save_session_context(context));
        QCOMPARE(context.get("service").toAString().toString(), QStringLiteral("direct"));
    }

    void directCall_putsTheCallersSessionContextBack()
    {
        Tuple own("own");
        own.set("service", Value(AString("caller")));
        Service::set_session_context(own);
        QCOMPARE(m_direct.abort(), 3);
        Tuple context;
        QVERIFY(Service::save_session_context(context));
        QVERIFY(context == own);
    }

    void unknownRequest_isNotImplemented()
    {
        Tuple reply;
        for (const char *name : {"", "abort", "com.halvar.nap.NAPServer.", "com.halvar.nap.NAPServer.Abort",
                                 "com.halvar.nap.NAPServer.abort2", "com.halvar.nap.Other.abort"})
            QCOMPARE(m_implementation->call(Tuple(name), reply), -1000014);
        QVERIFY(m_implementation->calls.isEmpty());
        QVERIFY(reply.isEmpty());
    }

    void failingOperation_repliesNothing()
    {
        m_implementation->status = -7;
        Tuple reply;
        QCOMPARE(m_implementation->call(Tuple("com.halvar.nap.NAPServer.getLastMeasure"), reply), -7);
        QCOMPARE(m_implementation->call(Tuple("com.halvar.nap.NAPServer.getLastCalibrationDate"), reply), -7);
        QVERIFY(reply.isEmpty());
    }

    void requestWithoutItsFields_readsThemAsZero()
    {
        m_implementation->stopsItself = true;
        Tuple reply;
        QCOMPARE(m_implementation->call(Tuple("com.halvar.nap.NAPServer.startMeasure"), reply), 3);
        QVERIFY(!m_implementation->stopsItself);
        QVERIFY(m_implementation->data.isEmpty());
    }

    void bind_putsTheInterfaceInFrontOnce()
    {
        QVERIFY(ServiceManager::auto_create().listen("TCPIP:localhost:0"));
        const QByteArray address =
            "nap_server@TCPIP:localhost:" + QByteArray::number(ServiceManager::auto_create().port());
        m_implementation->set_name("nap_server");
        m_implementation->publish();
        const AutoRef<Elsewhere> namesake(new Elsewhere("com.halvar.nap.NotificationObserver"));
        namesake->set_name("nap_server"); // deliberately the same: only the interface tells them apart
        namesake->publish();
        PNAPServer server;
        QVERIFY(server.bind(address.constData()));
        QVERIFY(server.get() == m_implementation.get());
        QVERIFY(server.bind(("com.halvar.nap.NAPServer:" + address).constData()));
        QVERIFY(server.get() == m_implementation.get());
        QVERIFY(!server.bind(("com.halvar.nap.NAPServe:" + address).constData()));
        QVERIFY(!server);
        QVERIFY(server.bind(address.constData()));
        m_implementation->unpublish();
        QVERIFY(!server.bind(address.constData()));
        QVERIFY(!server); // has let go of the one before
        QVERIFY(!server.bind(nullptr));
        namesake->unpublish();
    }

    void observer_getsTheMessage()
    {
        struct Observer : NotificationObserver
        {
            int onMessage(const NotificationMessage &message) override
            {
                last = message;
                return 1;
            }
            NotificationMessage last;
        };
        const AutoRef<Observer> observer(new Observer);
        QCOMPARE(observer->interface_name(), QByteArray("com.halvar.nap.NotificationObserver"));
        NotificationMessage message;
        message.set_id(AString("NAP_STATUS"));
        message.set_status(IN_PROGRESS);
        QCOMPARE(NotificationObserver::sendMessage(*observer, message), 1);
        QVERIFY(observer->last == message);
        Tuple reply;
        QCOMPARE(observer->call(Tuple("com.halvar.nap.NotificationObserver.other"), reply), -1000014);
        const AutoRef<NotificationObserver> base(new ObserverBase);
        QCOMPARE(NotificationObserver::sendMessage(*base, message), -1000014);
    }

    void everythingOverTheWire()
    {
        QProcess process;
        process.start(QCoreApplication::applicationFilePath(), {QStringLiteral("--serve")});
        while (!process.canReadLine() && process.waitForReadyRead(10000)) { }
        const QByteArray port = process.readLine().trimmed();
        PNAPServer server;
        QVERIFY(server.bind(("nap_server@TCPIP:localhost:" + port).constData()));
        for (const PlainOperation &plain : plainOperations)
            QCOMPARE((server.*plain.operation)(), 3);
        TimeDate date;
        QCOMPARE(server.getLastCalibrationDate(date), 3);
        QVERIFY(date == TimeDate(2025, 12, 31));
        MeasureSummary measure;
        QCOMPARE(server.getLastMeasure(measure), 3);
        QCOMPARE(measure.get_id(), 42);
        QCOMPARE(server.startMeasure(MeasureCustomData(), true), 3);
        QCOMPARE(server.registerObserver("x@TCPIP:localhost:1"), 3);
        Tuple reply;
        QCOMPARE(server.getMeasures(Tuple(), reply), -1000014);
        process.kill();
        QVERIFY(process.waitForFinished());
        QCOMPARE(server.abort(), int(ERR_PEER_GONE));
    }

private:
    struct NAPServerBase : NAPServer
    { };
    struct ObserverBase : NotificationObserver
    { };
};

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    if (app.arguments().contains(QStringLiteral("--serve")))
        return serveInThisProcess();
    TstNapServer test;
    return QTest::qExec(&test, argc, argv);
}
#include "tst_nap_server.moc"
