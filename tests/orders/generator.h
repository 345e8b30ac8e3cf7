// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef ORDERS_GENERATOR_H
#define ORDERS_GENERATOR_H

#include <rapidcheck.h>

#include <memory>
#include <random>

#include "event.h"
#include "model.h"

namespace orders {

/// Makes up one sequence, with the model beside it: half of the events are what is likely in the state
/// reached, so that measures, checks and calibrations run to their ends; the others are anything.
class Generator
{
public:
    explicit Generator(std::uint64_t seed);
    Sequence sequence(std::size_t length);
    std::vector<Reaction> reactions();

private:
    Setup setup();
    Event likely();
    Event anything();
    /// What a slot calls.
    Event answer();
    /// An event of \p kind with arguments of its own.
    Event make(Kind kind);
    void makeLink(Event &event);
    void makeSetting(Event &event);
    void makeCompanion(Event &event);
    Event mspEvent(int number);
    Event status(int number);
    Event result(bool decided);
    Event pin();
    int anyRow();
    int unitRow();
    bool isUnitInEdition() const;

    int below(int limit);
    bool chance(int percent) { return below(100) < percent; }
    template <typename T>
    T oneOf(std::initializer_list<T> list)
    {
        return *(list.begin() + below(int(list.size())));
    }

    std::mt19937_64 m_random;
    std::unique_ptr<Model> m_model;
};

/// Sequences of \p length events. A failing one is shrunk: events left out, then their arguments made
/// simpler, then the configuration.
rc::Gen<Sequence> sequences(std::size_t length);
/// The same with answers to signals, of which at least one is left.
rc::Gen<Sequence> answeredSequences(std::size_t length);

} // namespace orders

#endif // ORDERS_GENERATOR_H
