// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include <QGuiApplication>

#include <cstring>

#include <benchmark/benchmark.h>

#include <QsLog.h>

#include "peer.h"
#include "ratiotable.h"

int main(int argc, char **argv)
{
    if (argc == 2 && std::strcmp(argv[1], "--peer") == 0)
        return runPeer(argc, argv);
    QGuiApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 2;
    // Lines would be composed and then go nowhere.
    QsLogging::Logger::instance().setLoggingLevel(QsLogging::WarnLevel);
    RatioTable table;
    benchmark::RunSpecifiedBenchmarks(&table);
    return table.isComplete() ? 0 : 1;
}
