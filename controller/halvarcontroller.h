// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef HALVAR_HALVARCONTROLLER_H
#define HALVAR_HALVARCONTROLLER_H

#include <QObject>
#include <QSet>
#include <QString>
#include <QThread>

#include <mspclient.h>
#include <mspinfo.h>
#include <nap/napserver.h>
#include <nap/records.h>
#include <tessel/tessel.h>

#include "enums.h"
#include "halvar-export.h"
#include "measure.h"

class QTimer;

class Battery;
class Buzzer;
class Calibration;
class Config;
class Database;
class Date;
class Error;
class MeasureListModel;
class NAPClient;
class PIN;
class UD;
class UDListModel;

/// The one object through which the interface drives the instrument.
///
/// It runs measurements, accuracy checks and calibrations through the analysis service, follows the
/// safety microcontroller (MSP), and keeps, saves and loads the diagnostic. Construct it with the
/// configuration and the reference database already read, hand its companions (public members) to QML,
/// then call init().
///
/// Lives on the interface thread, as do its companions; the links to the service and to the MSP reach
/// it through queued signals only. It owns all it creates, and neither the configuration nor the
/// database, which must outlive it.
class HALVAR_EXPORT HalvarController : public QObject
{
    Q_OBJECT

    /// Stage of the accuracy check; follows the diagnostic (first, interrupted, final check).
    Q_PROPERTY(AccuracyStageEnumClass::AccuracyStage accuracyStage READ accuracyStage WRITE setAccuracyStage
                   NOTIFY accuracyStageChanged)
    /// The result that belongs to the current stage.
    Q_PROPERTY(Measure *currentAccuracy READ currentAccuracy NOTIFY currentAccuracyChanged)
    /// What the instrument is doing; NONE when idle.
    Q_PROPERTY(AcquisitionModeEnumClass::AcquisitionMode acquisitionMode READ acquisitionMode WRITE
                   setAcquisitionMode NOTIFY acquisitionModeChanged)
    /// Where results go: to the direct measures, or to the unit selected for edition.
    Q_PROPERTY(BranchModeEnumClass::BranchMode branchMode READ branchMode WRITE setBranchMode NOTIFY
                   branchModeChanged)
    /// How a measure ends: trigger released, decided by the service, or after measureTime.
    /// Refused while a measure runs; setMeasureMode() never emits the signal.
    Q_PROPERTY(MeasureModeEnumClass::MeasureMode measureMode READ measureMode WRITE setMeasureMode NOTIFY
                   measureModeChanged)
    /// Number of negative measures that makes a unit negative, one more for a unit that has its result. With
    /// 0 a unit without a result is left alone.
    Q_PROPERTY(int nbMeasures READ nbMeasures WRITE setNbMeasures NOTIFY nbMeasuresChanged)
    /// Length of a measure in mode DEFINED, in seconds. Refused while a measure runs.
    Q_PROPERTY(int measureTime READ measureTime WRITE setMeasureTime NOTIFY measureTimeChanged)
    /// Home directory of the instrument's files.
    Q_PROPERTY(QString home MEMBER m_home)
    /// Set by the interface while it edits an existing unit.
    Q_PROPERTY(bool editionMode MEMBER editionMode)
    /// Index of the unit being measured, -1 for none.
    Q_PROPERTY(int udIndex READ udIndex WRITE setUdIndex NOTIFY udIndexChanged)
    /// Index of the unit selected in the unit list, -1 for none; indexed results go to it.
    Q_PROPERTY(int udIndexEdition READ udIndexEdition WRITE setUdIndexEdition NOTIFY udIndexEditionChanged)
    /// Name of the room of the current unit.
    Q_PROPERTY(QString udLocal READ udLocal WRITE setUdLocal NOTIFY udLocalChanged)
    /// The instrument's light; it goes off by itself after the configured time.
    Q_PROPERTY(bool light READ light WRITE setLight NOTIFY lightChanged)
    /// Name of the open diagnostic, without directory and ".xml".
    Q_PROPERTY(QString fileName READ fileName WRITE setFileName NOTIFY fileNameChanged)
    /// Address or place of the open diagnostic.
    Q_PROPERTY(QString localization READ localization WRITE setLocalization NOTIFY localizationChanged)
    /// Building observations of the open diagnostic: collapse, runs, damp.
    Q_PROPERTY(bool effondrement MEMBER effondrement NOTIFY effondrementChanged)
    Q_PROPERTY(bool coulures MEMBER coulures NOTIFY couluresChanged)
    Q_PROPERTY(bool humidite MEMBER humidite NOTIFY humiditeChanged)
    /// Detector temperature in °C and accelerating voltage in V, as the service last reported them.
    ///
    /// Their notify signals are crossed: sendTension announces the property temperature and
    /// sendTemperature the property voltage, while a change reported by the service is signalled under
    /// its own name. The service screens listen to the two signals by name, the status bar reads both
    /// properties on either; both depend on it.
    Q_PROPERTY(int temperature MEMBER temperature NOTIFY sendTension)
    Q_PROPERTY(int voltage MEMBER voltage NOTIFY sendTemperature)
    /// Date of the last calibration, "dd-MM-yyyy"; empty until the service was asked.
    Q_PROPERTY(QString lastCalibrationDate MEMBER lastCalibrationDate NOTIFY sendLastCalibrationDate)
    /// True while the start-up hold-off runs.
    Q_PROPERTY(bool waitingForGo MEMBER m_waitingForGo NOTIFY waitingForGoUpdated)
    /// Number shown with the error acknowledgement; always 1.
    Q_PROPERTY(int ackErrorNb READ ackErrorNb NOTIFY ackErrorNbChanged)

public:
    /// \param home directory of the instrument's files, ending in a separator; also the place of "/files/".
    /// \param config the unit's configuration, already read; null logs a Fatal line and asks the
    ///        application to quit as soon as its event loop runs.
    /// \param database the reference lists, already read.
    /// Starts the Wi-Fi access point and the start-up hold-off. Takes half a second, the time that the
    /// beeper's line needs.
    HalvarController(QString const &home, Config const *config, Database *database,
                     QObject *parent = nullptr);
    /// Stops the worker thread and unregisters the observer from the service.
    ~HalvarController() override;

