// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include "ratiotable.h"

#include <algorithm>
#include <cstdio>

namespace {

constexpr const char *ours = "library";

std::string duration(double nanoseconds)
{
    char text[32];
    if (nanoseconds < 1e3)
        std::snprintf(text, sizeof text, "%.1f ns", nanoseconds);
    else if (nanoseconds < 1e6)
        std::snprintf(text, sizeof text, "%.2f µs", nanoseconds / 1e3);
    else
        std::snprintf(text, sizeof text, "%.2f ms", nanoseconds / 1e6);
    return text;
}

// Pads by characters, not by bytes: "µ" is two.
std::string padded(const std::string &text, std::size_t width)
{
    const auto characters = std::size_t(std::count_if(
        text.begin(), text.end(), [](char c) { return (static_cast<unsigned char>(c) & 0xc0) != 0x80; }));
    return characters < width ? std::string(width - characters, ' ') + text : text;
}

} // namespace

bool RatioTable::ReportContext(const Context &context)
{
    std::printf("%d CPUs at %.0f MHz%s\n", context.cpu_info.num_cpus,
                context.cpu_info.cycles_per_second / 1e6,
                context.cpu_info.scaling == benchmark::CPUInfo::ENABLED ? ", frequency scaling on" : "");
    return true;
}

void RatioTable::ReportRuns(const std::vector<Run> &runs)
{
    for (const Run &run : runs) {
        if (run.run_type != Run::RT_Iteration)
            continue;
        if (run.error_occurred) {
            std::fprintf(stderr, "%s: %s\n", run.benchmark_name().c_str(), run.error_message.c_str());
            m_complete = false;
            continue;
        }
        const std::string &name = run.run_name.function_name;
        const std::size_t colon = name.find(':');
        const long size = run.run_name.args.empty() ? 0 : std::stol(run.run_name.args);
        // Seconds an item, where the benchmark counts items; else a whole iteration is one.
        const auto rate = run.counters.find("items_per_second");
        const double nanoseconds = rate != run.counters.end()
            ? 1e9 / rate->second
            : run.real_accumulated_time / double(run.iterations) * 1e9;
        auto &figures = row(name.substr(0, colon), size).figures;
        const std::string variant = name.substr(colon + 1);
        const auto figure =
            std::find_if(figures.begin(), figures.end(), [&](const auto &f) { return f.first == variant; });
        if (figure == figures.end())
            figures.emplace_back(variant, nanoseconds);
        else
            figure->second = std::min(figure->second, nanoseconds);
    }
    std::fputc('.', stderr);
}

RatioTable::Row &RatioTable::row(const std::string &what, long size)
{
    const auto found = std::find_if(m_rows.begin(), m_rows.end(),
                                    [&](const Row &r) { return r.what == what && r.size == size; });
    if (found != m_rows.end())
        return *found;
    m_rows.push_back({what, size, {}});
    return m_rows.back();
}

void RatioTable::Finalize()
{
    // Interleaving delivers the rows in any order.
    std::sort(m_rows.begin(), m_rows.end(),
              [](const Row &a, const Row &b) { return std::tie(a.what, a.size) < std::tie(b.what, b.size); });
    std::fputc('\n', stderr);
    std::printf("%-34s %9s %12s   %s\n", "what (per item)", "size", "library",
                "limits, and how many times as long we take");
    for (Row &row : m_rows) {
        const auto library = std::find_if(row.figures.begin(), row.figures.end(),
                                          [](const auto &f) { return f.first == ours; });
        if (library == row.figures.end() || row.figures.size() < 2) {
            std::printf("%-34s %9ld %12s\n", row.what.c_str(), row.size, "incomplete");
            m_complete = false;
            continue;
        }
        const double own = library->second;
        std::string limits;
        std::sort(row.figures.begin(), row.figures.end());
        for (const auto &[variant, nanoseconds] : row.figures) {
            if (variant == ours)
                continue;
            char ratio[32];
            std::snprintf(ratio, sizeof ratio, " x%.2f", own / nanoseconds);
            limits += "  " + variant + " " + duration(nanoseconds) + ratio + ";";
        }
        if (!limits.empty())
            limits.pop_back();
        std::printf("%-34s %9ld %s %s\n", row.what.c_str(), row.size, padded(duration(own), 12).c_str(),
                    limits.c_str());
    }
}
