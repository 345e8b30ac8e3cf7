// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
//
// How each event reaches the controller: what the links bring through the links, what the interface does as
// QML does it.
#include <QFile>

#include "calibration.h"
#include "halvar-error.h"
#include "measurelistmodel.h"
#include "pin.h"
#include "rigservice.h"
#include "ud.h"
#include "udlistmodel.h"

namespace nap = com::halvar::nap;

namespace orders {

namespace {

tessel::TimeDate date(int day)
{
    return day > 0 ? tessel::TimeDate(2024, 3, day) : tessel::TimeDate();
}

nap::NotificationMessage otherMessage(const std::string &kind)
{
    // With everything that the known kinds carry: it is the kind that decides.
    nap::NotificationMessage ret;
    ret.set_id(tessel::AString(kind.c_str()));
    ret.set_status(nap::NOT_STARTED);
    ret.set_error(nap::DPP_ERROR);
    nap::AcqConditions conditions;
    conditions.set_readyForAcquisition(true);
    ret.set_conditions(conditions);
    if (kind != "NAP_STATUS")
        ret.set_detection(nap::DetectionResult());
    return ret;
}

} // namespace

void Rig::setGauge(int voltage)
{
    const QString gauge = QStringLiteral("/sys/class/power_supply/bq27510-0/voltage_now");
    QFile::remove(gauge);
    if (voltage == -1)
        return;
    QFile file(gauge);
    if (!file.open(QIODevice::WriteOnly))
        qFatal("Cannot write the battery's gauge");
    file.write(voltage >= 0 ? QByteArray::number(voltage) + '\n' : QByteArrayLiteral("-3900000\n"));
}

void Rig::apply(const Event &event)
{
    if (event.kind <= Kind::WaitForTimer)
        applyLink(event);
    else if (event.kind <= Kind::WriteHome)
        applySetting(event);
    else if (event.kind <= Kind::RemoveMeasureFiles)
        applySlot(event);
    else if (event.kind < Kind::AddUnit)
        applyCompanion(event);
    else
        applyUnit(event);
    if (!event.held && m_answering == 0)
        deliver();
}

void Rig::applyLink(const Event &e)
{
    const auto status = static_cast<nap::AcqStatus>(e.number);
    switch (e.kind) {
    case Kind::MspEvent:
        return fromMsp([e](MSPClient *client) {
            emit client->msp_event(static_cast<MSPClient::MSPEvent>(e.number), short(e.code));
        });
    case Kind::MspInfo: {
        MSPInfo info;
        info.fwVersion = QString::fromStdString("fw " + e.text);
        info.MSPVersion = QString::fromStdString("server " + e.text);
        info.setState(static_cast<MSPInfo::MSPState>(e.number));
        info.setShock(e.shock);
        info.setShutter(e.shutter);
        return fromMsp([info](MSPClient *client) { emit client->msp_info(info); });
    }
    case Kind::MspSuccess:
        return fromMsp([e](MSPClient *client) { emit client->msp_success(e.flag); });
    case Kind::Status:
        return fromService([this, status] { m_service->notifyStatus(status); });
    case Kind::StatusWithConditions:
        return fromService([this, e, status] {
            nap::AcqConditions conditions;
            conditions.set_readyForAcquisition(e.flag);
            conditions.set_temperature(e.value);
            conditions.set_acceleratingVoltage(e.sigma);
            m_service->notifyConditions(status, conditions);
        });
    case Kind::StatusWithError:
        return fromService(
            [this, e, status] { m_service->notifyError(status, static_cast<nap::AcqError>(e.code)); });
    case Kind::Result:
        return fromService([this, e] {
            nap::DetectionResult result;
            result.set_value(e.value);
            result.set_sigma(e.sigma);
            if (e.flag)
                result.set_decision(static_cast<nap::DetectionDecision>(e.number));
            m_service->notifyDetection(result);
        });
    case Kind::OtherMessage:
        return fromService([this, e] { m_service->notify(otherMessage(e.text)); });
    case Kind::CalibrationDate: // nobody sends it: the slot is there for the interface
        return m_controller->nap_CalibrationDate(date(e.number));
    case Kind::AnswerMeasureId:
        return m_service->setLastMeasureId(e.number);
    case Kind::AnswerDate:
        return m_service->setCalibrationDate(date(e.number));
    case Kind::AnswerStatus:
        return m_service->setStatus(QString::fromStdString(e.text), e.number);
    case Kind::BatteryVoltage:
        return setGauge(e.number);
    case Kind::WaitForTimer:
        deliver();
        return m_clock.advance(untilExpiry(), deliver);
    default:
        deliver();
        return m_clock.advance(e.number, deliver);
    }
}

void Rig::applySetting(const Event &e)
{
    HalvarController *const c = m_controller;
    const auto write = [c](const char *property, const QVariant &value) { c->setProperty(property, value); };
    const QString text = QString::fromStdString(e.text);
    switch (e.kind) {
    case Kind::SetAccuracyStage:
        return c->setAccuracyStage(static_cast<AccuracyStageEnumClass::AccuracyStage>(e.number));
    case Kind::SetCurrentAccuracy: {
        Measure *const accuracies[] = {c->accuracyLive, c->accuracyInit, c->accuracyInterrupt,
                                       c->accuracyFinal};
        return c->setCurrentAccuracy(accuracies[e.number]);
    }
    case Kind::SetAcquisitionMode:
        return c->setAcquisitionMode(static_cast<AcquisitionModeEnumClass::AcquisitionMode>(e.number));
    case Kind::SetBranchMode:
        return c->setBranchMode(static_cast<BranchModeEnumClass::BranchMode>(e.number));
    case Kind::SetMeasureMode:
        return c->setMeasureMode(static_cast<MeasureModeEnumClass::MeasureMode>(e.number));
    case Kind::SetNbMeasures:
        return write("nbMeasures", e.number);
    case Kind::SetMeasureTime:
        return write("measureTime", e.number);
    case Kind::SetUdIndex:
        return write("udIndex", e.number);
    case Kind::SetUdIndexEdition:
        return write("udIndexEdition", e.number);
    case Kind::SetUdLocal:
        return write("udLocal", text);
    case Kind::SetLight:
        return write("light", e.flag);
    case Kind::SetFileName:
        return write("fileName", text);
    case Kind::SetLocalization:
        return write("localization", text);
    case Kind::SetEnableMeasure:
        return c->setEnableMeasure(e.flag);
    case Kind::SwitchLight:
        return c->switchLight(e.flag);
    case Kind::SwitchOffLight:
        return c->switchOffLight();
    case Kind::WriteTemperature:
        return write("temperature", e.number);
    case Kind::WriteVoltage:
        return write("voltage", e.number);
    case Kind::WriteCalibrationDate:
        return write("lastCalibrationDate", text);
    case Kind::WriteWaitingForGo:
        return write("waitingForGo", e.flag);
    case Kind::WriteEffondrement:
        return write("effondrement", e.flag);
    case Kind::WriteCoulures:
        return write("coulures", e.flag);
    case Kind::WriteHumidite:
        return write("humidite", e.flag);
    case Kind::WriteEditionMode:
        return write("editionMode", e.flag);
    default:
        return write("home", homeOf(e.flag));
    }
}

QString Rig::pathOf(const std::string &name) const
{
    return m_controller->property("home").toString() + QLatin1String("files/") + QString::fromStdString(name)
        + QLatin1String(".xml");
}

void Rig::applySlot(const Event &e)
{
    HalvarController *const c = m_controller;
    switch (e.kind) {
    case Kind::StartAccuracyCheck:
        return c->startAccuracyCheck();
    case Kind::StopAccuracyCheck:
        return c->stopAccuracyCheck();
    case Kind::StartCalibration:
        return c->startCalibration();
    case Kind::StopCalibration:
        return c->stopCalibration();
    case Kind::StopMeasure:
        return c->stopMeasure();
    case Kind::StopMeasureProperly:
        return c->stopMeasureProperly();
    case Kind::RequestUpdate:
        return c->requestUpdate();
    case Kind::ResetShock:
        return c->resetShock();
    case Kind::AckError:
        return c->ackError();
    case Kind::EndHoldOff:
        return c->waitingForGo();
    case Kind::SwitchWifi:
        return c->switchWifi(e.flag);
    case Kind::Shutdown:
        return c->shutdown();
    case Kind::InitFile:
        return c->initFile();
    case Kind::SaveFile:
        return c->saveFile();
    case Kind::LoadFile:
        return c->loadFile(pathOf(e.text));
    case Kind::RemoveFile:
        return c->removeFile(pathOf(e.text));
    default:
        return c->removeMeasureFiles();
    }
}

void Rig::applyCompanion(const Event &e)
{
    const HalvarController *const c = m_controller;
    switch (e.kind) {
    case Kind::PinDigit:
        return c->pin->enterDigit(QString::fromStdString(e.text));
    case Kind::PinClearDigit:
        return c->pin->clearDigit();
    case Kind::PinClearDigits:
        return c->pin->clearDigits();
    case Kind::PinCheck: {
        const bool right = c->pin->checkSecret();
        return m_watcher->add(right ? "checkSecret returns true" : "checkSecret returns false");
    }
    case Kind::PinEnable:
        return c->pin->enable();
    case Kind::PinDisable:
        return c->pin->setDisabled(e.flag);
    case Kind::PinAccept:
        return c->pin->setAccepted(e.flag);
    case Kind::PinSecret:
        return c->pin->setSecret(e.number);
    case Kind::SetCalibrationState:
        return c->calibration->setCalibrationState(
            static_cast<CalibrationEnumClass::CalibrationStatut>(e.number));
    case Kind::SetMaxCalibrations:
        return c->calibration->setNbMaxCalibration(e.number);
    case Kind::ResetCalibrations:
        return c->calibration->resetNbCalibration();
    case Kind::SetErrorMessage:
        return c->error->setErrorMessage(QString::fromStdString(e.text));
    case Kind::ResetErrorMessage:
        return c->error->resetErrorMessage();
    case Kind::SetShock:
        return c->error->setShock(e.flag);
    default:
        return c->error->setReadyForAcquisition(e.flag);
    }
}

void Rig::applyUnit(const Event &e)
{
    const HalvarController *const c = m_controller;
    switch (e.kind) {
    case Kind::AddUnit:
        return c->uds->add(e.number);
    case Kind::RemoveUnit:
        return c->uds->remove(e.number);
    case Kind::MoveUnit:
        return c->uds->move(e.number, e.code);
    case Kind::ClearUnits:
        return c->uds->clear();
    case Kind::RemoveDirect:
        return c->directMeasures->remove(e.number);
    case Kind::ClearDirect:
        return c->directMeasures->clear();
    case Kind::DeleteDirect:
        delete c->directMeasures->at(e.number);
        return;
    case Kind::DeleteUnit:
        delete c->uds->at(e.number);
        return;
    case Kind::NoteMeasure:
        if (Measure *const measure = c->directMeasures->at(e.number)) {
            measure->setLocalisation(static_cast<LocalisationEnumClass::Localisation>(e.code % 6));
            measure->setDegradationState(
                static_cast<DegradationStateEnumClass::DegradationState>(e.code % 4));
            measure->setConservationState(QString::fromStdString(e.text));
        }
        return;
    default:
        break;
    }
    UD *const unit = c->uds->at(e.number);
    if (!unit)
        return;
    switch (e.kind) {
    case Kind::SetStatut:
        return unit->setStatut(static_cast<UDStatutEnumClass::UDStatut>(e.code));
    case Kind::SetObservation:
        return unit->setObservation(QString::fromStdString(e.text));
    case Kind::SetUnitLocal:
        return unit->setLocal(QString::fromStdString(e.text));
    case Kind::UpdateStatut:
        return unit->updateStatut(e.code);
    case Kind::DeleteUnitMeasure:
        delete unit->measures()->at(e.code);
        return;
    default:
        return unit->measures()->remove(e.code);
    }
}

} // namespace orders
