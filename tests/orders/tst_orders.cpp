// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
//
// Random orders of events, led through a controller and through a model of it. Told by the environment:
//   HALVAR_ORDERS_STEPS  events in all, 20000 unless set
//   HALVAR_ORDERS_SEED   a number; the same one gives the same sequences
#include <rapidcheck.h>

#include <chrono>
#include <cstdlib>
#include <iostream>

#include "generator.h"
#include "run.h"

namespace {

constexpr std::size_t Length = 200;

unsigned long long number(const char *variable, unsigned long long unset)
{
    const char *const value = std::getenv(variable);
    return value && *value ? std::strtoull(value, nullptr, 10) : unset;
}

} // namespace

int main()
{
    if (!std::getenv("HALVAR_INSTRUMENT")) {
        std::cerr << "Run through simulator/instrument.\n";
        return 2;
    }
    const auto begin = std::chrono::steady_clock::now();
    const auto now = static_cast<unsigned long long>(begin.time_since_epoch().count());
    const unsigned long long steps = number("HALVAR_ORDERS_STEPS", 20000);
    const unsigned long long seed = number("HALVAR_ORDERS_SEED", now % 1000000000);
    const unsigned long long runs = (steps + Length - 1) / Length;
    std::cout << "orders: " << runs << " sequences of " << Length << " events, HALVAR_ORDERS_SEED=" << seed
              << std::endl;
    const char *const given = std::getenv("RC_PARAMS");
    const std::string parameters = (given ? given + std::string(" ") : "") + "seed=" + std::to_string(seed)
        + " max_success=" + std::to_string(runs);
    ::setenv("RC_PARAMS", parameters.c_str(), 1);

    std::size_t agreed = 0;
    bool failed = false;
    const bool passed = rc::check("the controller does what the model says", [&] {
        const orders::Sequence sequence = *orders::sequences(Length).as("events");
        const orders::Outcome outcome = orders::run(sequence);
        if (!failed)
            agreed += outcome.steps;
        if (outcome.failure.empty())
            return;
        if (!failed)
            std::cerr << "orders: differs after " << agreed << " events; shrinking ..." << std::endl;
        failed = true;
        RC_FAIL(outcome.failure);
    });
    const std::chrono::duration<double> took = std::chrono::steady_clock::now() - begin;
    std::cout << "orders: " << agreed << " events agreed in " << took.count() << " s" << std::endl;
    return passed ? 0 : 1;
}
