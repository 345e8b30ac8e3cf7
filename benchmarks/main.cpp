// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include <QGuiApplication>

#include <benchmark/benchmark.h>

#include "ratiotable.h"

int main(int argc, char **argv)
{
    QGuiApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 2;
    RatioTable table;
    benchmark::RunSpecifiedBenchmarks(&table);
    return table.isComplete() ? 0 : 1;
}
