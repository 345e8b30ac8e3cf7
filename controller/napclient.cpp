// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include "napclient.h"

NAPClient::NAPClient(QObject *parent)
    : QObject(parent)
{
    qRegisterMetaType<com::halvar::nap::AcqStatus>("com::halvar::nap::AcqStatus");
    qRegisterMetaType<com::halvar::nap::AcqError>("com::halvar::nap::AcqError");
    qRegisterMetaType<com::halvar::nap::AcqConditions>("com::halvar::nap::AcqConditions");
    qRegisterMetaType<com::halvar::nap::DetectionResult>("com::halvar::nap::DetectionResult");
}

void NAPClient::setCurrentAcqStatus(const com::halvar::nap::AcqStatus &status)
{
    emit nap_AcqStatus(status);
}

void NAPClient::setCurrentAcqError(const com::halvar::nap::AcqError &error)
{
    emit nap_AcqError(error);
}

void NAPClient::setCurrentAcqConditions(const com::halvar::nap::AcqConditions &conditions)
{
    emit nap_AcqConditions(conditions);
}

void NAPClient::setCurrentDetectionResult(const com::halvar::nap::DetectionResult &result)
{
    emit nap_DetectionResult(result);
}
