// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef QSLOGLEVEL_H
#define QSLOGLEVEL_H

namespace QsLogging {

/// Severity of a line; a logger lets through its own level and everything above it.
enum Level {
    TraceLevel = 0,
    DebugLevel,
    InfoLevel,
    WarnLevel,
    ErrorLevel,
    FatalLevel,
    OffLevel ///< as a logger's level: nothing is written; never the level of a line
};

} // namespace QsLogging

#endif // QSLOGLEVEL_H
