// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef CORE_H
#define CORE_H

#include <sched.h>

/// Keeps the calling thread, and the threads and processes that it starts, on one processor: the last that it
/// may use, which is the same one in every process of a run. Two ends that share it show the work of both;
/// spread over two they would hide the one behind the other, differently on each machine.
class OneCore
{
public:
    OneCore()
    {
        if (::sched_getaffinity(0, sizeof m_before, &m_before) != 0)
            return;
        int last = -1;
        for (int core = 0; core < CPU_SETSIZE; ++core) {
            if (CPU_ISSET(core, &m_before))
                last = core;
        }
        cpu_set_t one;
        CPU_ZERO(&one);
        if (last >= 0)
            CPU_SET(last, &one);
        m_pinned = ::sched_setaffinity(0, sizeof one, &one) == 0;
    }
    ~OneCore()
    {
        if (m_pinned)
            ::sched_setaffinity(0, sizeof m_before, &m_before);
    }
    OneCore(const OneCore &) = delete;
    OneCore &operator=(const OneCore &) = delete;

    bool isPinned() const { return m_pinned; }

private:
    cpu_set_t m_before{};
    bool m_pinned = false;
};

#endif // CORE_H
