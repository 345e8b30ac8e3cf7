// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef DETECTIONREQUEST_H
#define DETECTIONREQUEST_H

#include <nap/records.h>

/// What the middleware hands to the observer when a notification of a result has come in.
inline tessel::Tuple detectionRequest(double value)
{
    com::halvar::nap::DetectionResult detection;
    detection.set_value(value);
    detection.set_sigma(0.125);
    detection.set_decision(com::halvar::nap::POSITIVE);
    detection.set_sourceActivity(37.5);
    com::halvar::nap::NotificationMessage message;
    message.set_id("NAP_DETECTION");
    message.set_detection(detection);
    tessel::Tuple request("com.halvar.nap.NotificationObserver.onMessage");
    request.set("message", tessel::Value(message));
    return request;
}

#endif // DETECTIONREQUEST_H
