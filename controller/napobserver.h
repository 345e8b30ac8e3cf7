// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef HALVAR_NAPOBSERVER_H
#define HALVAR_NAPOBSERVER_H

#include <nap/notificationobserver.h>

#include "halvar-export.h"
#include "napclient.h"

/// Receives the service's notifications on the middleware's dispatch thread, hands them to its NAPClient and
/// writes them to the debug log. Keeps nothing between two messages.
class HALVAR_EXPORT NAPObserver : public com::halvar::nap::NotificationObserver
{
public:
    NAPObserver();

    /// \return 1 for every message, known or not.
    int onMessage(const com::halvar::nap::NotificationMessage &message) override;

    void printStatus(const com::halvar::nap::AcqStatus &status);
    /// "OK" or "FAIL".
    const char *showBoolean(bool value);
    void printConditions(const com::halvar::nap::AcqConditions &conditions);
    void printDetection(const com::halvar::nap::DetectionResult &detection);
    void printSpectrum(const com::halvar::nap::SpectrumResult &spectrum);

    /// Lives as long as the observer.
    const NAPClient *nap_client() const { return &m_napClient; }

protected:
    ~NAPObserver() override;

private:
    NAPClient m_napClient;
};

#endif // HALVAR_NAPOBSERVER_H
