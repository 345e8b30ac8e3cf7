// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef HALVAR_NAP_FIELD_H
#define HALVAR_NAP_FIELD_H

#include <tessel/tuple.h>

#include <type_traits>

namespace com {
namespace halvar {
namespace nap {

/// One field of a record: its name, and its type as the C++ type \p T. Enumerations and int travel as T_INT,
/// records as T_TUPLE. An absent field, or one of another type, reads as 0, 0.0, false or empty.
template <typename T>
class Field
{
public:
    explicit constexpr Field(const char *name)
        : m_name(name)
    { }

    void set(tessel::Tuple &record, const T &value) const { record.set(m_name, toValue(value)); }
    void set(tessel::Tuple &record, const tessel::Value &value) const { record.set(m_name, value); }
    T get(const tessel::Tuple &record) const { return fromValue(record.get(m_name)); }
    bool isSet(const tessel::Tuple &record) const { return record.is_set(m_name, type()); }

    static constexpr tessel::Types type()
    {
        if constexpr (std::is_same_v<T, bool>)
            return tessel::T_BOOL;
        else if constexpr (std::is_same_v<T, int> || std::is_enum_v<T>)
            return tessel::T_INT;
        else if constexpr (std::is_same_v<T, double>)
            return tessel::T_DOUBLE;
        else if constexpr (std::is_same_v<T, tessel::AString>)
            return tessel::T_ASTRING;
        else if constexpr (std::is_same_v<T, tessel::TimeDate>)
            return tessel::T_TIME_DATE;
        else if constexpr (std::is_same_v<T, tessel::TimePeriod>)
            return tessel::T_TIME_PERIOD;
        else
            return tessel::T_TUPLE;
    }

private:
    static tessel::Value toValue(const T &value)
    {
        if constexpr (std::is_enum_v<T>)
            return tessel::Value(static_cast<int>(value));
        else
            return tessel::Value(value);
    }

    static T fromValue(const tessel::Value &value)
    {
        if constexpr (std::is_same_v<T, bool>)
            return value.toBool();
        else if constexpr (std::is_same_v<T, int> || std::is_enum_v<T>)
            return static_cast<T>(value.toInt());
        else if constexpr (std::is_same_v<T, double>)
            return value.toDouble();
        else if constexpr (std::is_same_v<T, tessel::AString>)
            return value.toAString();
        else if constexpr (std::is_same_v<T, tessel::TimeDate>)
            return value.toTimeDate();
        else if constexpr (std::is_same_v<T, tessel::TimePeriod>)
            return value.toTimePeriod();
        else
            return T(value.toTuple());
    }

    const char *m_name;
};

} // namespace nap
} // namespace halvar
} // namespace com

#endif // HALVAR_NAP_FIELD_H
