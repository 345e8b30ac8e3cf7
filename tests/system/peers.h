// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef PEERS_H
#define PEERS_H

#include <QTest>

#include "middleman.h"
#include "processwatch.h"

Q_DECLARE_METATYPE(Middleman::Plan)

namespace peers {

constexpr int SlackMs = 1500; ///< a busy machine's

/// One row for each fault in each of \p directions; what it does at each side is in the rows' names.
inline void addFaults(std::initializer_list<std::pair<Middleman::Direction, const char *>> directions,
                      int delayMs)
{
    QTest::addColumn<Middleman::Plan>("plan");
    for (const auto &[direction, what] : directions) {
        for (int fault = Middleman::Delay; fault <= Middleman::Announce; ++fault) {
            Middleman::Plan plan;
            plan.fault = static_cast<Middleman::Fault>(fault);
            plan.direction = direction;
            plan.milliseconds = plan.fault == Middleman::Drip ? 1 : delayMs;
            QTest::addRow("%s, %s", Middleman::name(plan.fault), what) << plan;
        }
    }
}

/// A link that ends while an answer is awaited.
inline bool endsTheLink(Middleman::Fault fault)
{
    return fault == Middleman::Cut || fault == Middleman::HalfClose || fault == Middleman::Truncate;
}

/// Prints what a case cost, for the record.
inline void print(qint64 blockedMs, const Holdings &before, const Holdings &after)
{
    qInfo("interface thread held up for %lld ms; %+d descriptors, %+d threads, %+lld kB", blockedMs,
          after.descriptors - before.descriptors, after.threads - before.threads,
          after.memoryKb - before.memoryKb);
}

} // namespace peers

#endif // PEERS_H
