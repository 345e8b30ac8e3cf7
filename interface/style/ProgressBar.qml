// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
import QtQuick 2.15
import QtQuick.Templates 2.15 as T
import HalvarStyle 1.0

T.ProgressBar {
    id: control

    implicitWidth: 200
    implicitHeight: 14

    Accessible.role: Accessible.ProgressBar

    background: Rectangle {
        radius: height / 2
        color: Theme.disabled
    }
    contentItem: Item {
        Rectangle {
            readonly property real part: control.indeterminate ? 0.3 : control.visualPosition
            property real phase: 0

            x: control.indeterminate ? (parent.width - width) * phase : 0
            width: Math.max(height, parent.width * part)
            height: parent.height
            radius: height / 2
            color: Theme.primary

            SequentialAnimation on phase {
                running: control.indeterminate && control.visible
                loops: Animation.Infinite
                NumberAnimation { from: 0; to: 1; duration: 900; easing.type: Easing.InOutQuad }
                NumberAnimation { from: 1; to: 0; duration: 900; easing.type: Easing.InOutQuad }
            }
        }
    }
}
