// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
import QtQuick 2.15
import QtQuick.Controls 2.15
import HalvarStyle 1.0

// A whole number between two limits, by touch or typed. What is no number is not taken, and beyond a limit the limit is;
// both is said.
Rectangle {
    id: stepper

    required property string name
    property string unit
    property int from: 0
    property int to: 100
    property int value: 0

    signal chosen(int number)

    function choose(number) {
        var taken = Math.max(from, Math.min(to, number));
        if (taken !== value)
            chosen(taken);
        field.text = Qt.binding(function() { return stepper.value; });
        if (taken !== number)
            sayLimits();
    }
    function sayLimits() { Nav.say(qsTr("%1 : un nombre de %2 à %3.").arg(name).arg(from).arg(to)); }
    function read() {
        if (/^\s*\d+\s*$/.test(field.text)) {
            choose(parseInt(field.text, 10));
            return;
        }
        choose(value);
        sayLimits();
    }

    implicitHeight: Math.max(Theme.touch + 16, words.implicitHeight + 16)
    radius: Theme.radius
    color: Theme.surface
    border.color: Theme.outline

    Text {
        id: words
        anchors {
            left: parent.left; leftMargin: Theme.margin
            right: controls.left; rightMargin: Theme.spacing
            verticalCenter: parent.verticalCenter
        }
        text: stepper.name
        color: Theme.text
        font.pixelSize: Theme.fontNormal
        wrapMode: Text.Wrap
    }
    Row {
        id: controls
        anchors { right: parent.right; rightMargin: Theme.spacingSmall; verticalCenter: parent.verticalCenter }
        spacing: 2

        IconButton {
            objectName: stepper.objectName + "Less"
            sign: "minus"
            text: qsTr("Moins : %1").arg(stepper.name)
            enabled: stepper.value > stepper.from
            onClicked: stepper.choose(stepper.value - 1)
        }
        TextField {
            id: field
            objectName: stepper.objectName + "Field"
            width: 64
            horizontalAlignment: TextInput.AlignHCenter
            inputMethodHints: Qt.ImhDigitsOnly
            maximumLength: 6
            text: stepper.value
            font { pixelSize: Theme.fontLarge; weight: Font.DemiBold }
            padding: 4
            Accessible.name: stepper.name
            onEditingFinished: {
                if (text !== String(stepper.value))
                    stepper.read();
            }
        }
        Text {
            anchors.verticalCenter: parent.verticalCenter
            // Kept free without a unit as well: the fields of several stand in one line.
            width: 16
            leftPadding: 4
            text: stepper.unit
            color: Theme.text
            font.pixelSize: Theme.fontNormal
        }
        IconButton {
            objectName: stepper.objectName + "More"
            sign: "plus"
            text: qsTr("Plus : %1").arg(stepper.name)
            enabled: stepper.value < stepper.to
            onClicked: stepper.choose(stepper.value + 1)
        }
    }
}
