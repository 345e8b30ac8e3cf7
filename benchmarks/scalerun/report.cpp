// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include "report.h"

#include <cstdio>

#include "growth.h"

namespace {

constexpr double frame = 16.0; // ms between two pictures on the screen
constexpr double atOnce = 100.0; // ms that pass for none behind a touch

QByteArray milliseconds(qint64 nanoseconds)
{
    const double value = double(nanoseconds) / 1e6;
    return QByteArray::number(value, 'f', value < 10 ? 2 : value < 100 ? 1 : 0);
}

const char *verdict(bool met)
{
    return met ? "met" : "missed";
}

} // namespace

/// For how long a turn of the step may keep the interface from hearing the operator.
struct Report::Share
{
    const char *step;
    /// In ms, whatever the size of the diagnostic.
    double fixed;
    /// In ms for each 1,000 units.
    double perThousand;
};

const QVector<Report::Share> &Report::shares()
{
    // Loading and saving are one call by their nature, and so is the trigger's release, which saves: they
    // last as long as their file is large. All else is a touch that has to look immediate, or happens while
    // something on the screen moves. Sorting by an expression calls it for every comparison.
    static const QVector<Share> all{
        {"load", 0, 60},
        {"filter by room", atOnce, 0},
        {"filter by expression", atOnce, 0},
        {"sort by text", atOnce, 0},
        {"sort by expression", 0, 100},
        {"edit notes", frame, 0},
        {"edit rooms", frame, 0},
        {"measure", frame, 40},
        {"save", 0, 40},
    };
    return all;
}

Report::Report(double slower)
    : m_slower(slower)
{ }

void Report::add(int units, const Scenario::Step &step)
{
    m_steps[units].append(step);
}

const Scenario::Step *Report::find(int units, const QString &name) const
{
    const auto steps = m_steps.constFind(units);
    if (steps == m_steps.constEnd())
        return nullptr;
    for (const Scenario::Step &step : *steps) {
        if (step.name == name)
            return &step;
    }
    return nullptr;
}

double Report::growthOf(const Share &share) const
{
    std::vector<std::pair<double, double>> points;
    for (int units : m_steps.keys()) {
        if (const Scenario::Step *step = find(units, QLatin1String(share.step)))
            points.emplace_back(step->work, double(step->nanoseconds));
    }
    return growthExponent(points);
}

double Report::memoryGrowth() const
{
    std::vector<std::pair<double, double>> points;
    for (int units : m_steps.keys()) {
        const Scenario::Step *before = find(units, QStringLiteral("start"));
        const Scenario::Step *behind = find(units, QStringLiteral("load"));
        if (before && behind)
            points.emplace_back(units, double(behind->bytes - before->bytes));
    }
    return growthExponent(points);
}

double Report::allowed(const Share &share, int units) const
{
    return m_slower * (share.fixed + share.perThousand * units / 1000);
}

bool Report::keepsItsShare(const Share &share) const
{
    for (int units : m_steps.keys()) {
        const Scenario::Step *step = find(units, QLatin1String(share.step));
        if (!step || double(step->longest) / 1e6 > allowed(share, units))
            return false;
    }
    return !m_steps.isEmpty();
}

void Report::print() const
{
    const QList<int> sizes = m_steps.keys();
    if (sizes.isEmpty())
        return;
    std::printf("Time of the step, and of its longest turn, in which the interface hears nothing; in ms.\n");
    std::printf("%-22s", "units");
    for (int units : sizes)
        std::printf(" %15d", units);
    std::printf("   growth         share of the longest turn\n");
    for (const Share &share : shares()) {
        std::printf("%-22s", share.step);
        for (int units : sizes) {
            const Scenario::Step *step = find(units, QLatin1String(share.step));
            const QByteArray figures = step
                ? milliseconds(step->nanoseconds) + " (" + milliseconds(step->longest) + ')'
                : QByteArray("-");
            std::printf(" %15s", figures.constData());
        }
        const double growth = growthOf(share);
        std::printf("   %5.2f %-6s   ", growth, verdict(growth <= growthBound));
        std::printf("%4.0f ms at %d %s\n", allowed(share, sizes.last()), sizes.last(),
                    verdict(keepsItsShare(share)));
    }
    std::printf("\nResident memory behind the step, the first time; in MB.\n%-22s", "units");
    for (int units : sizes)
        std::printf(" %15d", units);
    std::printf("   growth of what loading adds\n");
    for (const Scenario::Step &row : m_steps.value(sizes.value(0))) {
        std::printf("%-22s", row.name.toUtf8().constData());
        for (int units : sizes) {
            const Scenario::Step *step = find(units, row.name);
            std::printf(" %15.1f", step ? double(step->bytes) / 1e6 : 0);
        }
        if (row.name == QLatin1String("load"))
            std::printf("   %5.2f %s", memoryGrowth(), verdict(memoryGrowth() <= growthBound));
        std::printf("\n");
    }
    std::printf(
        "\nGrowth: the exponent of the work, at most %.1f. The work is the number of units; of a sort, the "
        "time in\nwhich the standard library sorts the same units.\n%s\n",
        growthBound, isMet() ? "All is met." : "Not all is met.");
}

bool Report::isMet() const
{
    for (const Share &share : shares()) {
        if (!(growthOf(share) <= growthBound) || !keepsItsShare(share))
            return false;
    }
    return memoryGrowth() <= growthBound;
}
