// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef TESSEL_AUTOREF_H
#define TESSEL_AUTOREF_H

#include <atomic>
#include <utility>

namespace tessel {

/// Base of what AutoRef holds: deletes itself with its last reference. Thread-safe counting.
class RefCounted
{
public:
    void add_ref() const { m_references.fetch_add(1, std::memory_order_relaxed); }
    void release() const
    {
        if (m_references.fetch_sub(1, std::memory_order_acq_rel) == 1)
            delete this;
    }

protected:
    RefCounted() = default;
    virtual ~RefCounted() = default;
    RefCounted(const RefCounted &) = delete;
    RefCounted &operator=(const RefCounted &) = delete;

private:
    mutable std::atomic<int> m_references{0};
};

/// A reference-counting handle; empty unless given an object.
template <typename T>
class AutoRef
{
public:
    AutoRef() = default;
    explicit AutoRef(T *object)
        : m_object(object)
    {
        if (m_object)
            m_object->add_ref();
    }
    AutoRef(const AutoRef &other)
        : AutoRef(other.m_object)
    { }
    AutoRef(AutoRef &&other) noexcept
        : m_object(std::exchange(other.m_object, nullptr))
    { }
    template <typename U>
    AutoRef(const AutoRef<U> &other)
        : AutoRef(other.get())
    { }
    ~AutoRef()
    {
        if (m_object)
            m_object->release();
    }
    AutoRef &operator=(AutoRef other) noexcept
    {
        std::swap(m_object, other.m_object);
        return *this;
    }

    void reset() { *this = AutoRef(); }
    T *get() const { return m_object; }
    T *operator->() const { return m_object; }
    T &operator*() const { return *m_object; }
    explicit operator bool() const { return m_object != nullptr; }

    friend bool operator==(const AutoRef &a, const AutoRef &b) { return a.m_object == b.m_object; }
    friend bool operator!=(const AutoRef &a, const AutoRef &b) { return a.m_object != b.m_object; }

private:
    T *m_object = nullptr;
};

} // namespace tessel

#endif // TESSEL_AUTOREF_H
