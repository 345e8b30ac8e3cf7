// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include "step.h"

#include <tuple>

namespace histories {

void showValue(const Step &step, std::ostream &stream)
{
    stream << step.name << '(' << step.a << ',' << step.b << ')';
}

rc::Gen<Steps> sequences(const std::vector<Kind> &kinds, int longest)
{
    std::vector<int> tickets;
    for (int kind = 0; kind < int(kinds.size()); ++kind)
        tickets.insert(tickets.end(), std::size_t(kinds[std::size_t(kind)].weight), kind);
    // Shrinks towards the row 0, and a kind only away altogether.
    const auto number = rc::gen::inRange(0, 60);
    const auto step =
        rc::gen::map(rc::gen::tuple(rc::gen::noShrink(rc::gen::elementOf(tickets)), number, number),
                     [kinds](const std::tuple<int, int, int> &drawn) {
                         const auto [kind, a, b] = drawn;
                         return Step{kinds[std::size_t(kind)].name, kind, a, b};
                     });
    return rc::gen::resize(longest, rc::gen::container<Steps>(step));
}

} // namespace histories
