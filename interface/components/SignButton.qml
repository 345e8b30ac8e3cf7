// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
import QtQuick 2.15
import QtQuick.Controls 2.15
import HalvarStyle 1.0

// A button with a sign before its words.
Button {
    id: control

    required property string sign

    contentItem: Item {
        readonly property real before: control.sign === "" ? 0 : 24 + Theme.spacing
        implicitWidth: before + words.implicitWidth
        implicitHeight: Math.max(words.implicitHeight, 24)

        Row {
            id: row
            anchors.centerIn: parent
            spacing: Theme.spacing

            Icon {
                anchors.verticalCenter: parent.verticalCenter
                visible: control.sign !== ""
                name: control.sign
                color: control.ink
            }
            Text {
                id: words
                anchors.verticalCenter: parent.verticalCenter
                width: Math.min(implicitWidth, control.availableWidth - row.parent.before)
                text: control.text
                font: control.font
                color: control.ink
                wrapMode: Text.Wrap
            }
        }
    }
}
