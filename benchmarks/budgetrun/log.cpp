// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include <QString>

#include <QsLog.h>

#include "corepath.h"

namespace {

using QsLogging::Logger;

void keepOut()
{
    Logger::instance().setLoggingLevel(QsLogging::InfoLevel);
    int composed = 0;
    countSecond([&] {
        for (int i = 0; i < 10000; ++i)
            QLOG_DEBUG() << "[Halvar Controller]: Enabled! " << ++composed;
    });
    expect(composed == 0, "a line was composed");
}

const bool registered = corePath("log-kept-out", "10,000 log lines below the logger's level", keepOut);

} // namespace
