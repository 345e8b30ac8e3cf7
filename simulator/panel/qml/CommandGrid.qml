// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
import QtQuick 2.15
import QtQuick.Controls 2.15
import HalvarStyle 1.0

// Buttons in two columns, each of which gives the instrument one command.
Grid {
    id: grid

    // Objects with name, text, command and its members.
    property alias commands: repeater.model

    columns: 2
    spacing: Theme.spacingSmall

    Repeater {
        id: repeater
        Button {
            objectName: modelData.name
            width: (grid.width - Theme.spacingSmall) / 2
            leftPadding: 6
            rightPadding: 6
            text: modelData.text
            font.pixelSize: Theme.fontSmall
            onClicked: Hand.run(modelData.command, modelData.members)
        }
    }
}
