// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef DIAGNOSTIC_FAILURE_H
#define DIAGNOSTIC_FAILURE_H

#include <QString>

/// Thrown where the recording cannot go on; the program says it in one line and ends with the status.
struct Failure
{
    /// The recording failed: the instrument or the library did not do what was expected.
    static constexpr int failed = 1;
    /// The program was told something impossible: an option, a scenario.
    static constexpr int wrongUsage = 2;

    QString text;
    int status = failed;
};

#endif // DIAGNOSTIC_FAILURE_H
