// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef TESSEL_TUPLE_H
#define TESSEL_TUPLE_H

#include <QByteArray>
#include <QSharedDataPointer>

#include "export.h"
#include "symbol.h"
#include "types.h"
#include "value.h"

namespace tessel {

/// A record: a class name and typed fields, each with a name, in the order in which they were first set.
///
/// Implicitly shared: copies share their data until one of them is written to. A copy may be used on another
/// thread. Names and texts are UTF-8.
class TESSEL_EXPORT Tuple
{
public:
    Tuple();
    explicit Tuple(const char *className);
    Tuple(const Tuple &);
    Tuple(Tuple &&) noexcept;
    Tuple &operator=(const Tuple &);
    Tuple &operator=(Tuple &&) noexcept;
    ~Tuple();

    QByteArray class_name() const;
    void set_class_name(const Symbol &className);
    void set_class_name(const QByteArray &className);

    int size() const;
    bool isEmpty() const { return size() == 0; }
    /// Field number \p index, 0 to size() - 1.
    QByteArray name(int index) const;
    Value value(int index) const;

    /// The field's value, or one of T_NONE when it is absent; the reference holds until this tuple is written
    /// to.
    const Value &get(const char *name) const &;
    Value get(const char *name) const &&;
    /// Sets the field, in its old place when it is there already; a value of T_NONE removes it.
    void set(const char *name, const Value &value);
    void set(const QByteArray &name, const Value &value);
    bool is_set(const char *name) const;
    bool is_set(const char *name, Types type) const;
    void clear();
    /// Takes every field of \p other over, in its order; fields that only this one has stay.
    void splice(const Tuple &other);

    friend TESSEL_EXPORT bool operator==(const Tuple &a, const Tuple &b);
    friend bool operator!=(const Tuple &a, const Tuple &b) { return !(a == b); }

private:
    friend struct TupleBuilder;
    struct Data;
    const Data &read() const;
    Data &write();
    int indexOf(const char *name, int length) const;
    int indexOf(const char *name) const;
    int indexOf(const QByteArray &name) const;
    void setAt(int index, const QByteArray &name, const Value &value);
    QSharedDataPointer<Data> d;
};

} // namespace tessel

#endif // TESSEL_TUPLE_H
