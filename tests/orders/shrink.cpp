// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
//
// Simpler sequences than one that fails.
#include "generator.h"

namespace orders {

namespace {

std::vector<Event> simpler(const Event &event)
{
    std::vector<Event> ret;
    const auto attempt = [&](auto member, auto value) {
        if (event.*member != value) {
            ret.push_back(event);
            ret.back().*member = value;
        }
    };
    attempt(&Event::number, 0);
    attempt(&Event::number, event.number / 2);
    attempt(&Event::number, event.number > 0 ? event.number - 1 : 0);
    attempt(&Event::code, 0);
    attempt(&Event::code, event.code > 0 ? event.code - 1 : 0);
    attempt(&Event::flag, false);
    attempt(&Event::shock, false);
    attempt(&Event::shutter, false);
    attempt(&Event::held, false);
    attempt(&Event::value, 0.0);
    if (event.value != 0)
        attempt(&Event::value, 1.0);
    attempt(&Event::sigma, 0.0);
    attempt(&Event::text, std::string());
    return ret;
}

std::vector<Setup> simpler(const Setup &setup)
{
    std::vector<Setup> ret;
    const Setup usual;
    const auto attempt = [&](auto member) {
        if (setup.*member != usual.*member) {
            ret.push_back(setup);
            ret.back().*member = usual.*member;
        }
    };
    attempt(&Setup::endOfMeasure);
    attempt(&Setup::lightOff);
    attempt(&Setup::beforeShutter);
    attempt(&Setup::measureTime);
    attempt(&Setup::nbMeasures);
    attempt(&Setup::maxCalibrations);
    attempt(&Setup::beepTime);
    attempt(&Setup::waitingForGo);
    attempt(&Setup::password);
    attempt(&Setup::traced);
    return ret;
}

rc::Seq<Sequence> shrinks(const Sequence &sequence)
{
    const Setup setup = sequence.setup;
    const auto reactions = sequence.reactions;
    const auto with = [setup, reactions](std::vector<Event> &&events) {
        return Sequence{setup, std::move(events), reactions};
    };
    const auto answered = [sequence](std::vector<Reaction> &&simpler) {
        return Sequence{sequence.setup, sequence.events, std::move(simpler)};
    };
    const auto hasAnswers = [](const std::vector<Reaction> &some) { return !some.empty(); };
    const auto each = [](const Event &event) { return rc::seq::fromContainer(simpler(event)); };
    const auto events = sequence.events;
    return rc::seq::concat(
        rc::seq::map(rc::seq::filter(rc::shrink::removeChunks(reactions), hasAnswers), answered),
        rc::seq::map(rc::shrink::removeChunks(events), with),
        rc::seq::map(rc::seq::fromContainer(simpler(setup)),
                     [events, reactions](Setup &&simple) {
                         return Sequence{simple, events, reactions};
                     }),
        rc::seq::map(rc::shrink::eachElement(events, each), with));
}

} // namespace

rc::Gen<Sequence> sequences(std::size_t length)
{
    return [length](const rc::Random &random, int) {
        rc::Random source = random;
        return rc::shrinkable::shrinkRecur(Generator(source.next()).sequence(length), &shrinks);
    };
}

rc::Gen<Sequence> answeredSequences(std::size_t length)
{
    return [length](const rc::Random &random, int) {
        rc::Random source = random;
        Generator generator(source.next());
        Sequence sequence = generator.sequence(length);
        sequence.reactions = generator.reactions();
        return rc::shrinkable::shrinkRecur(sequence, &shrinks);
    };
}

} // namespace orders
