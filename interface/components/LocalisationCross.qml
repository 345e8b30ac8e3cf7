// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
import QtQuick 2.15
import QtQuick.Controls 2.15
import Halvar 4.0
import HalvarStyle 1.0

// The five positions on an element, laid out as they lie on it. The chosen one touched again is taken back.
Item {
    id: cross

    property int value: LocalisationEnumClass.NOT_DETERMINED
    readonly property int side: 68

    signal chosen(int localisation)

    implicitWidth: 3 * side + 2 * Theme.spacingSmall
    implicitHeight: implicitWidth + caption.height + Theme.spacingSmall
    Accessible.role: Accessible.Grouping
    Accessible.name: qsTr("Position : %1").arg(caption.text)

    Repeater {
        model: [
            { localisation: LocalisationEnumClass.UP, column: 1, row: 0 },
            { localisation: LocalisationEnumClass.LEFT, column: 0, row: 1 },
            { localisation: LocalisationEnumClass.CENTER, column: 1, row: 1 },
            { localisation: LocalisationEnumClass.RIGHT, column: 2, row: 1 },
            { localisation: LocalisationEnumClass.DOWN, column: 1, row: 2 }
        ]
        Button {
            id: place
            required property var modelData
            readonly property bool current: cross.value === place.modelData.localisation
            objectName: "localisation" + place.modelData.localisation
            x: place.modelData.column * (cross.side + Theme.spacingSmall)
            y: place.modelData.row * (cross.side + Theme.spacingSmall)
            width: cross.side
            height: cross.side
            highlighted: current
            text: Words.localisation(place.modelData.localisation)
            onClicked: cross.chosen(current ? LocalisationEnumClass.NOT_DETERMINED : place.modelData.localisation)
            padding: 0
            leftPadding: 2
            rightPadding: 2
            font.pixelSize: Theme.fontSmall
        }
    }
    Text {
        id: caption
        anchors { bottom: parent.bottom; horizontalCenter: parent.horizontalCenter }
        text: Words.localisation(cross.value)
        color: Theme.text
        font { pixelSize: Theme.fontSmall; weight: Font.DemiBold }
    }
}
