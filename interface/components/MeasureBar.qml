// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
import QtQuick 2.15
import HalvarStyle 1.0

// A concentration drawn: a bar up to the value, a bracket of one sigma to each side of its end, and the line of the
// decision threshold across both.
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

    implicitHeight: track.y + track.height + 21
    Accessible.role: Accessible.Graphic
    Accessible.name: qsTr("%1 plus ou moins %2, seuil %3").arg(Words.concentration(concentration))
        .arg(Words.concentration(sigma)).arg(Words.number(threshold, 1))

    Rectangle {
        id: track
        y: 4
        width: parent.width
        height: 18
        radius: 4
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
        radius: 4
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
    Item {
        id: bracket
        readonly property real from: Math.max(0, bar.concentration - bar.sigma) * bar.unit
        readonly property real to: Math.min(bar.full, Math.max(0, bar.concentration + bar.sigma)) * bar.unit
        visible: bar.sigma > 0
        x: from
        y: track.y + 4
        width: Math.max(3, to - from)
        height: track.height - 8

        // Light behind dark, so that it is seen on the bar and beside it.
        Repeater {
            model: [{ rim: 2, color: Theme.surface }, { rim: 0, color: Theme.text }]
            Item {
                id: line
                required property var modelData
                anchors.fill: parent
                Rectangle {
                    x: -line.modelData.rim
                    y: parent.height / 2 - 1.5 - line.modelData.rim
                    width: parent.width + 2 * line.modelData.rim
                    height: 3 + 2 * line.modelData.rim
                    color: line.modelData.color
                }
                Rectangle {
                    x: -line.modelData.rim
                    y: -line.modelData.rim
                    width: 3 + 2 * line.modelData.rim
                    height: parent.height + 2 * line.modelData.rim
                    color: line.modelData.color
                }
                Rectangle {
                    x: parent.width - 3 - line.modelData.rim
                    y: -line.modelData.rim
                    width: 3 + 2 * line.modelData.rim
                    height: parent.height + 2 * line.modelData.rim
                    color: line.modelData.color
                }
            }
        }
    }
    // With the bracket's rim.
    Rectangle {
        x: Math.round(bar.threshold * bar.unit) - 3
        width: 7
        height: track.height + 2 * track.y
        color: Theme.surface
    }
    Rectangle {
        x: Math.round(bar.threshold * bar.unit) - 1
        width: 3
        height: track.height + 2 * track.y
        color: Theme.text
    }
    Text {
        x: Math.max(0, Math.min(bar.width - width, bar.threshold * bar.unit - width / 2))
        y: track.y + track.height + 4
        text: bar.precision > 0 ? qsTr("référence %1 ± %2").arg(Words.concentration(bar.threshold))
                                    .arg(Words.concentration(bar.precision))
                                : qsTr("seuil %1").arg(Words.number(bar.threshold, 1))
        color: Theme.textSecondary
        font.pixelSize: Theme.fontTiny
    }
    Text {
        anchors { right: parent.right }
        y: track.y + track.height + 4
        visible: bar.width > 260 && bar.threshold * bar.unit < bar.width * 0.7
        text: qsTr("%1 mg/cm²").arg(Words.number(bar.full, 1))
        color: Theme.textSecondary
        font.pixelSize: Theme.fontTiny
    }
}
