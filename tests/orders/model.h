// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef ORDERS_MODEL_H
#define ORDERS_MODEL_H

#include <map>

#include "event.h"
#include "modelcompanions.h"
#include "modelmeasure.h"

namespace orders {

/// What the controller has to do, in plain values: no Qt, nothing of the library. It was written from the
/// tables and rules of the instrument, not from the library's code, and stays so: where both differ, one of
/// them is wrong.
class Model
{
public:
    explicit Model(const Setup &setup);

    /// What \p event leads to, in order.
    Effects apply(const Event &event);
    State state() const;
    /// An event of which "up to the next expiry" is told in milliseconds, any other as it is.
    Event resolved(const Event &event) const;

    // For whoever makes up events.
    int acquisitionMode() const { return m_state.acquisitionMode; }
    int rowInEdition() const { return m_state.udIndexEdition; }
    std::size_t unitCount() const { return m_units.size(); }
    std::size_t directCount() const { return m_direct.rows.size(); }
    int digitsEntered() const { return int(m_pin.entered.size()); }
    int secretDigit(int position) const { return m_pin.secret[std::size_t(position)]; }

private:
    enum Acquisition {
        None,
        StartMeasure,
        Measuring,
        Accuracy,
        Calibrating
    };
    enum Mode {
        Trigger,
        Auto,
        Defined
    };
    enum Branch {
        NoBranch,
        Direct,
        Indexed
    };

    /// What a diagnostic file holds.
    struct Document
    {
        std::string name;
        std::string place;
        std::vector<MeasureModel> accuracies; ///< all four
        std::vector<UnitModel> units;
        bool effondrement = false;
        bool coulures = false;
        bool humidite = false;
    };

    void handle(const Event &event);
    void deliver();

    // modelacquisition.cpp: how acquisitions run.
    void applyLink(const Event &event);
    void mspEvent(int event, int code);
    void mspInfo(const Event &event);
    void systemError(int code);
    void triggerReleased();
    void startMeasure();
    void stopMeasure();
    void stopMeasureProperly();
    void stopByMode();
    void delayedStop();
    void startAccuracy();
    void stopAccuracy();
    void startCalibration();
    void stopCalibration();
    void status(int status);
    void endOfMeasure();
    void endOfUnitMeasure();
    void conditions(bool ready, int temperature, int voltage);
    void acquisitionError(int error);
    void result(const Shot &shot);
    void expired(int timer);
    void wait(int milliseconds);

    // model.cpp: settings and companions.
    void applySetting(const Event &event);
    void applySlot(const Event &event);
    void applyCompanion(const Event &event);
    void applyUnit(const Event &event);
    void setAcquisitionMode(int mode);
    void setAccuracyStage(int stage);
    void setCurrentAccuracy(int index);
    void setEnableMeasure(bool enable);
    void setUdIndexEdition(int index);
    void setMeasureTime(int seconds);
    void setLight(bool on);
    void setShock(bool shock);
    void setReady(bool ready);
    void setErrorMessage(const std::string &message);
    void storeCalibrationDate(const std::string &date);
    void requestUpdate();
    void readBattery();
    void disablePin(bool disabled);
    void addUnit(int index);
    bool hasUnitRow(int row) const { return row >= 0 && row < int(m_units.size()); }
    void removeUnits(std::size_t first, std::size_t last);
    void moveUnit(int from, int to);

    // modelfile.cpp: the diagnostic and its file.
    void applyFile(const Event &event);
    void initFile();
    void saveFile();
    void loadFile(const std::string &path);
    void loadAccuracies(const Document &document);
    void loadUnits(const Document &document);
    std::string pathOf(const std::string &name) const;

    void tell(const std::string &effect) { m_out.push_back(effect); }
    void msp(const char *command) { tell(std::string("MSP ") + command); }
    void call(const std::string &operation) { tell("service " + operation); }
    void beep();
    void fetchMeasureSummary();
    bool refused(const std::string &operation) const;
    MeasureModel &currentAccuracy() { return m_accuracies[std::size_t(m_currentAccuracy)]; }
    UnitModel *unit(int row);
    template <typename T>
    void set(T &member, const T &value, const std::string &effect)
    {
        if (member == value)
            return;
        member = value;
        tell(effect);
    }

    State m_state; ///< what is a plain value; the rest of it is put together by state()
    Effects m_out;
    ClockModel m_clock;
    CalibrationModel m_calibration;
    PinModel m_pin;
    std::array<MeasureModel, 4> m_accuracies;
    int m_currentAccuracy = 1;
    MeasuresModel m_direct;
    std::vector<UnitModel> m_units;
    int m_lastMeasure = 0; ///< number of the newest row of any list
    int m_lastUnit = 0;
    bool m_enableMeasure = false;
    int m_results = 0; ///< stored since the shutter opened
    int m_lightOff; ///< s
    int m_beepTime; ///< µs
    int m_summaryId = 0;

    std::vector<Event> m_onTheirWay;
    std::map<std::string, Document> m_saved; ///< by path
    int m_voltage = 4050000; ///< what the battery's gauge gives

    // The service's side.
    int m_answerId = 0;
    std::string m_answerDate;
    std::map<std::string, int> m_answerStatus;
};

/// "DD-03-2024" for a day above 0, else the first day of the service's time.
std::string dateText(int day);

} // namespace orders

#endif // ORDERS_MODEL_H
