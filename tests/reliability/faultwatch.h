// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef FAULTWATCH_H
#define FAULTWATCH_H

#include "faultshim.h"

/// What the replaced calls ask before they do their work. Nothing here may be called while watching() is
/// false.
namespace faultshim {

enum class Verdict {
    Proceed,
    Fail,
    Half
};

/// This thread's calls are watched.
bool watching();
/// Absolute, with single slashes; \p directory as openat() takes it.
std::string absolute(int directory, const char *name);
/// \p path lies below one of the plan's directories, or is one.
bool concerns(const std::string &path);
/// The path that \p descriptor was opened with, empty when it is none of ours.
std::string pathOf(int descriptor);
/// \p descriptor belongs to the file of the last event.
void remember(int descriptor, const std::string &path);
void forget(int descriptor);
/// Counts \p event and says what becomes of it; errno is set when it shall fail.
Verdict pass(Event event);
/// What became of the last event: the call answered \p result, and set errno when that is -1.
void answered(long long result);

} // namespace faultshim

#endif // FAULTWATCH_H
