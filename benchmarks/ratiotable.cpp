// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include "ratiotable.h"

#include <QDateTime>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSysInfo>

#include <algorithm>
#include <cstdio>

namespace {

// Characters, not bytes: "µ" is two.
std::size_t lengthOf(const std::string &text)
{
    return std::size_t(std::count_if(text.begin(), text.end(),
                                     [](char c) { return (static_cast<unsigned char>(c) & 0xc0) != 0x80; }));
}

std::string right(const std::string &text, std::size_t width)
{
    return std::string(width - std::min(width, lengthOf(text)), ' ') + text;
}

std::string left(const std::string &text, std::size_t width)
{
    return text + std::string(width - std::min(width, lengthOf(text)), ' ');
}

std::string times(double ratio)
{
    char text[32];
    std::snprintf(text, sizeof text, "x%.2f", ratio);
    return text;
}

const char *name(Goal::Verdict verdict)
{
    switch (verdict) {
    case Goal::Verdict::Met:
        return "met";
    case Goal::Verdict::Missed:
        return "MISSED";
    case Goal::Verdict::NotMeasured:
        break;
    }
    return "not measured";
}

const char *name(Goal::Kind kind)
{
    switch (kind) {
    case Goal::Kind::Ratio:
        return "ratio";
    case Goal::Kind::Difference:
        return "difference";
    case Goal::Kind::Growth:
        break;
    }
    return "growth";
}

// The unit of a counter that is a figure: "ns" of "p99 [ns]" and of "[ns]".
std::string unitOf(const std::string &counter)
{
    const std::size_t open = counter.find('[');
    return open != std::string::npos && counter.back() == ']'
        ? counter.substr(open + 1, counter.size() - open - 2)
        : std::string();
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
        const std::string &title = run.run_name.function_name;
        const std::size_t colon = title.find(':');
        const std::string what = title.substr(0, colon);
        const std::string variant = title.substr(colon + 1);
        const long size = run.run_name.args.empty() ? 0 : std::stol(run.run_name.args);
        bool timed = true;
        for (const auto &[counter, value] : run.counters) {
            const std::string unit = unitOf(counter);
            if (unit.empty())
                continue;
            const std::size_t bracket = counter.find('[');
            timed = timed && bracket > 0;
            m_figures.add(bracket > 0 ? what + ", " + counter.substr(0, bracket - 1) : what, size, variant,
                          value, unit);
        }
        if (!timed)
            continue;
        // Seconds an item, where the benchmark counts items; else a whole iteration is one.
        const auto rate = run.counters.find("items_per_second");
        m_figures.add(what, size, variant,
                      rate != run.counters.end() ? 1e9 / rate->second
                                                 : run.real_accumulated_time / double(run.iterations) * 1e9,
                      "ns");
    }
    std::fputc('.', stderr);
}

void RatioTable::Finalize()
{
    std::fputc('\n', stderr);
    printRows();
    printGoals();
    std::fflush(stdout);
}

void RatioTable::printRows()
{
    std::printf("%-42s %9s %12s   %s\n", "what (per item)", "size", "library",
                "limits, and how many times as much we take");
    for (Figures::Row &row : m_figures.rows()) {
        const auto own = row.figure(Figures::library);
        if (!own || row.variants.size() < 2) {
            std::printf("%-42s %9ld %12s\n", row.what.c_str(), row.size, "incomplete");
            m_complete = false;
            continue;
        }
        std::sort(row.variants.begin(), row.variants.end());
        std::string limits;
        for (const auto &[variant, figure] : row.variants) {
            if (variant != Figures::library)
                limits +=
                    "  " + variant + " " + formatted(figure, row.unit) + " " + times(*own / figure) + ";";
        }
        limits.pop_back();
        std::printf("%s %9ld %s %s\n", left(row.what, 42).c_str(), row.size,
                    right(formatted(*own, row.unit), 12).c_str(), limits.c_str());
    }
}

void RatioTable::printGoals() const
{
    const auto all = judged();
    if (all.empty())
        return;
    std::printf("\n%-76s %10s %9s %10s   %s\n", "goal", "worst", "at", "at most", "verdict");
    int met = 0;
    for (const auto &[registered, outcome] : all) {
        const Goal &goal = *registered;
        met += outcome.verdict == Goal::Verdict::Met;
        const std::vector<Figures::Row> rows = m_figures.rows(goal.what());
        const std::string unit = rows.empty() ? std::string() : rows.front().unit;
        const auto text = [&](double value) {
            return goal.kind() == Goal::Kind::Difference ? formatted(value, unit) : times(value);
        };
        const bool measured = outcome.verdict != Goal::Verdict::NotMeasured;
        std::printf("%s %s %9s %s   %s\n", left(goal.title(), 76).c_str(),
                    right(measured ? text(outcome.worst) : "-", 10).c_str(),
                    measured ? std::to_string(outcome.size).c_str() : "-",
                    right((goal.isStrict() ? "< " : "") + text(goal.bound()), 10).c_str(),
                    name(outcome.verdict));
    }
    std::printf("%d of %zu goals met.\n", met, all.size());
}

