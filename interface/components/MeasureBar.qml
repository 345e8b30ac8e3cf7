// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
import QtQuick 2.15
import HalvarStyle 1.0

// A concentration drawn: a bar up to the value with the line of the decision threshold across it, and below them, where
// it hides neither, a bracket of one sigma to each side of the value.
Item {
    id: bar

    property real concentration: 0
    property real sigma: 0
    property color tint: Theme.neutral
    property real threshold: Words.threshold
    property real precision: 0 // a band around the threshold, for a reference value
    property real atLeast: 0 // what others on the same scale need
    // What the full width stands for: the threshold in the left half, unless the value needs more.
    readonly property real full: {
        var need = Math.max(2.5 * threshold, concentration + 1.5 * sigma, atLeast);
        return need <= 2.5 * threshold ? need : Math.ceil(need);
    }
    readonly property real unit: width / full
    readonly property real drawn: Math.max(0, concentration)

    implicitHeight: legend.y + legend.height
    Accessible.role: Accessible.Graphic
    Accessible.name: qsTr("%1 plus ou moins %2, seuil %3").arg(Words.concentration(concentration))
        .arg(Words.concentration(sigma)).arg(Words.number(threshold, 1))

    Rectangle {
        id: track
        y: 4
        width: parent.width
        height: 12
        radius: 2
        color: Theme.neutralSoft
        border.color: Theme.outline
    }
    Rectangle {
        visible: bar.precision > 0
        x: Math.max(0, (bar.threshold - bar.precision) * bar.unit)
        y: track.y
        width: 2 * bar.precision * bar.unit
        height: track.height
        color: Theme.outline
        opacity: 0.5
    }
    Rectangle {
        y: track.y
        width: Math.min(bar.width, bar.drawn * bar.unit)
        height: track.height
        radius: 2
        color: bar.tint
    }
    // The band's ends, also where the bar covers it.
    Repeater {
        model: bar.precision > 0 ? [bar.threshold - bar.precision, bar.threshold + bar.precision] : []
        Rectangle {
            id: edge
            required property real modelData
            objectName: "bandEdge"
            x: Math.round(Math.max(0, edge.modelData) * bar.unit) - 1
            y: track.y
            width: 3
            height: track.height
            color: Theme.surface
            Rectangle {
                x: 1
                width: 1
                height: parent.height
                color: Theme.text
            }
        }
    }
    // Its light rim tells the line from a dark bar.
    Rectangle {
        objectName: "thresholdRim"
        x: line.x - 2
        y: track.y
        width: line.width + 4
        height: track.height
        color: Theme.surface
    }
    Rectangle {
        id: line
        objectName: "thresholdLine"
        x: Math.round(bar.threshold * bar.unit) - 1
        width: 3
        height: track.y + track.height
        color: Theme.text
    }
    Item {
        id: bracket
        readonly property real from: bar.concentration - bar.sigma
        readonly property real to: bar.concentration + bar.sigma
        objectName: "bracket"
        visible: bar.sigma > 0 && to > 0
        x: Math.round(Math.max(0, from) * bar.unit)
        y: track.y + track.height + 2
        width: Math.max(3, Math.round(to * bar.unit) - x)
        height: 7

        Rectangle {
            y: 2
            width: parent.width
            height: 3
            color: Theme.text
        }
        // What reaches below zero is cut off there, and has no end to show.
        Rectangle {
            objectName: "lowerEnd"
            visible: bracket.from >= 0
            width: 3
            height: parent.height
            color: Theme.text
        }
        Rectangle {
            objectName: "upperEnd"
            x: parent.width - width
            width: 3
            height: parent.height
            color: Theme.text
        }
    }
    Text {
        id: legend
        objectName: "legend"
        x: Math.max(0, Math.min(bar.width - width, bar.threshold * bar.unit - width / 2))
        y: bracket.y + bracket.height + 2
        text: bar.precision > 0 ? qsTr("référence %1 ± %2").arg(Words.concentration(bar.threshold))
                                    .arg(Words.concentration(bar.precision))
                                : qsTr("seuil %1").arg(Words.number(bar.threshold, 1))
        color: Theme.textSecondary
        font.pixelSize: Theme.fontTiny
    }
    Text {
        anchors { right: parent.right }
        y: legend.y
        visible: bar.width > 260 && bar.threshold * bar.unit < bar.width * 0.7
        text: qsTr("%1 mg/cm²").arg(Words.number(bar.full, 1))
        color: Theme.textSecondary
        font.pixelSize: Theme.fontTiny
    }
}
