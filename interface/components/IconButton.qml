// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
import QtQuick 2.15
import QtQuick.Controls 2.15
import HalvarStyle 1.0

// A button that is only a sign; text is its name for those who do not see it.
Button {
    id: control

    required property string sign
    property real signSize: 26

    implicitWidth: Theme.touch
    implicitHeight: Theme.touch
    padding: 0
    leftPadding: 0
    rightPadding: 0
    flat: true
    topInset: 3
    bottomInset: 3
    leftInset: 3
    rightInset: 3

    contentItem: Item {
        Icon {
            anchors.centerIn: parent
            name: control.sign
            size: control.signSize
            color: control.ink
        }
    }
}
