// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDINGNAP_H
#define RECORDINGNAP_H

#include <QMap>
#include <QMutex>
#include <QString>
#include <QStringList>

#include <nap/napserver.h>
#include <nap/notificationobserver.h>

/// An analysis service that acquires nothing: it records every call, answers what the test has set, and calls
/// its observers back when the test says so. Thread-safe.
class RecordingNap : public com::halvar::nap::NAPServer
{
public:
    class Published;

    RecordingNap();

    /// Names of the operations called, in order.
    QStringList calls() const;
    bool lastAutoStop() const;
    QString lastCustomDataClass() const;
    QStringList observers() const;

    /// Forgets the calls and what was set; observers stay.
    void reset();
    /// Status of \p operation from now on; 0 unless set.
    void setStatus(const QString &operation, int status);
    void setLastMeasureId(int id);
    void setCalibrationDate(const tessel::TimeDate &date);

    using NAPServer::notify;
    // To every registered observer, one after the other, from the calling thread.
    void notify(const com::halvar::nap::NotificationMessage &message);
    void notifyDetection(const com::halvar::nap::DetectionResult &result);
    void notifyStatus(com::halvar::nap::AcqStatus status);
    void notifyConditions(com::halvar::nap::AcqStatus status,
                          const com::halvar::nap::AcqConditions &conditions);
    void notifyError(com::halvar::nap::AcqStatus status, com::halvar::nap::AcqError error);

    int getLastCalibrationDate(tessel::TimeDate &date) override;
    int startMeasure(const com::halvar::nap::MeasureCustomData &customData, bool autoStop) override;
    int requestStopMeasure() override;
    int startCalibration() override;
    int abort() override;
    int startAccuracyCheck() override;
    int sendLastStatus() override;
    int getLastMeasure(com::halvar::nap::MeasureSummary &measure) override;
    int registerObserver(const tessel::AString &serviceDescription) override;
    int unregisterObserver(const tessel::AString &serviceDescription) override;

private:
    int record(const QString &operation);

    mutable QMutex m_mutex;
    QStringList m_calls;
    bool m_autoStop = false;
    QString m_customDataClass;
    QMap<QString, int> m_statuses;
    int m_lastMeasureId = 0;
    tessel::TimeDate m_calibrationDate;
    QMap<QString, tessel::PService> m_observers; // by description
};

/// A RecordingNap where the controller looks for the service; gone when this is destroyed.
class RecordingNap::Published
{
public:
    Published();
    ~Published();
    bool isListening() const { return m_listening; }
    RecordingNap &nap() const { return *m_nap; }

private:
    Q_DISABLE_COPY(Published)
    tessel::AutoRef<RecordingNap> m_nap;
    bool m_listening;
};

#endif // RECORDINGNAP_H
