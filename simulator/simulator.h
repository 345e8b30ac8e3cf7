// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef SIMULATOR_SIMULATOR_H
#define SIMULATOR_SIMULATOR_H

#include <QJsonObject>
#include <QObject>

#include <functional>

#include "analysisservice.h"
#include "controlserver.h"
#include "msp.h"
#include "scenario.h"
#include "shellrecord.h"
#include "sysfiles.h"

namespace simulator {

/// The whole instrument: its parts, the commands that drive them, and the scenario's course.
class Simulator : public QObject
{
    Q_OBJECT
public:
    struct Places
    {
        QString control = QStringLiteral("halvar-simulator");
        QString sysClass = QStringLiteral("/sys/class");
        quint16 port = AnalysisService::Port;
        quint16 observerPort = 0; ///< 0: the one that an observer registers
        QString commands; ///< the record of shell commands; empty: there is none
    };

    explicit Simulator(QObject *parent = nullptr);
    Simulator(const Places &places, QObject *parent);
    ~Simulator() override;

    /// Puts the instrument into the scenario's state. Before start().
    void prepare(const Scenario &scenario);
    /// Opens everything that is waited at; false, with a line in \p error, when one place is taken.
    bool start(QString &error);

    Settings &settings() { return m_service.acquisition().settings; }
    /// Carries out a command of the control socket and gives its answer.
    QJsonObject execute(const QJsonObject &command);

signals:
    void quitRequested();
    /// What those who subscribed at the control socket are told, just then.
    void noticed(const QJsonObject &notice);

private:
    using Action = std::function<QString(const QJsonObject &members)>;

    void connectNotices();
    void addInstrumentActions();
    void addMspActions();
    void addNapActions();
    void notice(const QJsonObject &notice);
    void schedule(const Scenario::Step &step);
    QJsonObject status() const;
    QString applyConditions(const QJsonObject &members);
    QString applyMspInfo(const QJsonObject &members);
    QString applyRefusals(const QJsonValue &commands);

    const Places m_places;
    AnalysisService m_service;
    Msp m_msp;
    SysFiles m_files;
    ShellRecord m_shell;
    ControlServer m_control;
    Scenario m_scenario;
    QVector<Scenario::Step> m_waiting; ///< steps that wait for notices
    QHash<QString, Action> m_actions; ///< each gives an empty text, or why it refuses
};

} // namespace simulator

#endif // SIMULATOR_SIMULATOR_H
