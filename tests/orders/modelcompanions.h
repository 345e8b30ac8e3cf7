// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef ORDERS_MODELCOMPANIONS_H
#define ORDERS_MODELCOMPANIONS_H

#include <array>
#include <optional>

#include "state.h"

namespace orders {

/// The attempts at a calibration, and what the operator is told of them.
struct CalibrationModel
{
    enum Status {
        NotStarted,
        InProgress,
        Failed,
        TooManyErrors,
        Done
    };

    void request(int requested, Effects &out)
    {
        if (status == Failed && requested == Done) {
            status = NotStarted; // untold
            return;
        }
        if (status == requested)
            return;
        status = requested;
        switch (requested) {
        case InProgress:
            ++attempts;
            break;
        case Failed:
            if (attempts >= maximum)
                status = TooManyErrors;
            break;
        case Done:
            attempts = 0;
            break;
        default:
            return; // untold
        }
        out.push_back("calibrationStateChanged " + std::to_string(status));
    }

    int status = NotStarted;
    int attempts = 0;
    int maximum = 3;
};

/// The keypad.
struct PinModel
{
    static constexpr int EnableDelay = 5000; // ms

    void setSecret(int code)
    {
        for (int i = 4; i >= 0; --i, code /= 10)
            secret[std::size_t(i)] = code % 10;
    }

    void accept(bool value, Effects &out)
    {
        if (accepted == value)
            return;
        accepted = value;
        out.push_back(std::string("pin accepted ") + (value ? "true" : "false"));
    }

    void tellCount(Effects &out)
    {
        if (told == int(entered.size()))
            return;
        told = int(entered.size());
        out.push_back("pin nbDigits " + std::to_string(told));
    }

    void enter(const std::string &digit, Effects &out)
    {
        if (disabled || entered.size() == 5)
            return;
        entered.push_back(toShort(digit));
        tellCount(out);
    }

    void clearDigit(Effects &out)
    {
        if (!entered.empty())
            entered.pop_back();
        tellCount(out);
    }

    void clearDigits(Effects &out)
    {
        entered.clear();
        tellCount(out);
        accept(false, out);
    }

    bool check(Effects &out)
    {
        if (entered.size() != 5)
            return false;
        const bool right = std::equal(entered.begin(), entered.end(), secret.begin());
        accept(right, out);
        if (!right && ++failures == 3) {
            out.push_back("log [Halvar Controller][PIN]: 3 wrong password reached.");
            failures = 0;
        }
        return right;
    }

    /// Whether that was a change.
    bool disable(bool value, Effects &out)
    {
        if (disabled == value)
            return false;
        disabled = value;
        out.push_back(std::string("pin disabled ") + (value ? "true" : "false"));
        return true;
    }

    /// A number that fits, written in digits after an optional sign; everything else counts as 0.
    static int toShort(const std::string &digit)
    {
        const std::size_t first = digit.size() > 1 && (digit[0] == '-' || digit[0] == '+') ? 1 : 0;
        if (digit.empty() || digit.size() > 6
            || digit.find_first_not_of("0123456789", first) != std::string::npos)
            return 0;
        const int value = std::stoi(digit);
        return value >= -32768 && value <= 32767 ? value : 0;
    }

    std::array<int, 5> secret{-1, -1, -1, -1, -1};
    std::vector<int> entered;
    int told = 0;
    int failures = 0;
    bool accepted = false;
    bool disabled = false;
};

/// A clock that stands still between the events, and the timers of the controller on it.
class ClockModel
{
public:
    enum Timer {
        PinEnable = TimerCount,
        BatteryTick,
        AllTimers
    };

    void setInterval(int timer, std::int64_t interval)
    {
        m_timers[std::size_t(timer)].interval = interval;
        if (m_timers[std::size_t(timer)].due)
            start(timer); // a running timer begins anew
    }
    void start(int timer)
    {
        Entry &entry = m_timers[std::size_t(timer)];
        entry.due = m_now + entry.interval;
        entry.order = ++m_starts;
    }
    void stop(int timer) { m_timers[std::size_t(timer)].due.reset(); }

    TimerState state(int timer) const
    {
        const Entry &entry = m_timers[std::size_t(timer)];
        return {entry.due.has_value(), entry.due ? *entry.due - m_now : 0};
    }

    /// The moment of the next expiry; of the battery's, which never ends, only when it is that of another
    /// one.
    std::optional<std::int64_t> next() const
    {
        std::optional<std::int64_t> ret;
        for (int timer = 0; timer < AllTimers; ++timer) {
            const Entry &entry = m_timers[std::size_t(timer)];
            if (timer != BatteryTick && entry.due && (!ret || *entry.due < *ret))
                ret = entry.due;
        }
        return ret;
    }

    /// Advances to the next expiry at or before \p moment, ends that timer and returns it; without one
    /// advances to \p moment and returns -1.
    int expire(std::int64_t moment)
    {
        Entry *const first = const_cast<Entry *>(earliest());
        if (!first || *first->due > moment) {
            m_now = moment;
            return -1;
        }
        m_now = *first->due;
        first->due.reset();
        return int(first - m_timers.data());
    }
    std::int64_t now() const { return m_now; }

private:
    struct Entry
    {
        std::int64_t interval = 0;
        std::optional<std::int64_t> due;
        std::uint64_t order = 0;
    };
    const Entry *earliest() const
    {
        const Entry *ret = nullptr;
        for (const Entry &entry : m_timers) {
            if (entry.due
                && (!ret || *entry.due < *ret->due || (*entry.due == *ret->due && entry.order < ret->order)))
                ret = &entry;
        }
        return ret;
    }

    std::array<Entry, AllTimers> m_timers;
    std::int64_t m_now = 0;
    std::uint64_t m_starts = 0;
};

} // namespace orders

#endif // ORDERS_MODELCOMPANIONS_H