    /// Brings up the analysis service, the MSP and the battery monitor, and beeps. Once.
    /// Ends the process with status 1 when the analysis service cannot be bound and with status 2 when
    /// the observer cannot be set up: without the service there is nothing to measure with.
    void init();

    AccuracyStageEnumClass::AccuracyStage accuracyStage() const { return m_accuracyStage; }
    Measure *currentAccuracy() const { return m_currentAccuracy; }
    AcquisitionModeEnumClass::AcquisitionMode acquisitionMode() const { return m_acquisitionMode; }
    BranchModeEnumClass::BranchMode branchMode() const { return m_branchMode; }
    MeasureModeEnumClass::MeasureMode measureMode() const { return m_measureMode; }
    int nbMeasures() const { return m_nbMeasures; }
    int measureTime() const { return m_measureTime; }
    int udIndex() const { return m_udIndex; }
    int udIndexEdition() const { return m_udIndexEdition; }
    QString udLocal() const { return m_udLocal; }
    bool light() const { return m_light; }
    QString fileName() const { return m_fileName; }
    QString localization() const { return m_localization; }
    int ackErrorNb() const { return m_ackErrorNb; }

    /// Points currentAccuracy at the stage's result even when the stage does not change.
    void setAccuracyStage(AccuracyStageEnumClass::AccuracyStage stage);
    void setCurrentAccuracy(Measure *accuracy);
    void setAcquisitionMode(AcquisitionModeEnumClass::AcquisitionMode mode);
    void setBranchMode(BranchModeEnumClass::BranchMode mode);
    void setMeasureMode(MeasureModeEnumClass::MeasureMode mode);
    void setNbMeasures(int number);
    void setMeasureTime(int seconds);
    void setUdIndex(int index);
    /// Selecting a unit that already has a result puts the instrument in standby.
    void setUdIndexEdition(int index);
    void setUdLocal(const QString &local);
    void setLight(bool on);
    void setFileName(const QString &name);
    void setLocalization(const QString &localization);

