// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
//
// A log line below the logger's level beside the least that keeping it out can cost.
#include <QString>

#include <atomic>

#include <benchmark/benchmark.h>

#include <QsLog.h>

#include "goals.h"

namespace {

using QsLogging::Logger;

// Written out ten times, so that the loop around them does not hide what one costs.
#define TEN_TIMES(what)                                                                                      \
    what;                                                                                                    \
    what;                                                                                                    \
    what;                                                                                                    \
    what;                                                                                                    \
    what;                                                                                                    \
    what;                                                                                                    \
    what;                                                                                                    \
    what;                                                                                                    \
    what;                                                                                                    \
    what

void line(benchmark::State &state)
{
    const QsLogging::Level before = Logger::instance().loggingLevel();
    Logger::instance().setLoggingLevel(QsLogging::InfoLevel);
    int composed = 0;
    for (auto _ : state) {
        TEN_TIMES(QLOG_DEBUG() << "[Halvar Controller]: Enabled! " << ++composed);
    }
    Logger::instance().setLoggingLevel(before);
    if (composed != 0)
        state.SkipWithError("a line was composed");
    state.SetItemsProcessed(state.iterations() * 10);
}

// What another thread may change at any time, so that the compiler has to look each time.
std::atomic<int> level{QsLogging::InfoLevel};

[[gnu::noinline, gnu::cold]] void fail(benchmark::State &state)
{
    state.SkipWithError("a comparison went wrong");
}

void comparison(benchmark::State &state)
{
    for (auto _ : state) {
        TEN_TIMES(if (level.load(std::memory_order_relaxed) <= QsLogging::DebugLevel) fail(state));
    }
    state.SetItemsProcessed(state.iterations() * 10);
}

const bool registered = [] {
    benchmark::RegisterBenchmark("log, line kept out by its level:library", line);
    benchmark::RegisterBenchmark("log, line kept out by its level:integer comparison", comparison);

    goal("log, line kept out by its level", "integer comparison", 3.0);
    return true;
}();

} // namespace
