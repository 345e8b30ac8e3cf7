// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
import QtQuick 2.15
import QtQuick.Controls 2.15
import HalvarComponents 1.0
import HalvarStyle 1.0

// The operator's code: five digits, checked as soon as the fifth is there.
Screen {
    id: screen

    readonly property int limit: 3
    property int failures: 0
    property bool wrong: false
    // After so many wrong codes the keypad rests for as long as the library's own lock would.
    readonly property bool locked: pin.disabled || rest.running
    readonly property bool landscape: width > height

    canGoBack: false
    first: digits.count > 0 ? digits.itemAt(0) : null
    Accessible.name: qsTr("Code d'accès")

    function enter(digit) {
        if (locked || checking.running)
            return;
        wrong = false;
        pin.enterDigit(digit);
        if (pin.nbDigits === 5)
            check();
    }
    function check() {
        if (pin.checkSecret()) {
            failures = 0;
            Nav.replaceAll("HomeScreen");
            return;
        }
        wrong = true;
        ++failures;
        // The full row of dots is seen before it is emptied.
        checking.restart();
    }
    function clear() {
        wrong = false;
        pin.clearDigit();
    }

    Keys.onPressed: function(event) {
        Nav.seeKey(event);
        if (event.key >= Qt.Key_0 && event.key <= Qt.Key_9) {
            enter(String(event.key - Qt.Key_0));
            event.accepted = true;
        } else if (event.key === Qt.Key_Backspace) {
            clear();
            event.accepted = true;
        } else if (event.key === Qt.Key_Delete) {
            pin.clearDigits();
            event.accepted = true;
        }
    }

    Timer {
        id: checking
        interval: 500
        onTriggered: {
            pin.clearDigits();
            if (screen.failures >= screen.limit)
                rest.restart();
        }
    }
    Timer {
        id: rest
        interval: 5000
        onTriggered: {
            screen.failures = 0;
            screen.wrong = false;
            pin.enable();
        }
    }

    Grid {
        anchors.centerIn: parent
        columns: screen.landscape ? 2 : 1
        columnSpacing: 60
        rowSpacing: 28
        verticalItemAlignment: Grid.AlignVCenter
        horizontalItemAlignment: Grid.AlignHCenter

        Column {
            width: 300
            spacing: Theme.margin + 4

            Text {
                width: parent.width
                horizontalAlignment: Text.AlignHCenter
                text: qsTr("Code d'accès")
                color: Theme.text
                font { pixelSize: Theme.fontLarge; weight: Font.DemiBold }
            }
            Row {
                anchors.horizontalCenter: parent.horizontalCenter
                spacing: 18
                Accessible.role: Accessible.StaticText
                Accessible.name: qsTr("%n chiffre(s) sur cinq", "", pin.nbDigits)

                Repeater {
                    model: 5
                    Rectangle {
                        id: dot
                        required property int index
                        // nbDigits says that there is something new to ask for.
                        readonly property bool filled: pin.nbDigits >= 0 && pin.checkDigit(dot.index)
                        objectName: "dot"
                        width: 26
                        height: 26
                        radius: 13
                        color: !filled ? "transparent" : screen.wrong ? Theme.alarm : Theme.primary
                        border { width: 3; color: screen.wrong ? Theme.alarm : Theme.primary }
                    }
                }
            }
            Text {
                width: parent.width
                height: 44
                horizontalAlignment: Text.AlignHCenter
                verticalAlignment: Text.AlignVCenter
                text: {
                    if (screen.locked)
                        return qsTr("Saisie bloquée : patientez cinq secondes.");
                    if (!screen.wrong)
                        return qsTr("Tapez vos cinq chiffres.");
                    return qsTr("Code refusé. Essais restants : %1").arg(screen.limit - screen.failures);
                }
                color: screen.wrong || screen.locked ? Theme.alarm : Theme.textSecondary
                font { pixelSize: Theme.fontNormal; weight: screen.wrong || screen.locked ? Font.DemiBold : Font.Normal }
                wrapMode: Text.Wrap
                Accessible.role: Accessible.AlertMessage
                Accessible.name: text
            }
        }
        Grid {
            columns: 3
            spacing: Theme.spacing

            Repeater {
                id: digits
                model: ["1", "2", "3", "4", "5", "6", "7", "8", "9"]
                Button {
                    id: key
                    required property string modelData
                    objectName: "digit" + key.modelData
                    width: 96
                    height: screen.landscape ? 68 : 84
                    text: key.modelData
                    font.pixelSize: Theme.fontHuge
                    enabled: !screen.locked
                    onClicked: screen.enter(key.modelData)
                }
            }
            IconButton {
                objectName: "clearAll"
                width: 96
                height: screen.landscape ? 68 : 84
                sign: "cross"
                text: qsTr("Tout effacer")
                enabled: !screen.locked && pin.nbDigits > 0
                onClicked: {
                    screen.wrong = false;
                    pin.clearDigits();
                }
            }
            Button {
                objectName: "digit0"
                width: 96
                height: screen.landscape ? 68 : 84
                text: "0"
                font.pixelSize: Theme.fontHuge
                enabled: !screen.locked
                onClicked: screen.enter("0")
            }
            IconButton {
                objectName: "clearDigit"
                width: 96
                height: screen.landscape ? 68 : 84
                sign: "backspace"
                text: qsTr("Effacer le dernier chiffre")
                enabled: !screen.locked && pin.nbDigits > 0
                onClicked: screen.clear()
            }
        }
    }
}