    /// Asks the MSP for the light; leaves the property alone.
    void switchLight(bool on);
    void switchOffLight();

    /// Writes /data/lambrik/info.txt, by which service tools know the instrument and its versions.
    void writeInfoFile(const Config *config);
    /// Deletes the plain files of \p directory and, with \p removeDirectory, the then empty directory.
    void removeFiles(const QString &directory, bool removeDirectory);

    /// Allows measures (MSP in hard mode) or forbids them (standby).
    Q_INVOKABLE void setEnableMeasure(bool enableMeasure);
    Q_INVOKABLE void ackError();
    /// Starts a blank diagnostic.
    Q_INVOKABLE void initFile();
    /// Adds the units of the diagnostic at \p file and takes over its name, place and observations;
    /// call initFile() first. Silent when the file cannot be opened. What a damaged file still
    /// tells stays loaded; one Error line says what is wrong, and a copy is kept beside it.
    Q_INVOKABLE void loadFile(QString file);
    Q_INVOKABLE void removeFile(QString file);
    /// Writes the open diagnostic to home/files/fileName.xml, replacing the old one whole.
    Q_INVOKABLE void saveFile();
    /// Empties the instrument's measurement directories under /data.
    Q_INVOKABLE void removeMeasureFiles();

signals:
    void sendTension(int tension);
    void sendTemperature(int temperature);
    void sendLastCalibrationDate(QString lastCalibrationDate);
    void msp_info_request();
    void msp_send_request(MSPClient::MSPCommand command, QString params = QString());
    void lightChanged();
    void accuracyStageChanged();
    void currentAccuracyChanged();
    void acquisitionModeChanged();
    void branchModeChanged();
    void measureModeChanged();
    void measureTimeChanged();
    void nbMeasuresChanged();
    void fileNameChanged();
    void localizationChanged();
    void couluresChanged();
    void effondrementChanged();
    void humiditeChanged();
    void udIndexChanged();
    void udIndexEditionChanged();
    void udLocalChanged();
    void ackErrorNbChanged();
    void waitingForGoUpdated();

public slots:
    /// Powers the instrument off at once; nothing is saved first.
    void shutdown();

    void nap_AcqStatus(const com::halvar::nap::AcqStatus &status);
    void nap_AcqError(const com::halvar::nap::AcqError &acqError);
    void nap_AcqConditions(const com::halvar::nap::AcqConditions &conditions);
    void nap_DetectionResult(const com::halvar::nap::DetectionResult &result);
    void nap_CalibrationDate(const tessel::TimeDate &calibrationDate);
    /// Asks the service for the calibration date and for its last status.
    void requestUpdate();
    void startAccuracyCheck();
    void stopAccuracyCheck();
    void startCalibration();
    void stopCalibration();

private slots:
    void startMeasure();
    void delayedStopMeasure();

public slots:
    /// Aborts the running measure; acquisitionMode follows when the service reports its end.
    void stopMeasure();
    /// Ends the running measure with its result; acquisitionMode follows likewise.
    void stopMeasureProperly();

    void msp_info_reply(MSPInfo info);
    void msp_success(bool ok);
    void msp_event(MSPClient::MSPEvent event, short code = 0);
    /// Takes the shock back and tells the MSP.
    void resetShock();
    void switchWifi(bool wifi);
    QString getLibControllerVersion();
    QString getMSPFwVersion();
    QString getMSPVersion();
    /// End of the start-up hold-off.
    void waitingForGo();

private:
    // Links, brought up by init().
    void initNAP();
    void initMSP();
    void storeCalibrationDate(const tessel::TimeDate &calibrationDate);

