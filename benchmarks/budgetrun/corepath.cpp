// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include "corepath.h"

#include <cstdio>
#include <cstdlib>

std::deque<CorePath> &corePaths()
{
    static std::deque<CorePath> all;
    return all;
}

bool corePath(const std::string &name, const std::string &work, void (*run)())
{
    corePaths().push_back({name, work, run});
    return true;
}

void wrongResult(const char *what)
{
    std::fprintf(stderr, "wrong result: %s\n", what);
    std::_Exit(1);
}
