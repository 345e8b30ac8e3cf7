// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
import QtQuick 2.15
import QtQuick.Controls 2.15
import HalvarComponents 1.0
import HalvarStyle 1.0

// Where everything starts from.
Screen {
    id: screen

    canGoBack: false
    first: opened.visible ? opened : tiles.count > 0 ? tiles.itemAt(0) : null
    title: qsTr("Que faire ?")
    actions: IconButton {
        objectName: "themeButton"
        sign: Theme.night ? "sun" : "moon"
        text: Theme.night ? qsTr("Affichage de jour") : qsTr("Affichage de nuit")
        onClicked: ApplicationWindow.window.night = !Theme.night
    }

    readonly property var places: [
        { name: "diagnostics", sign: "folder", text: qsTr("Diagnostics"), screen: "DiagnosticsScreen" },
        { name: "direct", sign: "target", text: qsTr("Mesures directes"), screen: "DirectScreen" },
        { name: "accuracy", sign: "balance", text: qsTr("Contrôle de justesse"), screen: "AccuracyScreen" },
        { name: "calibration", sign: "tune", text: qsTr("Calibrage"), screen: "CalibrationScreen" },
        { name: "shocks", sign: "shock", text: qsTr("Chocs"), screen: "ShocksScreen" },
        { name: "service", sign: "wrench", text: qsTr("Service"), screen: "ServiceScreen" }
    ]

    Sheet {
        id: sheet
        anchors.fill: parent

        ListRow {
            id: opened
            objectName: "openDiagnostic"
            width: parent.width
            visible: controller.fileName !== ""
            sign: "document"
            heading: controller.fileName
            detail: controller.localization === "" ? qsTr("Diagnostic ouvert")
                                                   : qsTr("Diagnostic ouvert · %1").arg(controller.localization)
            onClicked: Nav.open("DiagnosticScreen")
        }
        Grid {
            id: grid
            width: parent.width
            columns: screen.wide ? 3 : 2
            readonly property int lines: Math.ceil(screen.places.length / columns)
            spacing: Theme.spacing

            Repeater {
                id: tiles
                model: screen.places
                Button {
                    id: tile
                    required property var modelData
                    required property int index
                    readonly property real room: grid.width - (grid.columns - 1) * grid.spacing
                    objectName: "tile_" + tile.modelData.name
                    // Whole pixels: the first columns take what is left over.
                    width: Math.floor(room / grid.columns) + (index % grid.columns < room % grid.columns ? 1 : 0)
                    height: Math.max(98, Math.min(200, (sheet.height - Theme.spacingSmall - Theme.margin
                        - (opened.visible ? opened.height + Theme.spacing : 0) + grid.spacing) / grid.lines - grid.spacing))
                    text: tile.modelData.text
                    onClicked: Nav.open(tile.modelData.screen)

                    contentItem: Item {
                        Icon {
                            id: tileIcon
                            anchors { horizontalCenter: parent.horizontalCenter; verticalCenter: parent.verticalCenter; verticalCenterOffset: -18 }
                            name: tile.modelData.sign
                            size: 44
                            color: tile.ink
                        }
                        Text {
                            anchors { top: tileIcon.bottom; topMargin: 8; left: parent.left; right: parent.right }
                            text: tile.text
                            font: tile.font
                            color: tile.ink
                            horizontalAlignment: Text.AlignHCenter
                            wrapMode: Text.Wrap
                        }
                    }
                }
            }
        }
    }
}
