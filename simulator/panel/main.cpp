// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include <QGuiApplication>

#include <options.h>
#include <program.h>

#include "panelwindow.h"

int main(int argc, char *argv[])
{
    simulator::Face panel;
    panel.makeApplication = [](int &count, char **arguments) {
        QCoreApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
        auto application = std::make_unique<QGuiApplication>(count, arguments);
        // Who closes the panel does not switch the instrument off under the operator's hands.
        QGuiApplication::setQuitOnLastWindowClosed(false);
        return application;
    };
    panel.open = [](simulator::Simulator &instrument,
                    const simulator::Options &options) -> std::shared_ptr<void> {
        simulator::PanelWindow::prepare();
        auto window = std::make_shared<simulator::PanelWindow>(instrument, QLocale(options.language));
        if (!window->open(options.position))
            return nullptr;
        return window;
    };
    return simulator::run(argc, argv, panel);
}
