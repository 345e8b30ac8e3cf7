// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
import QtQuick 2.15
import HalvarStyle 1.0

// A line of a table: what it is, and its value. Each takes what the other leaves of the line, and half of it at least.
Item {
    id: fact

    required property string name
    required property string value

    Accessible.role: Accessible.StaticText
    Accessible.name: qsTr("%1 : %2").arg(name).arg(valueText.text)
    implicitHeight: Math.max(nameText.implicitHeight, valueText.implicitHeight) + 6

    Body {
        id: nameText
        width: parent.width - valueText.width - Theme.spacing
        text: fact.name
        color: Theme.textSecondary
        font.pixelSize: Theme.fontSmall
    }
    Body {
        id: valueText
        anchors.right: parent.right
        width: Math.min(implicitWidth, Math.max(parent.width / 2, parent.width - nameText.implicitWidth - Theme.spacing))
        horizontalAlignment: Text.AlignRight
        text: fact.value === "" ? "–" : fact.value
        font { pixelSize: Theme.fontSmall; weight: Font.DemiBold }
        wrapMode: Text.WrapAnywhere
    }
}
