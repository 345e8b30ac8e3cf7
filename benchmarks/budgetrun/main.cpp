// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include <QCoreApplication>
#include <QSysInfo>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include <gnu/libc-version.h>

#include "corepath.h"

namespace {

const char *const usage = R"(halvar-budget PATH | --list | --platform
Runs one path of the library with a fixed amount of work, for callgrind to count: see benchmarks/budget.
  --list      the names of all paths and what is done, one a line, a tab between
  --platform  what the numbers of instructions depend on besides our code, one "NAME VALUE" a line
The exit status is 0 when the path did its work, 1 when its result was wrong, 2 for wrong usage.
)";

void list()
{
    for (const CorePath &path : corePaths())
        std::printf("%s\t%s\n", path.name.c_str(), path.work.c_str());
}

void tellPlatform()
{
    std::printf("architecture %s\n", qPrintable(QSysInfo::buildCpuArchitecture()));
    std::printf("compiler %s\n", __VERSION__);
    std::printf("libc %s\n", gnu_get_libc_version());
    std::printf("qt %s\n", qVersion());
}

} // namespace

int main(int argc, char **argv)
{
    if (argc != 2) {
        std::fputs(usage, stderr);
        return 2;
    }
    if (std::strcmp(argv[1], "--help") == 0) {
        std::fputs(usage, stdout);
        return 0;
    }
    if (std::strcmp(argv[1], "--list") == 0) {
        list();
        return 0;
    }
    if (std::strcmp(argv[1], "--platform") == 0) {
        tellPlatform();
        return 0;
    }
    const auto path = std::find_if(corePaths().begin(), corePaths().end(),
                                   [argv](const CorePath &known) { return known.name == argv[1]; });
    if (path == corePaths().end()) {
        std::fprintf(stderr, "halvar-budget: no path is called \"%s\".\n", argv[1]);
        return 2;
    }
    // The number of instructions must not depend on which buckets names fall into.
    qSetGlobalQHashSeed(0);
    const QCoreApplication application(argc, argv);
    path->run();
    // Nothing that runs from here on is counted, nor waited for.
    std::fflush(nullptr);
    std::_Exit(0);
}
