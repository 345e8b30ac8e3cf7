// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
//
// A notification from the middleware's call to the QML binding that shows it, and the messages of the safety
// microcontroller. One thread plays all parts, so that the numbers do not depend on who wakes whom.
#include <QCoreApplication>
#include <QQmlComponent>
#include <QQmlContext>
#include <QQmlEngine>

#include <memory>
#include <utility>
#include <vector>

#include <nap/records.h>

#include "corepath.h"
#include "detectionrequest.h"
#include "mspcodec.h"
#include "napobserver.h"

namespace nap = com::halvar::nap;

/// What a binding reads, set by each detection.
class Concentration : public QObject
{
    Q_OBJECT
    Q_PROPERTY(double value READ value NOTIFY valueChanged)

public:
    double value() const { return m_value; }
    void show(const nap::DetectionResult &detection)
    {
        if (std::exchange(m_value, detection.get_value()) != detection.get_value())
            emit valueChanged();
    }

signals:
    void valueChanged();

private:
    double m_value = -1;
};

namespace {

void notify()
{
    constexpr int notifications = 200;
    Concentration concentration;
    QQmlEngine engine;
    engine.rootContext()->setContextProperty(QStringLiteral("shot"), &concentration);
    QQmlComponent component(&engine);
    component.setData("import QtQml 2.2\nQtObject { property string text: shot.value.toFixed(2) }", QUrl());
    const std::unique_ptr<QObject> bound(component.create());
    expect(bound != nullptr, "no binding");
    const tessel::AutoRef<NAPObserver> observer(new NAPObserver);
    QObject::connect(observer->nap_client(), &NAPClient::nap_DetectionResult, &concentration,
                     &Concentration::show, Qt::QueuedConnection);
    std::vector<tessel::Tuple> requests;
    for (int i = 0; i < notifications; ++i)
        requests.push_back(detectionRequest(i));
    tessel::Service &service = *observer;
    countSecond([&] {
        for (const tessel::Tuple &request : requests) {
            tessel::Tuple reply;
            service.call(request, reply);
        }
        QCoreApplication::sendPostedEvents(&concentration, QEvent::MetaCall);
    });
    expect(bound->property("text") == QStringLiteral("199.00"), "the last is not shown");
}

constexpr int messages = 1000;

void encodeMsp()
{
    MSPInfo info;
    info.fwVersion = QStringLiteral("2.1");
    info.MSPVersion = QStringLiteral("1.4");
    info.setState(MSPInfo::READY_HARD);
    int bytes = 0;
    countSecond([&] {
        for (quint32 number = 1; number <= messages / 2; ++number) {
            bytes += msp::frame(msp::encode(msp::Command{number, MSPClient::RUN_HARD, QString()})).size();
            bytes += msp::frame(msp::encode(msp::InfoReply{number, info})).size();
        }
    });
    expect(bytes > 2 * messages * msp::headerSize, "nothing was encoded");
}

void decodeMsp()
{
    MSPInfo info;
    info.fwVersion = QStringLiteral("2.1");
    info.MSPVersion = QStringLiteral("1.4");
    std::vector<QByteArray> frames;
    for (quint32 number = 1; number <= messages / 2; ++number) {
        frames.push_back(msp::frame(msp::encode(msp::InfoReply{number, info})));
        frames.push_back(msp::frame(msp::encode(msp::Event{MSPClient::SHUT_OPENED, 0})));
    }
    int decoded = 0;
    countSecond([&] {
        msp::FrameReader reader;
        for (const QByteArray &frame : frames) {
            reader.append(frame);
            while (const auto payload = reader.next())
                decoded += msp::decode(*payload) ? 1 : 0;
        }
    });
    expect(decoded == 2 * messages, "a message was not decoded");
}

const bool registered =
    corePath("link-notification", "200 detections notified and shown by a binding", notify)
    && corePath("msp-encode", "500 commands and 500 answers composed, with their frames", encodeMsp)
    && corePath("msp-decode", "500 answers and 500 events read from their frames", decodeMsp);

} // namespace

#include "links.moc"
