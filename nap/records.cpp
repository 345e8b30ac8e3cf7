// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include "nap/records.h"

namespace com {
namespace halvar {
namespace nap {

const tessel::Symbol &AcqConditions::getSymbClassName()
{
    static const tessel::Symbol name("com::halvar::nap::AcqConditions");
    return name;
}

const tessel::Symbol &DetectionResult::getSymbClassName()
{
    static const tessel::Symbol name("com::halvar::nap::DetectionResult");
    return name;
}

const tessel::Symbol &SpectrumInformation::getSymbClassName()
{
    static const tessel::Symbol name("com::halvar::nap::SpectrumInformation");
    return name;
}

const tessel::Symbol &SpectrumResult::getSymbClassName()
{
    static const tessel::Symbol name("com::halvar::nap::SpectrumResult");
    return name;
}

const tessel::Symbol &MeasureCustomData::getSymbClassName()
{
    static const tessel::Symbol name("com::halvar::nap::MeasureCustomData");
    return name;
}

const tessel::Symbol &MeasureSummary::getSymbClassName()
{
    static const tessel::Symbol name("com::halvar::nap::MeasureSummary");
    return name;
}

const tessel::Symbol &NotificationMessage::getSymbClassName()
{
    static const tessel::Symbol name("com::halvar::nap::NotificationMessage");
    return name;
}

} // namespace nap
} // namespace halvar
} // namespace com
