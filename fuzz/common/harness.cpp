// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include "harness.h"

#include <QCoreApplication>
#include <QHash>

#include <csignal>
#include <cstdio>
#include <cstdlib>

#include <QsLog.h>
#include <QsLogDest.h>

#include "heapwatch.h"

namespace {

void dropLine(const QString &, QsLogging::Level) { }

} // namespace

void fuzz::fail(const char *file, int line, const QString &what)
{
    std::fprintf(stderr, "%s:%d: broken promise: %s\n", file, line, qUtf8Printable(what));
    std::abort();
}

extern "C" int LLVMFuzzerInitialize(int *argc, char ***argv)
{
    // The same input takes the same way each time.
    qSetGlobalQHashSeed(0);
    std::signal(SIGPIPE, SIG_IGN);
    // Never destroyed: a target's threads may outlive main().
    new QCoreApplication(*argc, *argv);
    QsLogging::Logger::instance().addDestination(
        QsLogging::DestinationFactory::MakeFunctorDestination(&dropLine));
    fuzz::prepare();
    fuzz::HeapWatch::install();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, size_t size)
{
    // Composing every line takes longer than reading the input: some inputs show that it can be done.
    constexpr size_t logged = 8;
    QsLogging::Logger::instance().setLoggingLevel(size % logged == 0 ? QsLogging::TraceLevel
                                                                     : QsLogging::ErrorLevel);
    const fuzz::HeapWatch watch(size);
    fuzz::run(QByteArray(reinterpret_cast<const char *>(data), int(size)));
    return 0;
}
