// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include "faultwatch.h"

#include <atomic>
#include <cerrno>
#include <csignal>
#include <map>

#include <fcntl.h>
#include <pthread.h>
#include <unistd.h>

namespace faultshim {

namespace {

struct Watch
{
    pthread_t thread = {};
    Plan plan;
    std::vector<Event> events;
    std::map<int, std::string> descriptors;
};

// Calls come before any constructor has run, when a program starts.
std::atomic<bool> armed{false};

Watch &watch()
{
    static Watch instance;
    return instance;
}

[[noreturn]] void die()
{
    kill(getpid(), SIGKILL);
    for (;;)
        pause();
}

Verdict fail()
{
    watch().events.back().error = errno = watch().plan.error;
    return Verdict::Fail;
}

} // namespace

bool watching()
{
    return armed.load() && pthread_equal(watch().thread, pthread_self());
}

std::string absolute(int directory, const char *name)
{
    std::string path;
    if (name[0] != '/') {
        const auto known = watch().descriptors.find(directory);
        if (known != watch().descriptors.end()) {
            path = known->second;
        } else if (directory == AT_FDCWD) {
            char current[4096];
            if (getcwd(current, sizeof current))
                path = current;
        }
        path += '/';
    }
    for (const char *c = name; *c; ++c) {
        if (*c != '/' || path.empty() || path.back() != '/')
            path += *c;
    }
    return path;
}

bool concerns(const std::string &path)
{
    for (const std::string &directory : watch().plan.directories) {
        if (path.compare(0, directory.size(), directory) == 0
            && (path.size() == directory.size() || path[directory.size()] == '/'))
            return true;
    }
    return false;
}

std::string pathOf(int descriptor)
{
    const auto known = watch().descriptors.find(descriptor);
    return known == watch().descriptors.end() ? std::string() : known->second;
}

void remember(int descriptor, const std::string &path)
{
    watch().descriptors[descriptor] = path;
    watch().events.back().descriptor = descriptor;
}

void forget(int descriptor)
{
    watch().descriptors.erase(descriptor);
}

void answered(long long result)
{
    Event &event = watch().events.back();
    if (result < 0) {
        event.error = errno;
        return;
    }
    if (event.kind != Kind::Write)
        return;
    const bool half = static_cast<size_t>(result) < event.bytes.size();
    event.bytes.resize(static_cast<size_t>(result));
    if (half && watch().plan.fault == Fault::KillHalfWritten)
        die();
}

Verdict pass(Event event)
{
    Watch &all = watch();
    const Kind kind = event.kind;
    all.events.push_back(std::move(event));
    const int number = static_cast<int>(all.events.size());
    const bool here = number == all.plan.call;
    const bool later = number > all.plan.call;
    switch (all.plan.fault) {
    case Fault::None:
        break;
    case Fault::Kill:
        if (here)
            die();
        break;
    case Fault::FailOnce:
        return here ? fail() : Verdict::Proceed;
    case Fault::FailFromHere:
        return here || later ? fail() : Verdict::Proceed;
    case Fault::ShortWriteThenFail:
        if (later)
            return fail();
        [[fallthrough]];
    case Fault::KillHalfWritten:
    case Fault::ShortWrite:
        return here && kind == Kind::Write ? Verdict::Half : Verdict::Proceed;
    case Fault::Act:
        if (here) {
            armed = false;
            all.plan.action();
            armed = true;
        }
        break;
    }
    return Verdict::Proceed;
}

void arm(const Plan &plan)
{
    Watch &all = watch();
    all.thread = pthread_self();
    all.plan = plan;
    all.events.clear();
    all.descriptors.clear();
    armed = true;
}

std::vector<Event> disarm()
{
    armed = false;
    return watch().events;
}

std::string describe(const Event &event)
{
    const auto name = [](Kind kind) {
        switch (kind) {
        case Kind::Open:
            return "open";
        case Kind::Read:
            return "read";
        case Kind::Write:
            return "write";
        case Kind::Sync:
            return "sync";
        case Kind::Truncate:
            return "truncate";
        case Kind::Mode:
            return "change mode of";
        case Kind::Rename:
            return "rename";
        case Kind::Link:
            return "link";
        case Kind::Unlink:
            return "unlink";
        case Kind::Close:
            return "close";
        case Kind::Look:
            return "look at";
        }
        return "?";
    };
    return std::string(name(event.kind)) + ' ' + event.path;
}

} // namespace faultshim
