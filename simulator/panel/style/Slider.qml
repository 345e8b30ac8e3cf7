// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
import QtQuick 2.15
import QtQuick.Templates 2.15 as T
import HalvarStyle 1.0

T.Slider {
    id: control

    implicitWidth: 240
    implicitHeight: Theme.touch
    padding: 2
    focusPolicy: Qt.StrongFocus

    Accessible.role: Accessible.Slider

    background: Rectangle {
        x: control.leftPadding
        y: (control.height - height) / 2
        width: control.availableWidth
        height: 8
        radius: height / 2
        color: Theme.disabled

        Rectangle {
            width: control.handle.x + control.handle.width / 2 - control.leftPadding
            height: parent.height
            radius: height / 2
            color: control.enabled ? Theme.primary : Theme.disabledInk
        }
    }
    handle: Rectangle {
        x: control.leftPadding + control.visualPosition * (control.availableWidth - width)
        y: (control.height - height) / 2
        width: 30
        height: 30
        radius: width / 2
        color: !control.enabled ? Theme.disabled : control.pressed ? Theme.primaryPressed : Theme.primary
        border.width: control.visualFocus ? 4 : 2
        border.color: control.visualFocus ? Theme.focus : Theme.surface
    }
}
