// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
import QtQuick 2.15
import QtQuick.Controls 2.15
import HalvarStyle 1.0

// What must not be overlooked, across the whole width, with the one thing to do about it.
Rectangle {
    id: banner

    required property string heading
    property string detail
    property string sign: "warning"
    required property string action
    property color ink: Theme.alarmInk

    signal acted()

    implicitHeight: visible ? Math.max(Theme.touch + 12, words.implicitHeight + 2 * Theme.spacing) : 0
    Accessible.role: Accessible.AlertMessage
    Accessible.name: heading + ". " + detail

    Icon {
        id: icon
        anchors { left: parent.left; leftMargin: Theme.margin; verticalCenter: parent.verticalCenter }
        name: banner.sign
        size: 28
        color: banner.ink
    }
    Column {
        id: words
        anchors {
            left: icon.right; leftMargin: Theme.spacing
            right: button.left; rightMargin: Theme.spacing
            verticalCenter: parent.verticalCenter
        }
        Text {
            width: parent.width
            text: banner.heading
            color: banner.ink
            font { pixelSize: Theme.fontNormal; weight: Font.DemiBold }
            wrapMode: Text.Wrap
            textFormat: Text.PlainText
        }
        Text {
            width: parent.width
            visible: text !== ""
            text: banner.detail
            color: banner.ink
            font.pixelSize: Theme.fontSmall
            wrapMode: Text.Wrap
            textFormat: Text.PlainText
        }
    }
    Button {
        id: button
        objectName: "bannerButton"
        anchors { right: parent.right; rightMargin: Theme.margin; verticalCenter: parent.verticalCenter }
        text: banner.action
        onClicked: banner.acted()
    }
}
