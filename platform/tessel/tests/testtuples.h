// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef TESTTUPLES_H
#define TESTTUPLES_H

#include <cstring>
#include <string>

#include <rapidcheck.h>

#include <tessel/tuple.h>

/// Any text: letters of one to four bytes, and the zero byte.
inline rc::Gen<QByteArray> anyText()
{
    return rc::gen::map(rc::gen::container<std::vector<char32_t>>(rc::gen::oneOf(
                            rc::gen::inRange<char32_t>(0, 0x80), rc::gen::inRange<char32_t>(0x80, 0xd800),
                            rc::gen::inRange<char32_t>(0x10000, 0x110000))),
                        [](const std::vector<char32_t> &letters) {
                            std::vector<uint> ucs4(letters.begin(), letters.end());
                            return QString::fromUcs4(ucs4.data(), int(ucs4.size())).toUtf8();
                        });
}

inline rc::Gen<tessel::Tuple> anyTuple(int depth);

inline rc::Gen<tessel::Value> anyValue(int depth)
{
    using tessel::Value;
    auto plain = rc::gen::oneOf(
        rc::gen::map(rc::gen::arbitrary<bool>(), [](bool value) { return Value(value); }),
        rc::gen::map(rc::gen::arbitrary<int>(), [](int value) { return Value(value); }),
        rc::gen::map(rc::gen::arbitrary<qint64>(),
                     [](qint64 bits) { // every double there is, infinities and not-a-numbers included
                         double value = 0;
                         std::memcpy(&value, &bits, sizeof value);
                         return Value(value);
                     }),
        rc::gen::map(anyText(), [](const QByteArray &text) { return Value(tessel::AString(text)); }),
        rc::gen::map(rc::gen::arbitrary<qint64>(), [](qint64 time) { return Value(tessel::TimeDate(time)); }),
        rc::gen::map(rc::gen::arbitrary<qint64>(),
                     [](qint64 time) { return Value(tessel::TimePeriod(time)); }));
    if (depth <= 0)
        return plain;
    return rc::gen::oneOf(
        plain, rc::gen::map(anyTuple(depth - 1), [](const tessel::Tuple &tuple) { return Value(tuple); }));
}

inline rc::Gen<tessel::Tuple> anyTuple(int depth)
{
    return rc::gen::exec([depth] {
        tessel::Tuple tuple;
        tuple.set_class_name(*anyText());
        const int size = *rc::gen::inRange(0, 6);
        for (int i = 0; i < size; ++i)
            tuple.set(*anyText(), *anyValue(depth));
        return tuple;
    });
}

/// As ==, but every bit of a number counts: one that is not a number is the same as itself.
inline bool identical(const tessel::Tuple &a, const tessel::Tuple &b)
{
    if (a.class_name() != b.class_name() || a.size() != b.size())
        return false;
    for (int i = 0; i < a.size(); ++i) {
        const tessel::Value x = a.value(i);
        const tessel::Value y = b.value(i);
        if (a.name(i) != b.name(i) || x.type() != y.type())
            return false;
        if (x.type() == tessel::T_DOUBLE) {
            const double values[] = {x.toDouble(), y.toDouble()};
            // NOLINTNEXTLINE(bugprone-suspicious-memory-comparison): bit for bit, also a NaN
            if (std::memcmp(&values[0], &values[1], sizeof(double)) != 0)
                return false;
        } else if (x.type() == tessel::T_TUPLE ? !identical(x.toTuple(), y.toTuple()) : x != y) {
            return false;
        }
    }
    return true;
}

#endif // TESTTUPLES_H
