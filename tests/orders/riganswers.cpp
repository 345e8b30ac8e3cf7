// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
//
// An interface that answers signals with calls, and what must hold all the same.
#include <QTimer>

#include <algorithm>
#include <limits>

#include "measurelistmodel.h"
#include "pin.h"
#include "rigservice.h"
#include "ud.h"
#include "udlistmodel.h"

namespace orders {

void Rig::answer(const std::string &signal)
{
    const int time = ++m_heard[signal];
    ++m_answering;
    for (const Reaction &reaction : m_reactions) {
        if (reaction.signal == signal && reaction.time == time)
            apply(reaction.event);
    }
    --m_answering;
}

std::string Rig::inconsistency() const
{
    const HalvarController &c = *m_controller;
    for (int i = 0; i < 5; ++i) {
        if (c.pin->checkDigit(i) != (i < c.pin->nbDigits()))
            return "nbDigits is not the number of digits.";
    }
    if (m_watcher->nameOf(c.currentAccuracy()).empty())
        return "currentAccuracy is none of the four.";
    const std::int64_t interval =
        std::clamp<std::int64_t>(std::int64_t(c.measureTime()) * 1000, 0, std::numeric_limits<int>::max());
    if (m_timers[MeasureEnd]->interval() != interval)
        return "The measure timer does not take measureTime.";
    UD *const unit = c.uds->at(c.udIndexEdition());
    if (c.uds->measures() != (unit ? unit->measures() : nullptr))
        return "The list of units has another current unit than the controller.";
    for (int row = 0; row < c.uds->rowCount(); ++row) {
        if (c.uds->at(row) && c.uds->indexOf(c.uds->at(row)) != row)
            return "A unit is not found in its row.";
    }
    return {};
}

std::string Rig::measureOnce()
{
    m_reactions.clear();
    deliver();
    m_service->reset();
    m_service->setLastMeasureId(4711);
    HalvarController *const c = m_controller;
    c->setAcquisitionMode(AcquisitionModeEnumClass::NONE);
    c->setMeasureMode(MeasureModeEnumClass::TRIGGER);
    c->setBranchMode(BranchModeEnumClass::BRANCH_DIRECT);
    Event event;
    event.kind = Kind::MspEvent;
    event.number = MSPClient::SHUT_OPENED;
    apply(event);
    m_clock.advance(m_timers[BeforeShutter]->interval(), deliver);
    if (c->acquisitionMode() != AcquisitionModeEnumClass::MEASURE)
        return "An opened shutter leads to no measure.";
    event.kind = Kind::Result; // the first of its shot
    apply(event);
    event.kind = Kind::Status;
    event.number = com::halvar::nap::NOT_STARTED;
    apply(event);
    if (c->acquisitionMode() != AcquisitionModeEnumClass::NONE)
        return "The end of a measure does not end it.";
    if (!c->directMeasures->first() || c->directMeasures->first()->idNAP() != 4711)
        return "A measure does not get the service's number.";
    return {};
}

} // namespace orders
