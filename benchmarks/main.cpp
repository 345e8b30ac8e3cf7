// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include <QFile>
#include <QGuiApplication>

#include <algorithm>
#include <cstdio>
#include <cstring>

#include <benchmark/benchmark.h>
#include <malloc.h>

#include <QsLog.h>

#include "peer.h"
#include "ratiotable.h"

namespace {

const char *const usage = R"(halvar-benchmarks [--table=FILE] [--report] [--benchmark_...]
Measures the library's core paths beside limits and prints the ratios and whether they meet their goals.
  --table=FILE   writes rows, ratios and verdicts to FILE as JSON
  --join=FILE    measures nothing, but judges the rows of this and other --join=FILE, which earlier runs have
                 written as their --table
  --report       a missed goal does not fail the run
  --benchmark_filter=REGEX, --benchmark_repetitions=N and the other options of Google Benchmark
The exit status is 0 when all that ran worked and met its goal, 1 when not, 2 for a wrong option
or a filter that fits nothing.
)";

struct Options
{
    QString table;
    QStringList join;
    bool report = false;
    bool help = false;
};

// Takes our own options out of the command line; the rest is Google Benchmark's.
Options takeOptions(int &argc, char **argv)
{
    Options options;
    const auto mine = [&options](const char *argument) {
        if (std::strncmp(argument, "--table=", 8) == 0)
            options.table = QFile::decodeName(argument + 8);
        else if (std::strncmp(argument, "--join=", 7) == 0)
            options.join += QFile::decodeName(argument + 7);
        else if (std::strcmp(argument, "--report") == 0)
            options.report = true;
        else if (std::strcmp(argument, "--help") == 0)
            options.help = true;
        else
            return false;
        return true;
    };
    argc = int(std::remove_if(argv + 1, argv + argc, mine) - argv);
    argv[argc] = nullptr;
    return options;
}

} // namespace

int main(int argc, char **argv)
{
    if (argc == 2 && std::strcmp(argv[1], "--peer") == 0)
        return runPeer(argc, argv);
    const Options options = takeOptions(argc, argv);
    if (options.help) {
        std::fputs(usage, stdout);
        return 0;
    }
    // A program that has run for a while has its heap. What the kernel takes to give the pages of a large
    // list, and to give them again to the next, is not the list's.
    mallopt(M_TRIM_THRESHOLD, 1 << 30);
    QGuiApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 2;
    // Lines would be composed and then go nowhere.
    QsLogging::Logger::instance().setLoggingLevel(QsLogging::WarnLevel);
    RatioTable table(benchmark::GetBenchmarkFilter().empty());
    for (const QString &path : options.join) {
        if (!table.read(path)) {
            std::fprintf(stderr, "%s holds no rows of an earlier run.\n", qPrintable(path));
            return 1;
        }
    }
    if (!options.join.isEmpty())
        table.Finalize();
    else if (benchmark::RunSpecifiedBenchmarks(&table) == 0)
        return 2; // Google Benchmark has said that the filter fits nothing
    if (!options.table.isEmpty() && !table.write(options.table)) {
        std::fprintf(stderr, "Cannot write %s.\n", qPrintable(options.table));
        return 1;
    }
    return table.isComplete() && (options.report || table.meetsGoals()) ? 0 : 1;
}
