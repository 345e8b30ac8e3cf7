// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
import QtQuick 2.15
import QtQuick.Templates 2.15 as T
import HalvarStyle 1.0

// highlighted: the one thing to do here. flat: one among others. danger: what is lost is lost.
T.Button {
    id: control

    property bool danger: false

    implicitWidth: Math.max(Theme.touch, implicitContentWidth + leftPadding + rightPadding)
    implicitHeight: Math.max(Theme.touch, implicitContentHeight + topPadding + bottomPadding)
    padding: Theme.spacing
    leftPadding: Theme.spacing + 4
    rightPadding: Theme.spacing + 4
    font.pixelSize: Theme.fontNormal
    font.weight: Font.DemiBold
    focusPolicy: Qt.StrongFocus

    Accessible.role: Accessible.Button
    Accessible.name: text
    Keys.onReturnPressed: function(event) { press(event); }
    Keys.onEnterPressed: function(event) { press(event); }

    // A key that is held down presses once.
    function press(event) {
        if (!event.isAutoRepeat)
            clicked();
    }

    readonly property color ink: !enabled ? Theme.disabledInk : danger ? Theme.alarmInk : highlighted ? Theme.primaryInk : Theme.primary

    contentItem: Text {
        text: control.text
        font: control.font
        color: control.ink
        horizontalAlignment: Text.AlignHCenter
        verticalAlignment: Text.AlignVCenter
        wrapMode: Text.Wrap
    }
    background: Rectangle {
        radius: Theme.radius
        color: {
            if (!control.enabled)
                return control.flat ? "transparent" : Theme.disabled;
            if (control.danger)
                return Theme.alarm;
            if (control.highlighted)
                return control.down ? Theme.primaryPressed : Theme.primary;
            if (control.down || control.checked)
                return Theme.surfacePressed;
            return control.flat ? "transparent" : Theme.surface;
        }
        border.width: control.visualFocus ? 3 : control.flat || control.highlighted || control.danger || !control.enabled ? 0 : 1
        border.color: control.visualFocus ? Theme.focus : Theme.outline

        // The focus's colour is too near to that of what is highlighted.
        Rectangle {
            anchors { fill: parent; margins: 3 }
            visible: control.visualFocus && (control.highlighted || control.danger)
            radius: parent.radius - 3
            color: "transparent"
            border { width: 2; color: Theme.primaryInk }
        }
    }
}
