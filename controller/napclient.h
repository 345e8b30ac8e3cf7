// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef HALVAR_NAPCLIENT_H
#define HALVAR_NAPCLIENT_H

#include <QObject>

#include <nap/records.h>

#include "halvar-export.h"

/// Re-emits the service's notifications as signals, on the middleware's dispatch thread: connect to objects
/// of other threads with automatic or queued connections. The records are registered as meta types, so that
/// they can be queued.
class HALVAR_EXPORT NAPClient : public QObject
{
    Q_OBJECT

public:
    explicit NAPClient(QObject *parent = nullptr);

    void setCurrentAcqStatus(const com::halvar::nap::AcqStatus &status);
    void setCurrentAcqError(const com::halvar::nap::AcqError &error);
    void setCurrentAcqConditions(const com::halvar::nap::AcqConditions &conditions);
    void setCurrentDetectionResult(const com::halvar::nap::DetectionResult &result);

signals:
    void nap_AcqStatus(com::halvar::nap::AcqStatus currentAcqStatus);
    void nap_AcqError(com::halvar::nap::AcqError currentAcqError);
    void nap_AcqConditions(com::halvar::nap::AcqConditions currentAcqConditions);
    void nap_DetectionResult(com::halvar::nap::DetectionResult currentDetectionResult);
};

#endif // HALVAR_NAPCLIENT_H
