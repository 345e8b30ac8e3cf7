// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include "generator.h"

namespace orders {

namespace {

enum Mode {
    None,
    StartMeasure,
    Measuring,
    Accuracy,
    Calibrating
};
enum MspEvent {
    SysErr,
    ShutOpened,
    TrigOff = 5
};
enum Status {
    NotStarted,
    InProgress,
    Error
};

} // namespace

Generator::Generator(std::uint64_t seed)
    : m_random(seed)
{ }

int Generator::below(int limit)
{
    return int(m_random() % std::uint64_t(limit));
}

Setup Generator::setup()
{
    Setup ret;
    ret.endOfMeasure = below(4);
    ret.lightOff = oneOf({0, 5});
    ret.beforeShutter = oneOf({0, 500, 2000, 3000});
    ret.measureTime = oneOf({0, 1, 2, 5});
    ret.nbMeasures = below(4);
    ret.maxCalibrations = below(4);
    ret.beepTime = below(2);
    ret.waitingForGo = oneOf({0, 3});
    ret.password = oneOf({12345, 0, 99999, 7, 123456});
    ret.traced = chance(20);
    return ret;
}

Sequence Generator::sequence(std::size_t length)
{
    Sequence ret;
    ret.setup = setup();
    m_model = std::make_unique<Model>(ret.setup);
    while (ret.events.size() < length) {
        const Event event = chance(60) ? likely() : anything();
        m_model->apply(m_model->resolved(event));
        ret.events.push_back(event);
    }
    return ret;
}

Event Generator::likely()
{
    if (chance(12))
        return pin();
    if (chance(10))
        return make(oneOf({Kind::SetUdIndexEdition, Kind::AddUnit, Kind::SetBranchMode, Kind::AnswerMeasureId,
                           Kind::SetFileName, Kind::SetStatut, Kind::RemoveUnitMeasure, Kind::AnswerStatus,
                           Kind::RequestUpdate}));
    if (!isUnitInEdition() && chance(30))
        return make(m_model->unitCount() == 0 ? Kind::AddUnit : Kind::SetUdIndexEdition);
    const int dice = below(100);
    switch (m_model->acquisitionMode()) {
    case None:
        if (dice < 40)
            return mspEvent(ShutOpened);
        if (dice < 55)
            return make(Kind::StartAccuracyCheck);
        if (dice < 70)
            return make(Kind::StartCalibration);
        return make(oneOf({Kind::SetMeasureMode, Kind::SetMeasureTime, Kind::SetNbMeasures,
                           Kind::WaitForTimer, Kind::SetLight}));
    case StartMeasure:
        return dice < 75 ? make(Kind::WaitForTimer) : mspEvent(TrigOff);
    case Measuring:
        if (dice < 60)
            return result(dice > 8);
        if (dice < 75)
            return mspEvent(TrigOff);
        if (dice < 85)
            return make(Kind::WaitForTimer);
        return status(dice < 97 ? NotStarted : oneOf<int>({InProgress, Error}));
    case Accuracy:
        if (dice < 60)
            return result(dice > 3);
        return status(dice < 80 ? NotStarted : oneOf<int>({InProgress, Error}));
    case Calibrating:
        return status(oneOf<int>({NotStarted, InProgress, InProgress, Error}));
    default:
        return anything();
    }
}

Event Generator::anything()
{
    return make(static_cast<Kind>(below(int(Kind::KindCount))));
}

Event Generator::mspEvent(int number)
{
    Event ret = make(Kind::MspEvent);
    ret.number = number;
    return ret;
}

Event Generator::status(int number)
{
    Event ret = make(oneOf({Kind::Status, Kind::Status, Kind::StatusWithConditions, Kind::StatusWithError}));
    ret.number = number;
    return ret;
}

Event Generator::result(bool decided)
{
    Event ret = make(Kind::Result);
    ret.flag = decided;
    return ret;
}

Event Generator::pin()
{
    if (m_model->digitsEntered() == 5)
        return make(oneOf({Kind::PinCheck, Kind::PinCheck, Kind::PinClearDigits}));
    Event ret = make(Kind::PinDigit);
    if (chance(95))
        ret.text = std::to_string(m_model->secretDigit(m_model->digitsEntered()));
    return ret;
}

int Generator::anyRow()
{
    return below(int(m_model->unitCount()) + 1) - (chance(5) ? 1 : 0);
}

int Generator::unitRow()
{
    // What happens to a unit matters most where the shots go.
    return isUnitInEdition() && chance(50) ? m_model->rowInEdition() : anyRow();
}

bool Generator::isUnitInEdition() const
{
    const int row = m_model->rowInEdition();
    return row >= 0 && row < int(m_model->unitCount());
}

Event Generator::make(Kind kind)
{
    Event ret;
    ret.kind = kind;
    ret.flag = chance(50);
    ret.held = isFromLink(kind) && chance(10);
    if (kind <= Kind::WaitForTimer)
        makeLink(ret);
    else if (kind <= Kind::WriteHome)
        makeSetting(ret);
    else
        makeCompanion(ret);
    return ret;
}

void Generator::makeLink(Event &e)
{
    switch (e.kind) {
    case Kind::MspEvent:
        e.number = chance(95) ? below(6) : oneOf({-1, 6, 99});
        e.code = chance(90) ? below(7) : oneOf({-1, 32767, -32768});
        break;
    case Kind::MspInfo:
        e.number = below(9);
        e.shock = chance(20);
        e.shutter = chance(20);
        e.text = oneOf({"1", "2", ""});
        break;
    case Kind::Status:
        e.number = chance(95) ? below(3) : oneOf({-1, 3, 99});
        break;
    case Kind::StatusWithConditions:
        e.number = below(3);
        e.value = oneOf({-5.9, 0.0, 21.5, 21.9, 40.0});
        e.sigma = oneOf({-0.5, 0.0, 59999.9, 60000.0});
        break;
    case Kind::StatusWithError:
        e.number = below(3);
        e.code = chance(95) ? below(6) : oneOf({-1, 6});
        break;
    case Kind::Result:
        // What decides a unit comes often.
        e.number = chance(70) ? below(3) : below(9);
        e.flag = chance(85);
        e.value = below(40) / 4.0;
        e.sigma = below(8) / 8.0;
        break;
    case Kind::OtherMessage:
        e.text = oneOf({"NAP_SPECTRUM", "NAP_OTHER", ""});
        break;
    case Kind::CalibrationDate:
    case Kind::AnswerDate:
        e.number = below(4);
        break;
    case Kind::AnswerMeasureId:
        e.number = chance(90) ? below(50) : -1;
        break;
    case Kind::AnswerStatus:
        e.text = oneOf({"getLastMeasure", "getLastCalibrationDate", "startMeasure", "requestStopMeasure",
                        "abort", "startAccuracyCheck", "startCalibration", "sendLastStatus"});
        e.number = oneOf({0, 1, -1, -1000014});
        break;
    case Kind::BatteryVoltage:
        e.number = oneOf({-2, -1, 3300000, 3300001, 3500000, 3500001, 3700000, 3700001, 3900000, 3900001});
        break;
    case Kind::Wait:
        e.number = oneOf({0, 1, 499, 500, 1000, 1999, 2000, 2500, 5000, 60000});
        break;
    default:
        break;
    }
}

void Generator::makeSetting(Event &e)
{
    switch (e.kind) {
    case Kind::SetAccuracyStage:
        e.number = chance(95) ? below(4) : 4;
        break;
    case Kind::SetCurrentAccuracy:
        e.number = below(4);
        break;
    case Kind::SetAcquisitionMode:
        e.number = chance(95) ? below(5) : 5;
        break;
    case Kind::SetBranchMode:
        e.number = chance(85) ? 1 + below(2) : oneOf({0, 3});
        break;
    case Kind::SetMeasureMode:
        e.number = chance(97) ? below(3) : 3;
        break;
    case Kind::SetNbMeasures:
        e.number = chance(90) ? below(4) : oneOf({-1, -1000, 1000});
        break;
    case Kind::SetMeasureTime:
        e.number = chance(90) ? below(5) : oneOf({-1, 3000000, 86400});
        break;
    case Kind::SetUdIndex:
    case Kind::SetUdIndexEdition:
        e.number = anyRow();
        break;
    case Kind::SetUdLocal:
    case Kind::SetLocalization:
        e.text = oneOf({"", "Cuisine", "Entrée"});
        break;
    case Kind::SetFileName:
        e.text = oneOf({"", "a", "Été 1"});
        break;
    case Kind::WriteTemperature:
    case Kind::WriteVoltage:
        e.number = oneOf({-5, 0, 21, 60000});
        break;
    case Kind::WriteCalibrationDate:
        e.text = oneOf({"", "01-03-2024", "hier"});
        break;
    default:
        break;
    }
}

void Generator::makeCompanion(Event &e)
{
    switch (e.kind) {
    case Kind::PinDigit:
        e.text = chance(90) ? std::to_string(below(10)) : oneOf({"", "x", "12", "-1", "40000", "0x1"});
        break;
    case Kind::PinSecret:
        e.number = oneOf({12345, 0, 54321, 123456});
        break;
    case Kind::SetCalibrationState:
        e.number = below(5);
        break;
    case Kind::SetMaxCalibrations:
        e.number = below(5) - 1;
        break;
    case Kind::SetErrorMessage:
        e.text = oneOf({"", "Erreur C5", "autre"});
        break;
    case Kind::AddUnit:
        e.number = below(int(m_model->unitCount()) + 2) - 1;
        break;
    case Kind::SetStatut:
    case Kind::UpdateStatut:
        e.number = unitRow();
        e.code = below(4);
        break;
    case Kind::RemoveUnit:
    case Kind::MoveUnit:
    case Kind::SetObservation:
    case Kind::SetUnitLocal:
    case Kind::RemoveUnitMeasure:
        e.number = unitRow();
        e.code = below(4);
        e.text = oneOf({"", "Salon", "fissure"});
        break;
    case Kind::LoadFile:
    case Kind::RemoveFile:
        e.text = oneOf({"a", "a", "Été 1", "b"});
        break;
    case Kind::DeleteUnit:
    case Kind::DeleteUnitMeasure:
        e.number = unitRow();
        e.code = below(4);
        break;
    case Kind::DeleteDirect:
    case Kind::RemoveDirect:
    case Kind::NoteMeasure:
        e.number = below(int(m_model->directCount()) + 1);
        e.code = below(12);
        e.text = oneOf({"", "bon", "mauvais"});
        break;
    default:
        break;
    }
}

} // namespace orders
