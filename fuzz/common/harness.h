// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef FUZZ_HARNESS_H
#define FUZZ_HARNESS_H

#include <QByteArray>
#include <QString>

/// The frame around every target: a Qt application, a log that composes its lines and drops them, and the
/// oracles that all targets share (heapwatch.h).
namespace fuzz {

// Each target defines these two.

/// Once, before the first input.
void prepare();
/// One input. Leaves nothing behind for the next one.
void run(const QByteArray &input);

/// Ends the process so that libFuzzer keeps the input.
[[noreturn]] void fail(const char *file, int line, const QString &what);

} // namespace fuzz

#define FUZZ_VERIFY(condition)                                                                               \
    do {                                                                                                     \
        if (!(condition))                                                                                    \
            fuzz::fail(__FILE__, __LINE__, QStringLiteral(#condition));                                      \
    } while (false)

/// \p what tells both sides.
#define FUZZ_VERIFY2(condition, what)                                                                        \
    do {                                                                                                     \
        if (!(condition))                                                                                    \
            fuzz::fail(__FILE__, __LINE__, what);                                                            \
    } while (false)

#endif // FUZZ_HARNESS_H
