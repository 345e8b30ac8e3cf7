// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
import QtQuick 2.15
import HalvarStyle 1.0

// What each part of the instrument did last.
Column {
    id: list

    readonly property var last: panel.last
    readonly property var rows: [
        { part: "beeper", sign: "pulse", name: qsTr("Bip"),
          text: last.beeper ? (last.beeper.on ? qsTr("sonne") : qsTr("muet, %1 en tout").arg(panel.state.beeper.beeps)) : "" },
        { part: "light", sign: "light", name: qsTr("Lampe"),
          text: last.light ? (last.light.on ? qsTr("allumée") : qsTr("éteinte")) : "" },
        { part: "shutter", sign: "open", name: qsTr("Obturateur"),
          text: last.shutter ? (last.shutter.on ? qsTr("ouvert") : qsTr("fermé")) : "" },
        { part: "gpio", sign: "tune", name: qsTr("GPIO"), text: last.gpio ? last.gpio.text : "" },
        { part: "shell", sign: "next", name: qsTr("Commande"), text: last.shell ? last.shell.text : "" }
    ]

    Caption {
        width: parent.width
        bottomPadding: 4
        text: qsTr("Dernières actions")
    }
    Repeater {
        model: 5
        Item {
            readonly property var row: list.rows[index]
            readonly property var done: list.last[row.part]

            objectName: row.part + "Done"
            width: parent.width
            height: Math.max(26, what.implicitHeight + 4)
            Accessible.role: Accessible.StaticText
            Accessible.name: row.name + " : " + what.text

            Icon {
                id: icon
                anchors.verticalCenter: parent.verticalCenter
                name: parent.row.sign
                size: 20
            }
            Text {
                id: title
                anchors { left: icon.right; leftMargin: Theme.spacingSmall; verticalCenter: parent.verticalCenter }
                width: 96
                text: parent.row.name
                color: Theme.textSecondary
                font.pixelSize: Theme.fontSmall
            }
            Text {
                id: what
                objectName: parent.row.part + "What"
                anchors {
                    left: title.right; right: time.left; rightMargin: Theme.spacingSmall
                    verticalCenter: parent.verticalCenter
                }
                text: parent.row.text || qsTr("rien encore")
                color: Theme.text
                font { pixelSize: Theme.fontSmall; weight: Font.DemiBold }
                wrapMode: Text.Wrap
                maximumLineCount: 2
                elide: Text.ElideRight
                textFormat: Text.PlainText
            }
            Text {
                id: time
                anchors { right: parent.right; verticalCenter: parent.verticalCenter }
                text: parent.done ? parent.done.time : ""
                color: Theme.textSecondary
                font.pixelSize: Theme.fontTiny
            }
        }
    }
}
