// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
import QtQuick 2.15
import QtQuick.Controls 2.15
import Halvar 4.0
import HalvarStyle 1.0

// At the top of every screen: battery, readiness, light, Wi-Fi, shock, date and time, and how the source stands.
Rectangle {
    id: bar

    readonly property bool wide: width >= 720
    property bool wifi: true // on from start-up
    property int lightLeft: 0
    // Nobody can measure yet, ready or not.
    property bool waiting: false
    readonly property bool ready: error.readyForAcquisition
    readonly property var readiness: {
        if (!ready)
            return { sign: "warning", tint: Theme.undecided, word: qsTr("Pas prêt") };
        // No measure comes of it, whatever the service said last.
        if (error.errorMessage !== "")
            return { sign: "warning", tint: Theme.alarm, word: qsTr("Erreur") };
        if (Instrument.silent)
            return { sign: "warning", tint: Theme.undecided, word: qsTr("Sans réponse") };
        return waiting ? { sign: "wait", tint: Theme.neutral, word: qsTr("En attente") }
                       : { sign: "check", tint: Theme.negative, word: qsTr("Prêt") };
    }

    implicitHeight: Theme.touch + (wide ? 0 : 28)
    color: Theme.surface
    Accessible.role: Accessible.StatusBar
    Accessible.name: qsTr("État de l'instrument")

    Rectangle {
        anchors { left: parent.left; right: parent.right; bottom: parent.bottom }
        height: 1
        color: Theme.outline
    }
    Row {
        id: firstRow
        x: Theme.spacing
        height: Theme.touch
        spacing: Theme.spacing

        Item {
            id: batteryItem
            readonly property bool low: battery.level <= BatteryLevelsEnumClass.LEVEL_VERY_LOW
            width: Math.max(44, batteryWord.implicitWidth)
            height: parent.height
            Accessible.role: Accessible.Indicator
            Accessible.name: qsTr("Batterie : %1").arg(batteryWord.text)

            Rectangle {
                id: cell
                anchors { horizontalCenter: parent.horizontalCenter; top: parent.top; topMargin: 8 }
                width: 38
                height: 18
                radius: 3
                color: "transparent"
                border { width: 2; color: batteryItem.low ? Theme.alarm : Theme.text }

                Row {
                    x: 4
                    y: 4
                    spacing: 2
                    Repeater {
                        model: Words.batteryQuarters(battery.level)
                        Rectangle {
                            width: 6
                            height: 10
                            color: batteryItem.low ? Theme.alarm : Theme.text
                        }
                    }
                }
                Rectangle {
                    anchors { left: parent.right; verticalCenter: parent.verticalCenter }
                    width: 3
                    height: 8
                    color: parent.border.color
                }
            }
            Text {
                id: batteryWord
                anchors { horizontalCenter: parent.horizontalCenter; top: cell.bottom; topMargin: 2 }
                text: Words.battery(battery.level)
                color: batteryItem.low ? Theme.alarm : Theme.text
                font { pixelSize: Theme.fontTiny; weight: Font.DemiBold }
            }
        }
        Item {
            id: readyItem
            width: readyRow.implicitWidth
            height: parent.height
            Accessible.role: Accessible.Indicator
            Accessible.name: readyWord.text + ", " + conditions.text

            Row {
                id: readyRow
                anchors.verticalCenter: parent.verticalCenter
                spacing: 6
                Icon {
                    anchors.verticalCenter: parent.verticalCenter
                    name: bar.readiness.sign
                    color: bar.readiness.tint
                }
                Column {
                    anchors.verticalCenter: parent.verticalCenter
                    Text {
                        id: readyWord
                        text: bar.readiness.word
                        color: bar.readiness.tint
                        font { pixelSize: Theme.fontSmall; weight: Font.DemiBold }
                    }
                    Text {
                        id: conditions
                        text: qsTr("%1 °C · %2 V").arg(Instrument.temperature).arg(Instrument.voltage)
                        color: Theme.text
                        font.pixelSize: Theme.fontTiny
                    }
                }
            }
        }
    }
    Row {
        id: buttons
        anchors.right: parent.right
        anchors.rightMargin: 4
        height: Theme.touch

        IconButton {
            id: shockButton
            objectName: "shockButton"
            sign: "shock"
            text: error.shock ? qsTr("Choc signalé : voir l'historique") : qsTr("Historique des chocs")
            highlighted: error.shock
            enabled: pin.accepted
            onClicked: Nav.open("ShocksScreen")
        }
        IconButton {
            id: wifiButton
            objectName: "wifiButton"
            sign: "wifi"
            text: bar.wifi ? qsTr("Wi-Fi activé : désactiver") : qsTr("Wi-Fi désactivé : activer")
            checked: bar.wifi
            enabled: pin.accepted
            onClicked: {
                bar.wifi = !bar.wifi;
                controller.switchWifi(bar.wifi);
                Nav.say(bar.wifi ? qsTr("Wi-Fi activé") : qsTr("Wi-Fi désactivé"));
            }
            Rectangle {
                anchors.centerIn: parent
                visible: !bar.wifi
                width: 3
                height: 34
                rotation: 45
                color: wifiButton.ink
            }
        }
        IconButton {
            id: lightButton
            objectName: "lightButton"
            sign: "light"
            highlighted: controller.light
            text: controller.light ? qsTr("Lampe allumée : éteindre") : qsTr("Allumer la lampe")
            onClicked: controller.light = !controller.light
            Text {
                anchors { right: parent.right; bottom: parent.bottom; rightMargin: 6; bottomMargin: 3 }
                visible: controller.light && bar.lightLeft > 0
                text: bar.lightLeft
                color: lightButton.ink
                font { pixelSize: Theme.fontTiny; weight: Font.Bold }
            }
        }
    }
    // Date, time and source: beside the rest when there is room, below it otherwise.
    Grid {
        id: dates
        x: bar.wide ? firstRow.x + firstRow.width + 2 * Theme.spacing : Theme.spacing
        readonly property real line: bar.wide ? Theme.touch : 28
        y: (bar.wide ? 0 : Theme.touch - 2) + (line - height) / 2
        columns: bar.wide ? 1 : 2
        columnSpacing: Theme.spacing
        rowSpacing: 2
        verticalItemAlignment: Grid.AlignVCenter

        Text {
            text: date.current + "  " + date.time + " " + date.zone
            color: Theme.text
            font { pixelSize: Theme.fontSmall; weight: Font.Medium }
            Accessible.role: Accessible.StaticText
            Accessible.name: qsTr("Date et heure : %1").arg(text)
        }
        Row {
            visible: date.warning || date.alert
            spacing: 4
            Icon {
                anchors.verticalCenter: parent.verticalCenter
                name: "warning"
                size: 18
                color: date.alert ? Theme.alarm : Theme.undecided
            }
            Text {
                anchors.verticalCenter: parent.verticalCenter
                text: date.alert ? qsTr("Source périmée depuis %n jour(s)", "", date.daysAfterAuthorization)
                                 : qsTr("Source : fin le %1").arg(date.end)
                color: date.alert ? Theme.alarm : Theme.undecided
                font { pixelSize: bar.wide ? Theme.fontSmall : Theme.fontTiny; weight: Font.DemiBold }
                Accessible.role: Accessible.StaticText
                Accessible.name: text
            }
        }
    }

    Connections {
        target: controller
        function onLightChanged() { bar.lightLeft = controller.light ? config.Led_Light_Off() : 0; }
    }
    Timer {
        interval: 1000
        repeat: true
        running: controller.light && bar.lightLeft > 1
        onTriggered: --bar.lightLeft
    }
}
