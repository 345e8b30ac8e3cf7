// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
//
// The companions of the controller, and the units that the interface adds, removes and marks.
#include <algorithm>

#include "model.h"

namespace orders {

void Model::applyCompanion(const Event &e)
{
    switch (e.kind) {
    case Kind::PinDigit:
        return m_pin.enter(e.text, m_out);
    case Kind::PinClearDigit:
        return m_pin.clearDigit(m_out);
    case Kind::PinClearDigits:
        return m_pin.clearDigits(m_out);
    case Kind::PinCheck: {
        const bool right = m_pin.check(m_out);
        return tell(std::string("checkSecret returns ") + (right ? "true" : "false"));
    }
    case Kind::PinEnable:
        return disablePin(false);
    case Kind::PinDisable:
        return disablePin(e.flag);
    case Kind::PinAccept:
        return m_pin.accept(e.flag, m_out);
    case Kind::PinSecret:
        return m_pin.setSecret(e.number);
    case Kind::SetCalibrationState:
        return m_calibration.request(e.number, m_out);
    case Kind::SetMaxCalibrations:
        m_calibration.maximum = e.number;
        return;
    case Kind::ResetCalibrations:
        m_calibration.attempts = 0;
        return;
    case Kind::SetErrorMessage:
        return setErrorMessage(e.text);
    case Kind::ResetErrorMessage:
        return setErrorMessage({});
    case Kind::SetShock:
        return setShock(e.flag);
    default:
        return setReady(e.flag);
    }
}

void Model::disablePin(bool disabled)
{
    if (!m_pin.disable(disabled, m_out))
        return;
    if (disabled)
        m_clock.start(ClockModel::PinEnable);
    else
        m_clock.stop(ClockModel::PinEnable);
}

void Model::applyUnit(const Event &e)
{
    switch (e.kind) {
    case Kind::AddUnit:
        return addUnit(e.number);
    case Kind::RemoveUnit:
        if (hasUnitRow(e.number))
            removeUnits(std::size_t(e.number), std::size_t(e.number));
        return;
    case Kind::MoveUnit:
        return moveUnit(e.number, e.code);
    case Kind::ClearUnits:
        if (!m_units.empty())
            removeUnits(0, m_units.size() - 1);
        return;
    case Kind::RemoveDirect:
        return m_direct.remove(e.number, m_out);
    case Kind::ClearDirect:
        return m_direct.clear(m_out);
    case Kind::NoteMeasure:
        if (MeasureModel *const measure = m_direct.at(e.number)) {
            measure->setLocalisation(e.code % 6, m_out);
            measure->setDegradation(e.code % 4, m_out);
            measure->setConservation(e.text, m_out);
        }
        return;
    case Kind::DeleteDirect:
        if (MeasureModel *const measure = m_direct.at(e.number))
            measure->gone = true;
        return;
    case Kind::DeleteUnit:
        if (UnitModel *const deleted = unit(e.number))
            deleted->gone = true;
        return;
    default:
        break;
    }
    UnitModel *const target = unit(e.number);
    if (!target)
        return;
    switch (e.kind) {
    case Kind::SetStatut:
        return target->setStatut(e.code, m_out);
    case Kind::SetObservation:
        return target->setObservation(e.text, m_out);
    case Kind::SetUnitLocal:
        return target->setLocal(e.text, m_out);
    case Kind::UpdateStatut:
        return target->updateStatut(e.code, m_out);
    case Kind::DeleteUnitMeasure:
        if (MeasureModel *const measure = target->measures.at(e.code))
            measure->gone = true;
        return;
    default:
        return target->measures.remove(e.code, m_out);
    }
}

UnitModel *Model::unit(int row)
{
    return hasUnitRow(row) && !m_units[std::size_t(row)].gone ? &m_units[std::size_t(row)] : nullptr;
}

void Model::addUnit(int index)
{
    UnitModel added;
    added.shown.name = "unit " + std::to_string(++m_lastUnit);
    added.measures.name = added.shown.name;
    if (const UnitModel *const source = unit(index)) {
        added.shown.local = source->shown.local;
        added.shown.zone = char(source->shown.zone + 1);
    }
    m_units.push_back(added);
    tellInserted("units", added.shown.name, m_units.size() - 1, m_units.size(), m_out);
}

void Model::removeUnits(std::size_t first, std::size_t last)
{
    m_units.erase(m_units.begin() + long(first), m_units.begin() + long(last) + 1);
    tellRemoved("units", first, last, m_units.size(), m_out);
}

void Model::moveUnit(int from, int to)
{
    if (from == to || !hasUnitRow(from) || !hasUnitRow(to))
        return;
    // Always the higher row, always to the lower one.
    const auto lowest = m_units.begin() + std::min(from, to);
    const auto highest = m_units.begin() + std::max(from, to);
    tell("units: row " + std::to_string(std::max(from, to)) + " moved to "
         + std::to_string(std::min(from, to)));
    std::rotate(lowest, highest, highest + 1);
}

} // namespace orders