    // What the MSP is asked for.
    void sendMspCommand(MSPClient::MSPCommand command);
    void modeHard();
    void modeStandby();
    void measureDone();
    void triggerReleased();
    void systemError(short code);

    // Steps of an acquisition.
    void callStartMeasure(bool autoStop);
    void abortAcquisition();
    void stopByMeasureMode();
    void accuracyStatus(com::halvar::nap::AcqStatus status);
    void calibrationStatus(com::halvar::nap::AcqStatus status);
    void measureStatus(com::halvar::nap::AcqStatus status);
    void endDirectMeasure();
    void endIndexedMeasure();
    void deriveStatut(UD *unit);
    void fetchMeasureSummary();
    UD *unitInEdition() const;

    void markDamaged(const QString &path);

    QTimer *newTimer(int interval, bool singleShot);

private:
    bool m_light = false;
    QTimer *m_lightTimer = nullptr;
    QString m_home;
    const Config *m_config;
    const Database *m_database;
    bool m_enableMeasure = false;

public:
    bool editionMode = false;

private:
    int m_udIndex = -1;
    int m_udIndexEdition = -1;
    QString m_udLocal;

public:
    // The companions that an application hands to QML; owned by the controller.
    PIN *pin = nullptr;
    Battery *battery = nullptr;
    Date *date = nullptr;
    Error *error = nullptr;
    Measure *accuracyLive = nullptr;
    Measure *accuracyInit = nullptr;
    Measure *accuracyInterrupt = nullptr;
    Measure *accuracyFinal = nullptr;
    Calibration *calibration = nullptr;
    UDListModel *uds = nullptr;
    MeasureListModel *directMeasures = nullptr;

private:
    QThread workerThread;
    com::halvar::nap::PNAPServer m_napServer;
    static const char m_serverDescription[32];
    tessel::PService m_napObserver;
    static const char m_observerDescription[32];
    const NAPClient *m_nap_client = nullptr; // owned by the observer
    com::halvar::nap::MeasureCustomData m_customData;
    com::halvar::nap::MeasureSummary m_measureSummary;
    QTimer *m_waitingForGoTimer = nullptr;
    bool m_waitingForGo = true;
    QTimer *m_infoTimer = nullptr;
    AccuracyStageEnumClass::AccuracyStage m_accuracyStage = AccuracyStageEnumClass::ACCURACY_INIT;
    AcquisitionModeEnumClass::AcquisitionMode m_acquisitionMode = AcquisitionModeEnumClass::NONE;
    BranchModeEnumClass::BranchMode m_branchMode = BranchModeEnumClass::NONE;
    MeasureModeEnumClass::MeasureMode m_measureMode = MeasureModeEnumClass::AUTO;
    int m_timeBeforeOpenShutter = 0;
    QTimer *m_timeBeforeOpenShutterTimer = nullptr;
    QTimer *m_timeToStopMeasureTimer = nullptr;
    int m_measureTime = 2;
    QTimer *m_measureTimer = nullptr;
    int m_nbMeasures = 2;
    int m_nbNapMeasure = 0;
    Measure *m_currentAccuracy = nullptr;
    Buzzer *m_buzzer = nullptr;
    QString m_fileName;
    QString m_localization;

public:
    bool coulures = false;
    bool effondrement = false;
    bool humidite = false;

private:
    int m_ackErrorNb = 1;
    int temperature = 0;
    int voltage = 0;
    QString lastCalibrationDate;
    QString MspFwVersion;
    QString MspVersion;

    QSet<QString> m_damagedFiles; ///< not read whole, and no copy could be kept yet
};

#endif // HALVAR_HALVARCONTROLLER_H
