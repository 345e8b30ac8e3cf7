// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
//
// What a row costs in memory: the item with the list that watches it, beside the item alone.
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <benchmark/benchmark.h>
#include <malloc.h>

#include "benchitem.h"
#include "goals.h"
#include "qqmlobjectlistmodel.h"

namespace {

/// What the heap has handed out, with what the allocator adds to each piece.
double usedBytes()
{
    const struct mallinfo2 heap = mallinfo2();
    return double(heap.uordblks) + double(heap.hblkhd);
}

double bytesOfItems(int count)
{
    std::vector<std::unique_ptr<BenchItem>> items;
    items.reserve(std::size_t(count));
    const double before = usedBytes();
    for (int row = 0; row < count; ++row)
        items.push_back(std::make_unique<BenchItem>(BenchItem::Values(row)));
    return usedBytes() - before;
}

double bytesOfList(int count)
{
    const double before = usedBytes();
    QQmlObjectListModel<BenchItem> list;
    for (int row = 0; row < count; ++row)
        list.append(new BenchItem(BenchItem::Values(row)));
    return usedBytes() - before;
}

void bytesOfARow(benchmark::State &state, double (*bytesOf)(int))
{
    const int rows = int(state.range(0));
    double bytes = 0;
    for (auto _ : state)
        bytes = bytesOf(rows) / rows;
    state.counters["[B]"] = bytes;
}

const bool registered = [] {
    const std::string row = "list, memory of a row";
    for (const auto &[variant, bytesOf] :
         {std::pair("library", &bytesOfList), std::pair("bare item", &bytesOfItems)}) {
        double (*const measured)(int) = bytesOf;
        for (int size : {1000, 10000, 100000})
            benchmark::RegisterBenchmark(
                (row + ':' + variant).c_str(),
                [measured](benchmark::State &state) { bytesOfARow(state, measured); })
                ->Arg(size)
                ->Iterations(1);
    }
    goal(row, "bare item", 3.0);
    goalGrowth(row, 1.3);
    return true;
}();

} // namespace
