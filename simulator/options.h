// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef SIMULATOR_OPTIONS_H
#define SIMULATOR_OPTIONS_H

#include <QPoint>
#include <QString>
#include <QStringList>

#include <optional>

#include <QsLog.h>

namespace simulator {

/// What the command line asks for.
struct Options
{
    QString scenario = QStringLiteral("calm");
    std::optional<quint32> seed;
    std::optional<double> speed;
    QString home;
    QString control = QStringLiteral("halvar-simulator");
    quint16 napPort = 3555;
    quint16 observerPort = 0; ///< 0: the one that an observer registers
    QsLogging::Level logLevel = QsLogging::WarnLevel;
    int readyFd = -1;
    bool panel = false;
    QPoint position; ///< of the panel's window on the screen
    QString language = QStringLiteral("fr");
    bool help = false;

    /// Reads \p arguments, the program's name first. False, with a line in \p error, when they are wrong.
    bool parse(const QStringList &arguments, QString &error);
    static QString helpText();
};

} // namespace simulator

#endif // SIMULATOR_OPTIONS_H
