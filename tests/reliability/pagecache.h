// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef PAGECACHE_H
#define PAGECACHE_H

#include <map>
#include <string>
#include <vector>

#include "faultshim.h"

/// What a disk may hold after the power went, worked out from the calls that were made.
///
/// The model is as unkind as a journaling file system may be: names change in the order of the calls, as far
/// as the journal got, but at least up to the last sync of the directory; the bytes of a file are what they
/// were at its last sync, or what was written since, or half of it, or zeros of that length. So a rename may
/// be kept while the bytes behind it are lost.
namespace pagecache {

/// Path and content.
using Disk = std::map<std::string, std::string>;

struct State
{
    int calls; ///< how many calls were made before the power went
    Disk disk;
};

/// Every state that the power cut can leave, after each of \p events in turn and before the first. Opens
/// create and truncate; a call that failed changes nothing.
std::vector<State> statesAfterPowerCut(const Disk &before, const std::vector<faultshim::Event> &events);

} // namespace pagecache

#endif // PAGECACHE_H
