// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef SIMULATOR_PROGRAM_H
#define SIMULATOR_PROGRAM_H

#include <functional>
#include <memory>

class QCoreApplication;

namespace simulator {

class Simulator;
struct Options;

/// What a program shows of the simulator that it runs.
struct Face
{
    std::function<std::unique_ptr<QCoreApplication>(int &argc, char **argv)> makeApplication;
    /// Opens the windows, which are gone when the result is; null when they cannot be. Empty: there are none,
    /// and for the option --panel the program halvar-simulator-panel beside this one takes its place.
    std::function<std::shared_ptr<void>(Simulator &simulator, const Options &options)> open;
};

/// A whole program, from its command line to its end.
/// \return the exit status.
int run(int argc, char *argv[], const Face &face);

} // namespace simulator

#endif // SIMULATOR_PROGRAM_H
