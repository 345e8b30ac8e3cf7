// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
import QtQuick 2.15
import QtQuick.Templates 2.15 as T
import HalvarStyle 1.0

T.CheckBox {
    id: control

    implicitWidth: implicitContentWidth + leftPadding + rightPadding
    implicitHeight: Math.max(Theme.touch, implicitContentHeight + 2 * Theme.spacing)
    leftPadding: indicator.width + Theme.spacing
    font.pixelSize: Theme.fontNormal

    Accessible.role: Accessible.CheckBox
    Accessible.name: text
    Accessible.checked: checked
    Keys.onReturnPressed: function(event) { press(event); }
    Keys.onEnterPressed: function(event) { press(event); }

    // A key that is held down presses once.
    function press(event) {
        if (event.isAutoRepeat)
            return;
        toggle();
        toggled();
    }

    indicator: Rectangle {
        y: (control.height - height) / 2
        implicitWidth: 30
        implicitHeight: 30
        radius: 6
        color: control.checked ? Theme.primary : Theme.surface
        border.width: control.visualFocus ? 3 : 2
        border.color: control.visualFocus ? Theme.focus : control.checked ? Theme.primary : Theme.outline

        Text {
            anchors.centerIn: parent
            visible: control.checked
            text: "✓"
            color: Theme.primaryInk
            font { pixelSize: 20; bold: true }
        }
    }
    contentItem: Text {
        text: control.text
        font: control.font
        color: Theme.text
        verticalAlignment: Text.AlignVCenter
        wrapMode: Text.Wrap
    }
}
