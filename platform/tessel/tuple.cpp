// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include "tessel/tuple.h"

#include <QSharedData>
#include <QVector>

#include <cstring>

#include "tuplebuilder.h"

namespace tessel {

namespace {

struct Field
{
    QByteArray name;
    Value value;
    friend bool operator==(const Field &a, const Field &b) { return a.name == b.name && a.value == b.value; }
};

} // namespace

struct Tuple::Data : QSharedData
{
    QByteArray className;
    QVector<Field> fields;
};

// Without data: empty, and as good as one that was cleared. Most replies are.
Tuple::Tuple() = default;

Tuple::Tuple(const char *className)
    : d(new Data)
{
    d->className = className;
}

Tuple::Tuple(const Tuple &) = default;
Tuple::Tuple(Tuple &&) noexcept = default;
Tuple &Tuple::operator=(const Tuple &) = default;
Tuple &Tuple::operator=(Tuple &&) noexcept = default;
Tuple::~Tuple() = default;

const Tuple::Data &Tuple::read() const
{
    if (d)
        return *d.constData();
    static const Data *const none = new Data; // not destroyed: tuples may outlive all statics
    return *none;
}

Tuple::Data &Tuple::write()
{
    if (!d)
        d = new Data;
    return *d;
}

QByteArray Tuple::class_name() const
{
    return read().className;
}

void Tuple::set_class_name(const Symbol &className)
{
    set_class_name(className.name());
}

void Tuple::set_class_name(const QByteArray &className)
{
    // A record that came in has its class name already: nothing to unshare its fields for.
    if (read().className != className)
        write().className = className;
}

int Tuple::size() const
{
    return read().fields.size();
}

QByteArray Tuple::name(int index) const
{
    return index >= 0 && index < size() ? read().fields.at(index).name : QByteArray();
}

Value Tuple::value(int index) const
{
    return index >= 0 && index < size() ? read().fields.at(index).value : Value();
}

int Tuple::indexOf(const char *name, int length) const
{
    const QVector<Field> &fields = read().fields;
    for (int i = 0; i < fields.size(); ++i) {
        const QByteArray &candidate = fields.at(i).name;
        if (candidate.size() == length
            && std::memcmp(candidate.constData(), name, static_cast<std::size_t>(length)) == 0)
            return i;
    }
    return -1;
}

int Tuple::indexOf(const char *name) const
{
    return indexOf(name, static_cast<int>(qstrlen(name)));
}

int Tuple::indexOf(const QByteArray &name) const
{
    return indexOf(name.constData(), name.size());
}

const Value &Tuple::get(const char *name) const &
{
    const int index = indexOf(name);
    if (index >= 0)
        return read().fields.at(index).value;
    static const Value *const absent = new Value; // not destroyed, like the data of empty tuples
    return *absent;
}

Value Tuple::get(const char *name) const &&
{
    return get(name);
}

void Tuple::setAt(int index, const QByteArray &name, const Value &value)
{
    if (value.type() == T_NONE) {
        if (index >= 0)
            write().fields.removeAt(index);
    } else if (index >= 0) {
        write().fields[index].value = value;
    } else {
        write().fields.append({name, value});
    }
}

void Tuple::set(const char *name, const Value &value)
{
    setAt(indexOf(name), QByteArray(name), value);
}

void Tuple::set(const QByteArray &name, const Value &value)
{
    // A name that came in may hold a zero byte: it is compared whole.
    setAt(indexOf(name), name, value);
}

void TupleBuilder::reserve(Tuple &tuple, int fields)
{
    if (fields > 0)
        tuple.write().fields.reserve(fields);
}

void TupleBuilder::append(Tuple &tuple, const QByteArray &name, const Value &value)
{
    tuple.write().fields.append({name, value});
}

bool Tuple::is_set(const char *name) const
{
    return indexOf(name) >= 0;
}

bool Tuple::is_set(const char *name, Types type) const
{
    const int index = indexOf(name);
    return index >= 0 && read().fields.at(index).value.type() == type;
}

void Tuple::clear()
{
    if (!isEmpty())
        write().fields.clear();
}

void Tuple::splice(const Tuple &other)
{
    const QVector<Field> fields = other.read().fields; // other may be this one
    for (const Field &field : fields)
        set(field.name, field.value);
}

bool operator==(const Tuple &a, const Tuple &b)
{
    const Tuple::Data &left = a.read();
    const Tuple::Data &right = b.read();
    return &left == &right || (left.className == right.className && left.fields == right.fields);
}

Value::Value() = default;
Value::Value(bool value)
    : m_value(value)
{ }
Value::Value(int value)
    : m_value(value)
{ }
Value::Value(double value)
    : m_value(value)
{ }
Value::Value(const AString &value)
    : m_value(value)
{ }
Value::Value(const Tuple &value)
    : m_value(std::make_shared<const Tuple>(value))
{ }
Value::Value(const TimeDate &value)
    : m_value(value)
{ }
Value::Value(const TimePeriod &value)
    : m_value(value)
{ }
Value::Value(const Value &) = default;
Value::Value(Value &&) noexcept = default;
Value &Value::operator=(const Value &) = default;
Value &Value::operator=(Value &&) noexcept = default;
Value::~Value() = default;

Types Value::type() const
{
    return static_cast<Types>(m_value.index());
}

bool Value::toBool() const
{
    const bool *value = std::get_if<bool>(&m_value);
    return value && *value;
}

int Value::toInt() const
{
    const int *value = std::get_if<int>(&m_value);
    return value ? *value : 0;
}

double Value::toDouble() const
{
    const double *value = std::get_if<double>(&m_value);
    return value ? *value : 0.0;
}

AString Value::toAString() const
{
    const AString *value = std::get_if<AString>(&m_value);
    return value ? *value : AString();
}

Tuple Value::toTuple() const
{
    const auto *value = std::get_if<std::shared_ptr<const Tuple>>(&m_value);
    return value ? **value : Tuple();
}

TimeDate Value::toTimeDate() const
{
    const TimeDate *value = std::get_if<TimeDate>(&m_value);
    return value ? *value : TimeDate();
}

TimePeriod Value::toTimePeriod() const
{
    const TimePeriod *value = std::get_if<TimePeriod>(&m_value);
    return value ? *value : TimePeriod();
}

bool operator==(const Value &a, const Value &b)
{
    if (a.type() == T_TUPLE && b.type() == T_TUPLE)
        return a.toTuple() == b.toTuple();
    return a.m_value == b.m_value;
}

} // namespace tessel
