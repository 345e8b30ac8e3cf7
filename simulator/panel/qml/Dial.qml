// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQml 2.15
import HalvarStyle 1.0

// A quantity of the instrument that is set by a slider.
Item {
    id: dial

    property string name
    property string unit
    property int decimals: 1
    // What the instrument has.
    property real current
    property alias from: slider.from
    property alias to: slider.to
    property alias stepSize: slider.stepSize
    readonly property string value: Number(current).toLocaleString(Qt.locale(), "f", decimals) + " " + unit

    signal chosen(real number)

    implicitHeight: slider.y + slider.implicitHeight
    objectName: "dial"

    Text {
        id: words
        width: parent.width - number.width - Theme.spacing
        text: dial.name
        color: Theme.text
        font.pixelSize: Theme.fontSmall
        elide: Text.ElideRight
    }
    Text {
        id: number
        anchors { right: parent.right; baseline: words.baseline }
        text: dial.value
        color: Theme.text
        font { pixelSize: Theme.fontSmall; weight: Font.DemiBold }
    }
    Slider {
        id: slider
        objectName: dial.objectName + "Slider"
        y: words.height - 2
        width: parent.width
        Accessible.name: dial.name
        Accessible.description: dial.value
        onMoved: dial.chosen(Number(value.toFixed(dial.decimals)))

        // Not under the hand that moves it.
        Binding on value {
            when: !slider.pressed
            value: dial.current
            restoreMode: Binding.RestoreNone
        }
    }
}
