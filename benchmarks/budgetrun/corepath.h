// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef COREPATH_H
#define COREPATH_H

#include <deque>
#include <string>
#include <utility>

#include <valgrind/callgrind.h>

/// A path of the library that does a fixed amount of work, whose instructions are counted.
struct CorePath
{
    std::string name; ///< as in budget.json
    std::string work; ///< what is counted
    void (*run)();
};

/// All paths, in the order of registration.
std::deque<CorePath> &corePaths();
/// For a static initialiser.
bool corePath(const std::string &name, const std::string &work, void (*run)());

/// What the work has left is not what it should have left: ends the process, with exit status 1.
[[noreturn]] void wrongResult(const char *what);
inline void expect(bool holds, const char *what)
{
    if (!holds)
        wrongResult(what);
}

/// From here to the end of its life the instructions of this thread count. Without callgrind it does nothing.
class Counting
{
public:
    Counting()
    {
        CALLGRIND_START_INSTRUMENTATION;
        CALLGRIND_TOGGLE_COLLECT;
    }
    ~Counting()
    {
        CALLGRIND_TOGGLE_COLLECT;
        CALLGRIND_STOP_INSTRUMENTATION;
    }
    Counting(const Counting &) = delete;
    Counting &operator=(const Counting &) = delete;
};

/// Does \p work twice and counts the second time, in which nothing is done for the first time any more.
/// \p prepare comes before each and does not count.
template <class Prepare, class Work>
void countSecond(Prepare prepare, Work work)
{
    prepare();
    work();
    prepare();
    const Counting counting;
    work();
}

template <class Work>
void countSecond(Work work)
{
    countSecond([] {}, std::move(work));
}

#endif // COREPATH_H
