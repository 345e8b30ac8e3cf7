// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef CONTROLLERFIXTURE_H
#define CONTROLLERFIXTURE_H

#include <QList>
#include <QObject>

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

/// The MSP commands that a controller asked for since this was constructed, in order.
class SentCommands : public QObject
{
public:
    explicit SentCommands(HalvarController *controller)
    {
        connect(controller, &HalvarController::msp_send_request, this,
                [this](MSPClient::MSPCommand command, const QString &params) {
                    commands.append(command);
                    allNull = allNull && params.isNull();
                });
    }
    QList<int> commands;
    bool allNull = true; ///< every parameter text was a null string
};

#endif // CONTROLLERFIXTURE_H
