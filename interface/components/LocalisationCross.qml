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
    readonly property int cellWidth: 84
    readonly property int cellHeight: 54
    readonly property Item first: places.count > 0 ? places.itemAt(0) : null

    signal chosen(int localisation)

    implicitWidth: Math.max(caption.implicitWidth, 3 * cellWidth + 2 * Theme.spacingSmall)
    implicitHeight: cells.y + 3 * cellHeight + 2 * Theme.spacingSmall
    Accessible.role: Accessible.Grouping
    Accessible.name: caption.text

    Caption {
        id: caption
        anchors.horizontalCenter: parent.horizontalCenter
        text: cross.value === LocalisationEnumClass.NOT_DETERMINED ? qsTr("Où sur l'élément ?")
                                                                : qsTr("Position : %1").arg(Words.localisation(cross.value))
    }
    Item {
        id: cells
        anchors.horizontalCenter: parent.horizontalCenter
        y: caption.height + Theme.spacing
        width: 3 * cross.cellWidth + 2 * Theme.spacingSmall

        Repeater {
            id: places
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
                x: place.modelData.column * (cross.cellWidth + Theme.spacingSmall)
                y: place.modelData.row * (cross.cellHeight + Theme.spacingSmall)
                width: cross.cellWidth
                height: cross.cellHeight
                highlighted: current
                text: Words.localisation(place.modelData.localisation)
                onClicked: cross.chosen(current ? LocalisationEnumClass.NOT_DETERMINED : place.modelData.localisation)

                contentItem: Item {
                    Column {
                        anchors.centerIn: parent
                        spacing: 2
                        Icon {
                            anchors.horizontalCenter: parent.horizontalCenter
                            name: place.current ? "chosen" : "open"
                            size: 20
                            color: place.ink
                        }
                        Text {
                            anchors.horizontalCenter: parent.horizontalCenter
                            text: place.text
                            font { pixelSize: Theme.fontSmall; weight: Font.DemiBold }
                            color: place.ink
                        }
                    }
                }
            }
        }
    }
}
