// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef INTERFACE_INTERFACE_H
#define INTERFACE_INTERFACE_H

#include <QLocale>
#include <QQmlApplicationEngine>
#include <QTranslator>

#include "diagnosticfiles.h"
#include "loglines.h"

class Config;
class Database;
class HalvarController;
class QQuickWindow;

/// The screens of the instrument, on the library's objects, which it hands to QML as they are.
///
/// QML finds: controller, uds, directMeasures, pin, battery, date, error, calibration, config, database; the
/// reference lists rooms, elements, substrates, coatings, reasonsNotVisited, reasonsNotMeasured, statesOfUse,
/// statesOfDegradation; usedRooms and shocks; accuracyMeasures, by stage; and of its own diagnosticFiles and
/// logLines.
class Interface
{
public:
    /// What has to be done once, before any window: style, font, declarations to QML, and Qt's messages into
    /// the log.
    static void prepare();

    /// None is owned; all outlive this. The controller may be initialised before or after.
    Interface(HalvarController &controller, Config &config, Database &database,
              const QLocale &locale = QLocale());
    ~Interface();

    /// Opens the window. \param properties initial ones of Main.qml.
    /// \return null when the screens cannot be loaded; the log says why.
    QQuickWindow *load(const QVariantMap &properties = {});

    QQmlApplicationEngine &engine() { return m_engine; }
    /// Gives another engine the same objects and modules, for single components.
    void declareIn(QQmlEngine &engine);
    DiagnosticFiles &files() { return m_files; }

private:
    Q_DISABLE_COPY(Interface)
    HalvarController &m_controller;
    Config &m_config;
    Database &m_database;
    QTranslator m_translator;
    DiagnosticFiles m_files;
    LogLines m_log;
    QQmlApplicationEngine m_engine;
};

#endif // INTERFACE_INTERFACE_H
