// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include "run.h"

#include <csignal>
#include <cstdio>
#include <cstring>
#include <stdexcept>
#include <sys/wait.h>
#include <unistd.h>

#include "filewatch.h"
#include "model.h"
#include "rig.h"

namespace orders {

namespace {

constexpr unsigned HangLimit = 60; // s, for a whole sequence

/// How far the child has come, told after each step in case that it gets no further.
struct Report
{
    std::size_t steps = 0;
    std::size_t length = 0; ///< of the failure that follows; 0 while there is none
};

void tell(int descriptor, std::size_t steps, const std::string &failure)
{
    const Report report{steps, failure.size()};
    std::string bytes(reinterpret_cast<const char *>(&report), sizeof report);
    bytes += failure;
    for (std::size_t done = 0; done < bytes.size();) {
        const ssize_t count = ::write(descriptor, bytes.data() + done, bytes.size() - done);
        if (count < 0)
            ::_exit(2);
        done += std::size_t(count);
    }
}

std::string compare(const Effects &expected, const State &expectedState, Rig &rig)
{
    const Effects seen = rig.takeEffects();
    const State seenState = rig.state();
    std::string ret;
    if (seen != expected)
        ret += "  effects, in order:\n" + difference(expected, seen);
    if (!(seenState == expectedState))
        ret += "  state:\n" + difference(expectedState, seenState);
    return ret;
}

/// With answers to signals: nobody tells in which state all that ends, but some things hold in every state.
void answered(const Sequence &sequence, Rig &rig, int descriptor)
{
    std::size_t steps = 0;
    for (const Event &event : sequence.events) {
        rig.apply(event);
        const std::string failure = rig.inconsistency();
        if (!failure.empty())
            return tell(descriptor, steps, "After event " + std::to_string(steps + 1) + ": " + failure);
        tell(descriptor, ++steps, {});
    }
    const std::string failure = rig.measureOnce();
    tell(descriptor, steps, failure.empty() ? rig.finish() : "At the end: " + failure);
}

void child(const Sequence &sequence, int descriptor)
{
    int argc = 1;
    char name[] = "orders";
    char *argv[] = {name, nullptr};
    auto *const clock = new VirtualClock; // the application's from here on
    QCoreApplication::setEventDispatcher(clock);
    Application application(argc, argv);
    Rig rig(application, *clock, sequence);
    if (!sequence.reactions.empty())
        return answered(sequence, rig, descriptor);
    Model model(sequence.setup);
    std::string failure = compare({}, model.state(), rig);
    if (!failure.empty())
        return tell(descriptor, 0, "At the start:\n" + failure);
    std::size_t steps = 0;
    for (const Event &event : sequence.events) {
        const Event resolved = model.resolved(event);
        const Effects expected = model.apply(resolved);
        rig.apply(resolved);
        failure = compare(expected, model.state(), rig);
        if (!failure.empty())
            return tell(descriptor, steps, "After event " + std::to_string(steps + 1) + ":\n" + failure);
        tell(descriptor, ++steps, {});
    }
    tell(descriptor, steps, rig.finish());
}

std::string endText(int status)
{
    if (WIFSIGNALED(status))
        return WTERMSIG(status) == SIGALRM ? "hangs" : std::string("dies: ") + strsignal(WTERMSIG(status));
    return WEXITSTATUS(status) == 0 ? "" : "ends with status " + std::to_string(WEXITSTATUS(status));
}

bool readAll(int descriptor, void *to, std::size_t size)
{
    char *const bytes = static_cast<char *>(to);
    for (std::size_t done = 0; done < size;) {
        const ssize_t count = ::read(descriptor, bytes + done, size - done);
        if (count <= 0)
            return false;
        done += std::size_t(count);
    }
    return true;
}

} // namespace

Outcome run(const Sequence &sequence)
{
    int ends[2];
    if (::pipe(ends) != 0)
        throw std::runtime_error("no pipe");
    makeBeeperPipe();
    std::fflush(nullptr);
    const pid_t pid = ::fork();
    if (pid < 0)
        throw std::runtime_error("no process");
    if (pid == 0) {
        ::close(ends[0]);
        ::alarm(HangLimit);
        child(sequence, ends[1]);
        ::_exit(0);
    }
    ::close(ends[1]);
    Outcome ret;
    Report report;
    while (readAll(ends[0], &report, sizeof report)) {
        ret.steps = report.steps;
        ret.failure.resize(report.length);
        if (!readAll(ends[0], ret.failure.data(), report.length))
            break;
    }
    ::close(ends[0]);
    int status = 0;
    ::waitpid(pid, &status, 0);
    const std::string end = endText(status);
    if (!end.empty())
        ret.failure += "The controller's process " + end + " at event " + std::to_string(ret.steps + 1)
            + " (one above the last: its destruction)\n";
    return ret;
}

} // namespace orders
