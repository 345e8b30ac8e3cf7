// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include <QCoreApplication>

#include "program.h"

int main(int argc, char *argv[])
{
    simulator::Face none;
    none.makeApplication = [](int &count, char **arguments) {
        return std::make_unique<QCoreApplication>(count, arguments);
    };
    return simulator::run(argc, argv, none);
}
