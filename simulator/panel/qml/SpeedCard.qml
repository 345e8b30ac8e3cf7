// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
import QtQuick 2.15
import QtQuick.Controls 2.15
import HalvarStyle 1.0

// Time of the instrument: everything that it does counts in it.
Card {
    readonly property real speed: panel.state.speed

    Caption {
        width: parent.width
        text: qsTr("Vitesse du temps : × %1").arg(Number(speed).toLocaleString(Qt.locale(), "g", 4))
    }
    Grid {
        width: parent.width
        columns: 5
        spacing: Theme.spacingSmall

        Repeater {
            model: [0.2, 1, 5, 20, 100]
            Button {
                objectName: "speed" + index
                width: (parent.width - 4 * Theme.spacingSmall) / 5
                leftPadding: 2
                rightPadding: 2
                text: "× " + Number(modelData).toLocaleString(Qt.locale(), "g", 4)
                highlighted: speed === modelData
                Accessible.name: qsTr("Vitesse du temps : %1").arg(text)
                onClicked: Hand.run("speed", { value: modelData })
            }
        }
    }
}
