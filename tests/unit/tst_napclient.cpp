// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include <QMetaMethod>
#include <QSignalSpy>
#include <QTest>

#include "napclient.h"
#include "signallog.h"

namespace nap = com::halvar::nap;

class TstNAPClient : public QObject
{
    Q_OBJECT

private slots:
    void constructor_registersTheFourRecordsUnderTheirNames()
    {
        const NAPClient client;
        QCOMPARE(QMetaType::type("com::halvar::nap::AcqStatus"), qMetaTypeId<nap::AcqStatus>());
        QCOMPARE(QMetaType::type("com::halvar::nap::AcqError"), qMetaTypeId<nap::AcqError>());
        QCOMPARE(QMetaType::type("com::halvar::nap::AcqConditions"), qMetaTypeId<nap::AcqConditions>());
        QCOMPARE(QMetaType::type("com::halvar::nap::DetectionResult"), qMetaTypeId<nap::DetectionResult>());
        QVERIFY(!client.parent());
    }

    void metaObject_hasTheFourSignalsInTheirOrderAndNothingElse()
    {
        const QMetaObject &meta = NAPClient::staticMetaObject;
        QList<QByteArray> methods;
        for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
            QCOMPARE(meta.method(i).methodType(), QMetaMethod::Signal);
            methods << meta.method(i).methodSignature() + ' ' + meta.method(i).parameterNames().first();
        }
        const QList<QByteArray> expected{
            "nap_AcqStatus(com::halvar::nap::AcqStatus) currentAcqStatus",
            "nap_AcqError(com::halvar::nap::AcqError) currentAcqError",
            "nap_AcqConditions(com::halvar::nap::AcqConditions) currentAcqConditions",
            "nap_DetectionResult(com::halvar::nap::DetectionResult) currentDetectionResult"};
        QCOMPARE(methods, expected);
        QCOMPARE(meta.propertyCount(), meta.propertyOffset());
    }

    void eachSetter_emitsItsSignalOnce_alsoForTheSameValueAgain()
    {
        NAPClient client;
        SignalLog log;
        log.watch(&client, &NAPClient::nap_AcqStatus, QStringLiteral("status"));
        log.watch(&client, &NAPClient::nap_AcqError, QStringLiteral("error"));
        log.watch(&client, &NAPClient::nap_AcqConditions, QStringLiteral("conditions"));
        log.watch(&client, &NAPClient::nap_DetectionResult, QStringLiteral("detection"));
        for (int round = 0; round < 2; ++round) {
            log.clear();
            client.setCurrentDetectionResult(nap::DetectionResult());
            client.setCurrentAcqStatus(nap::ERROR);
            client.setCurrentAcqConditions(nap::AcqConditions());
            client.setCurrentAcqError(nap::DPP_ERROR);
            QCOMPARE(log.text(), QStringLiteral("detection status conditions error"));
        }
    }

    void values_areHandedOnUnchanged()
    {
        NAPClient client;
        QSignalSpy statuses(&client, &NAPClient::nap_AcqStatus);
        QSignalSpy errors(&client, &NAPClient::nap_AcqError);
        QSignalSpy conditions(&client, &NAPClient::nap_AcqConditions);
        QSignalSpy detections(&client, &NAPClient::nap_DetectionResult);
        client.setCurrentAcqStatus(static_cast<nap::AcqStatus>(99));
        client.setCurrentAcqError(static_cast<nap::AcqError>(-3));
        nap::AcqConditions cold;
        cold.set_temperature(-5.5);
        client.setCurrentAcqConditions(cold);
        nap::DetectionResult result;
        result.set_decision(nap::UNCALIBRATED);
        result.set("unknown", tessel::Value(1));
        client.setCurrentDetectionResult(result);
        QCOMPARE(int(statuses.first().first().value<nap::AcqStatus>()), 99);
        QCOMPARE(int(errors.first().first().value<nap::AcqError>()), -3);
        QVERIFY(conditions.first().first().value<nap::AcqConditions>() == cold);
        QVERIFY(detections.first().first().value<nap::DetectionResult>() == result);
    }
};

QTEST_GUILESS_MAIN(TstNAPClient)
#include "tst_napclient.moc"
