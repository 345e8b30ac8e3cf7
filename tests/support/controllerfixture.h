// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef CONTROLLERFIXTURE_H
#define CONTROLLERFIXTURE_H

#include <memory>

#include "config.h"
#include "database.h"
#include "halvarcontroller.h"
#include "testhome.h"

/// A controller assembled as an application does it, on a home of its own; without its links until
/// the test calls init(). Only inside a private instrument: it beeps and runs shell commands.
class ControllerFixture
{
public:
    /// Reads what \p home holds at this moment.
    explicit ControllerFixture(const TestHome &home)
    {
        config.read(home.path());
        database.read(home.path());
        controller = std::make_unique<HalvarController>(home.path(), &config, &database);
    }
    HalvarController *operator->() const { return controller.get(); }

    Config config{nullptr};
    Database database{nullptr};
    std::unique_ptr<HalvarController> controller;
};

#endif // CONTROLLERFIXTURE_H
