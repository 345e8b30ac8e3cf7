// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
//
// What the controller, its lists and proxies add to the start of an application: processor time of a fresh
// process and memory that is resident then.
#include <QCoreApplication>
#include <QFile>

#include <algorithm>
#include <cstdio>
#include <optional>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include "goals.h"

namespace {

struct Cost
{
    double nanoseconds = 0;
    double bytes = 0;
};

// What the started process says of itself: see start/ready.h.
std::optional<Cost> start(const std::vector<std::string> &command)
{
    int ends[2];
    if (::pipe2(ends, O_CLOEXEC) != 0)
        return std::nullopt;
    posix_spawn_file_actions_t actions;
    ::posix_spawn_file_actions_init(&actions);
    ::posix_spawn_file_actions_adddup2(&actions, ends[1], STDOUT_FILENO);
    std::vector<char *> arguments;
    for (const std::string &word : command)
        arguments.push_back(const_cast<char *>(word.c_str()));
    arguments.push_back(nullptr);
    pid_t process = 0;
    const bool started =
        ::posix_spawn(&process, arguments[0], &actions, nullptr, arguments.data(), environ) == 0;
    ::posix_spawn_file_actions_destroy(&actions);
    ::close(ends[1]);
    std::string text;
    char piece[64];
    for (ssize_t size = 0; started && (size = ::read(ends[0], piece, sizeof piece)) > 0;)
        text.append(piece, std::size_t(size));
    ::close(ends[0]);
    int status = -1;
    Cost cost;
    if (!started || ::waitpid(process, &status, 0) != process || status != 0
        || std::sscanf(text.c_str(), "%lf %lf", &cost.nanoseconds, &cost.bytes) != 2)
        return std::nullopt;
    return cost;
}

void measure(benchmark::State &state, const char *program, const char *argument)
{
    std::vector<std::string> command{QFile::encodeName(QCoreApplication::applicationDirPath()).toStdString()
                                     + '/' + program};
    if (argument)
        command.push_back(argument);
    std::vector<double> times;
    std::vector<double> sizes;
    for (auto _ : state) {
        const auto cost = start(command);
        if (!cost) {
            state.SkipWithError("the start failed");
            return;
        }
        times.push_back(cost->nanoseconds);
        sizes.push_back(cost->bytes);
    }
    state.counters["[ns]"] = *std::min_element(times.begin(), times.end());
    state.counters["resident memory [B]"] = *std::min_element(sizes.begin(), sizes.end());
}

const bool registered = [] {
    const std::string what = "start, controller, lists and proxies";
    // Constructing a controller runs shell commands.
    if (qgetenv("HALVAR_INSTRUMENT") == "1") {
        using benchmark::RegisterBenchmark;
        const auto row = [&what](const char *variant, const char *program, const char *argument) {
            RegisterBenchmark((what + variant).c_str(), measure, program, argument)->Iterations(50);
        };
        row(":library", "halvar-start", HALVAR_SOURCE_DIR "/simulator/home/");
        row(":Qt", "halvar-start", nullptr);
        // Where most of the difference lies, which is not ours to change.
        row(":Qt and its proxies", "halvar-start", "--proxies");
        row(":Qt, not linked to the library", "halvar-start-plain", nullptr);
    }
    goal(what, "Qt", 1.1);
    goal(what, "Qt and its proxies", 1.1);
    goalDifference(what + ", resident memory", "Qt", 2e6);
    return true;
}();

} // namespace
