// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
import QtQuick 2.15
import HalvarStyle 1.0

// A decision or a statut: sign, word and colour together.
Rectangle {
    id: chip

    required property string sign
    required property string word
    property color tint: Theme.neutral
    property bool large: false
    // What it says may still change.
    property bool provisional: false
    readonly property color ink: provisional ? tint : Theme.signInk

    implicitWidth: signIcon.width + label.implicitWidth + (large ? 36 : 26)
    implicitHeight: large ? 44 : 32
    radius: height / 2
    color: provisional ? Theme.surface : tint
    border { width: provisional ? 2 : 0; color: tint }
    Accessible.role: Accessible.StaticText
    Accessible.name: provisional ? qsTr("%1, provisoire").arg(word) : word

    Icon {
        id: signIcon
        anchors { left: parent.left; leftMargin: chip.large ? 12 : 9; verticalCenter: parent.verticalCenter }
        name: chip.sign
        size: chip.large ? 22 : 16
        color: chip.ink
    }
    Text {
        id: label
        anchors {
            left: signIcon.right; leftMargin: chip.large ? 8 : 6
            right: parent.right; rightMargin: chip.large ? 14 : 10
            verticalCenter: parent.verticalCenter
        }
        text: chip.word
        color: chip.ink
        font { pixelSize: chip.large ? Theme.fontLarge : Theme.fontSmall; weight: Font.DemiBold }
        elide: Text.ElideRight
        textFormat: Text.PlainText
    }
}