std::vector<std::pair<const Goal *, Goal::Outcome>> RatioTable::judged() const
{
    std::vector<std::pair<const Goal *, Goal::Outcome>> judged;
    for (const Goal &goal : goals()) {
        const Goal::Outcome outcome = goal.judge(m_figures);
        if (m_everything || outcome.verdict != Goal::Verdict::NotMeasured)
            judged.emplace_back(&goal, outcome);
    }
    return judged;
}

bool RatioTable::meetsGoals() const
{
    const auto all = judged();
    return std::all_of(all.begin(), all.end(),
                       [](const auto &goal) { return goal.second.verdict == Goal::Verdict::Met; });
}

bool RatioTable::read(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return false;
    const QJsonArray rows =
        QJsonDocument::fromJson(file.readAll()).object().value(QStringLiteral("rows")).toArray();
    for (const QJsonValue &row : rows) {
        const QJsonObject figures = row[QStringLiteral("figures")].toObject();
        for (auto figure = figures.begin(); figure != figures.end(); ++figure) {
            m_figures.add(row[QStringLiteral("what")].toString().toStdString(),
                          long(row[QStringLiteral("size")].toDouble()), figure.key().toStdString(),
                          figure.value().toDouble(), row[QStringLiteral("unit")].toString().toStdString());
        }
    }
    return !rows.isEmpty();
}

bool RatioTable::write(const QString &path) const
{
    QJsonArray rows;
    for (const Figures::Row &row : m_figures.rows()) {
        QJsonObject variants;
        for (const auto &[variant, figure] : row.variants)
            variants.insert(QString::fromStdString(variant), figure);
        rows.append(QJsonObject{{QStringLiteral("what"), QString::fromStdString(row.what)},
                                {QStringLiteral("size"), double(row.size)},
                                {QStringLiteral("unit"), QString::fromStdString(row.unit)},
                                {QStringLiteral("figures"), variants}});
    }
    QJsonArray verdicts;
    for (const auto &[registered, outcome] : judged()) {
        const Goal &goal = *registered;
        QJsonObject object{{QStringLiteral("what"), QString::fromStdString(goal.what())},
                           {QStringLiteral("title"), QString::fromStdString(goal.title())},
                           {QStringLiteral("kind"), QLatin1String(name(goal.kind()))},
                           {QStringLiteral("limit"), QString::fromStdString(goal.limit())},
                           {QStringLiteral("bound"), goal.bound()},
                           {QStringLiteral("from"), double(goal.from())},
                           {QStringLiteral("to"), double(goal.to())},
                           {QStringLiteral("strict"), goal.isStrict()},
                           {QStringLiteral("verdict"), QString::fromLatin1(name(outcome.verdict)).toLower()}};
        if (outcome.verdict != Goal::Verdict::NotMeasured) {
            object.insert(QStringLiteral("worst"), outcome.worst);
            object.insert(QStringLiteral("size"), double(outcome.size));
        }
        verdicts.append(object);
    }
    const benchmark::CPUInfo &cpu = benchmark::CPUInfo::Get();
    const QJsonObject context{{QStringLiteral("date"), QDateTime::currentDateTimeUtc().toString(Qt::ISODate)},
                              {QStringLiteral("system"), QSysInfo::prettyProductName()},
                              {QStringLiteral("architecture"), QSysInfo::currentCpuArchitecture()},
                              {QStringLiteral("compiler"), QLatin1String(__VERSION__)},
                              {QStringLiteral("qt"), QLatin1String(qVersion())},
                              {QStringLiteral("cpus"), cpu.num_cpus},
                              {QStringLiteral("mhz"), cpu.cycles_per_second / 1e6}};
    QFile file(path);
    const QByteArray json = QJsonDocument(QJsonObject{{QStringLiteral("context"), context},
                                                      {QStringLiteral("rows"), rows},
                                                      {QStringLiteral("goals"), verdicts}})
                                .toJson();
    return file.open(QIODevice::WriteOnly) && file.write(json) == json.size() && file.flush();
}
