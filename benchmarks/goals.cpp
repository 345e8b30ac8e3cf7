// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include "goals.h"

#include <algorithm>
#include <utility>

Goal::Goal(Kind kind, std::string what, std::string limit, double bound)
    : m_kind(kind)
    , m_what(std::move(what))
    , m_limit(std::move(limit))
    , m_bound(bound)
{ }

Goal &Goal::fromSize(long size)
{
    m_from = size;
    return *this;
}

Goal &Goal::toSize(long size)
{
    m_to = size;
    return *this;
}

Goal &Goal::strictly()
{
    m_strict = true;
    return *this;
}

std::string Goal::title() const
{
    std::string text = m_what;
    if (m_kind == Kind::Growth)
        text += ", growth";
    else
        text += (m_kind == Kind::Ratio ? ", to " : ", more than ") + m_limit;
    if (m_from > 0)
        text += ", from " + std::to_string(m_from);
    if (m_to >= 0)
        text += ", up to " + std::to_string(m_to);
    return text;
}

Goal::Outcome Goal::judge(const Figures &figures) const
{
    std::vector<Figures::Row> rows = figures.rows(m_what);
    rows.erase(std::remove_if(rows.begin(), rows.end(),
                              [this](const Figures::Row &row) {
                                  return row.size < m_from || (m_to >= 0 && row.size > m_to);
                              }),
               rows.end());
    if (m_kind == Kind::Growth)
        return judgeGrowth(rows);
    Outcome outcome;
    for (const Figures::Row &row : rows) {
        const auto own = row.figure(Figures::library);
        const auto limit = row.figure(m_limit);
        if (!own || !limit || (m_kind == Kind::Ratio && *limit <= 0))
            return {};
        const double value = m_kind == Kind::Ratio ? *own / *limit : *own - *limit;
        if (outcome.verdict == Verdict::NotMeasured || value > outcome.worst)
            outcome = {reached(value) ? Verdict::Met : Verdict::Missed, value, row.size};
    }
    return outcome;
}

Goal::Outcome Goal::judgeGrowth(const std::vector<Figures::Row> &rows) const
{
    if (rows.size() < 2)
        return {};
    const auto smallest = rows.front().figure(Figures::library);
    const auto largest = rows.back().figure(Figures::library);
    if (!smallest || !largest || *smallest <= 0)
        return {};
    const double times = *largest / *smallest;
    return {reached(times) ? Verdict::Met : Verdict::Missed, times, rows.back().size};
}

std::deque<Goal> &goals()
{
    static std::deque<Goal> all;
    return all;
}

Goal &goal(const std::string &what, const std::string &limit, double times)
{
    return goals().emplace_back(Goal::Kind::Ratio, what, limit, times);
}

Goal &goalFaster(const std::string &what, const std::string &limit)
{
    return goals().emplace_back(Goal::Kind::Ratio, what, limit, 1.0).strictly();
}

Goal &goalDifference(const std::string &what, const std::string &limit, double more)
{
    return goals().emplace_back(Goal::Kind::Difference, what, limit, more);
}

Goal &goalGrowth(const std::string &what, double times)
{
    return goals().emplace_back(Goal::Kind::Growth, what, std::string(), times);
}
