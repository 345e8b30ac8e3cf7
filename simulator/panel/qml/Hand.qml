// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
pragma Singleton
import QtQuick 2.15

// Does to the instrument what a control of the panel stands for.
QtObject {
    // What was refused, in the simulator's words.
    signal refused(string reason)

    function run(command, members) {
        var reason = panel.command(command, members || {});
        if (reason !== "")
            refused(reason);
    }
}
