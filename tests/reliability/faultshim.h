// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef FAULTSHIM_H
#define FAULTSHIM_H

#include <functional>
#include <string>
#include <vector>

/// Stands before the C library's file calls, counts those that concern files below given directories, and
/// lets any one of them go wrong.
///
/// A shared library: its functions come first when it is linked first, or loaded through LD_PRELOAD. Only the
/// thread that arms it is watched; every other call passes untouched.
namespace faultshim {

enum class Kind {
    Open,
    Read,
    Write,
    Sync,
    Truncate,
    Mode,
    Rename,
    Link,
    Unlink,
    Close,
    Look, ///< stat, access and their like
};

struct Event
{
    Kind kind;
    std::string path = {};
    std::string target = {}; ///< of a rename or link
    int descriptor = -1;
    int flags = 0; ///< of an open
    long long offset = -1; ///< of a write at a place of its own; the length of a truncation
    std::string bytes = {}; ///< of a write, as far as it was done
    int error = 0; ///< errno of a call that failed
};

enum class Fault {
    None,
    Kill, ///< SIGKILL instead of the call
    KillHalfWritten, ///< SIGKILL after half of a write; other calls are done
    FailOnce,
    FailFromHere, ///< this call and all that follow
    ShortWrite, ///< half of what is asked for; other calls are done
    ShortWriteThenFail, ///< the same, and every call that follows fails
    Act, ///< runs the action before the call
};

struct Plan
{
    std::vector<std::string> directories; ///< absolute; what is below them is watched
    Fault fault = Fault::None;
    int call = 0; ///< the first call is number 1
    int error = 0; ///< an errno value
    std::function<void()> action;
};

/// From now on this thread's calls are watched and \p plan comes true.
__attribute__((visibility("default"))) void arm(const Plan &plan);
/// Ends the watch. \return the calls seen, those that failed included.
__attribute__((visibility("default"))) std::vector<Event> disarm();

/// E.g. "write /home/files/a.tmp".
__attribute__((visibility("default"))) std::string describe(const Event &event);

} // namespace faultshim

#endif // FAULTSHIM_H
