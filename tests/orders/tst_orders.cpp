// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
//
// tst_orders: random orders of events, led through a controller and through a model of it.
// tst_orders answers: random orders of events with an interface that answers signals with calls; no model.
// Told by the environment:
//   HALVAR_ORDERS_STEPS  events in all, 20000 unless set
//   HALVAR_ORDERS_SEED   a number; the same one gives the same sequences
//   RC_PARAMS            RapidCheck's own, for example noshrink=1
#include <rapidcheck.h>

#include <chrono>
#include <cstdlib>
#include <iostream>

#include "generator.h"
#include "run.h"

namespace {

constexpr std::size_t Length = 200; // of a sequence
constexpr std::size_t AnsweredLength = 50; // the more answers are tried

unsigned long long number(const char *variable, unsigned long long unset)
{
    const char *const value = std::getenv(variable);
    return value && *value ? std::strtoull(value, nullptr, 10) : unset;
}

/// Whether all sequences of \p sequences run as they should.
bool holds(const std::string &property, const rc::Gen<orders::Sequence> &sequences)
{
    const auto begin = std::chrono::steady_clock::now();
    std::size_t passed = 0;
    bool failed = false;
    const bool ret = rc::check(property, [&] {
        const orders::Sequence sequence = *sequences.as("events");
        const orders::Outcome outcome = orders::run(sequence);
        if (!failed)
            passed += outcome.steps;
        if (outcome.failure.empty())
            return;
        if (!failed)
            std::cerr << "orders: fails after " << passed << " events; shrinking ..." << std::endl;
        failed = true;
        RC_FAIL(outcome.failure);
    });
    const std::chrono::duration<double> took = std::chrono::steady_clock::now() - begin;
    std::cout << "orders: " << passed << " events passed, " << took.count() << " s" << std::endl;
    return ret;
}

} // namespace

int main(int argc, char **argv)
{
    const std::string mode = argc > 1 ? argv[1] : "model";
    if (argc > 2 || (mode != "model" && mode != "answers")) {
        std::cerr << "Usage: tst_orders [model | answers]\n";
        return 2;
    }
    if (!std::getenv("HALVAR_INSTRUMENT")) {
        std::cerr << "Run through simulator/instrument.\n";
        return 2;
    }
    const auto now = static_cast<unsigned long long>(std::chrono::system_clock::now().time_since_epoch()
                                                     / std::chrono::microseconds(1));
    const unsigned long long seed = number("HALVAR_ORDERS_SEED", now % 1000000000);
    const std::size_t length = mode == "model" ? Length : AnsweredLength;
    const unsigned long long runs = (number("HALVAR_ORDERS_STEPS", 20000) + length - 1) / length;
    std::cout << "orders: " << runs << " sequences of " << length << " events, HALVAR_ORDERS_SEED=" << seed
              << std::endl;
    const char *const given = std::getenv("RC_PARAMS");
    const std::string parameters = (given ? given + std::string(" ") : "") + "seed=" + std::to_string(seed)
        + " max_success=" + std::to_string(runs);
    ::setenv("RC_PARAMS", parameters.c_str(), 1);

    const bool passed = mode == "model"
        ? holds("the controller does what the model says", orders::sequences(length))
        : holds("answers to signals break nothing", orders::answeredSequences(length));
    return passed ? 0 : 1;
}
