// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef TESSEL_VALUE_H
#define TESSEL_VALUE_H

#include <memory>
#include <variant>

#include "astring.h"
#include "export.h"
#include "timedate.h"
#include "timeperiod.h"
#include "types.h"

namespace tessel {

class Tuple;

/// One typed value. Reading it as another type than its own gives that type's 0.
class TESSEL_EXPORT Value
{
public:
    Value();
    explicit Value(bool value);
    explicit Value(int value);
    explicit Value(double value);
    explicit Value(const AString &value);
    explicit Value(const Tuple &value);
    explicit Value(const TimeDate &value);
    explicit Value(const TimePeriod &value);
    Value(const Value &);
    Value(Value &&) noexcept;
    Value &operator=(const Value &);
    Value &operator=(Value &&) noexcept;
    ~Value();

    /// T_NONE for a value that holds nothing.
    Types type() const;
    bool toBool() const;
    int toInt() const;
    double toDouble() const;
    AString toAString() const;
    Tuple toTuple() const;
    TimeDate toTimeDate() const;
    TimePeriod toTimePeriod() const;

    friend TESSEL_EXPORT bool operator==(const Value &a, const Value &b);
    friend bool operator!=(const Value &a, const Value &b) { return !(a == b); }

private:
    // In the order of Types.
    std::variant<std::monostate, bool, int, double, AString, std::shared_ptr<const Tuple>, TimeDate,
                 TimePeriod>
        m_value;
};

} // namespace tessel

#endif // TESSEL_VALUE_H
