// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
import QtQuick 2.15
import HalvarStyle 1.0

// One measure: its value, its decision, its drawing, and what was noted about it.
Item {
    id: face

    required property string heading
    property real concentration: 0
    property real sigma: 0
    property int decision: 0
    property string note
    property real scale: 0 // of the bars beside which it stands, mg/cm²
    // The measure that runs: nothing of it is final.
    property bool live: false
    // It ended before its end: what it shows is no result.
    property bool interrupted: false
    // It has no result: zero would be read as one.
    readonly property bool empty: (live || interrupted) && sigma === 0
    readonly property string verdict: interrupted ? qsTr("Interrompue") : Words.decision(decision)

    implicitHeight: drawing.y + drawing.implicitHeight
    Accessible.role: Accessible.Grouping
    Accessible.name: empty ? heading : qsTr("%1 : %2, %3 plus ou moins %4").arg(heading).arg(verdict)
        .arg(Words.concentration(concentration)).arg(Words.concentration(sigma))

    Text {
        id: headingText
        width: chip.x - Theme.spacingSmall
        text: face.heading
        color: Theme.textSecondary
        font { pixelSize: Theme.fontSmall; weight: Font.DemiBold }
        elide: Text.ElideRight
        textFormat: Text.PlainText
    }
    Row {
        id: value
        // The figures stand in the middle of a higher line.
        anchors { top: headingText.bottom; topMargin: -2 }
        spacing: 6
        Text {
            text: face.empty ? (face.live ? "…" : "–") : Words.concentration(face.concentration)
            color: face.interrupted ? Theme.textSecondary : Theme.text
            // Struck out at the height of the others, so that the lines below stay where they are.
            font {
                pixelSize: Theme.fontHuge
                weight: face.interrupted ? Font.Normal : Font.Bold
                strikeout: face.interrupted && !face.empty
            }
        }
        Text {
            anchors { bottom: parent.bottom; bottomMargin: 6 }
            visible: !face.empty
            text: {
                var spread = qsTr("± %1 mg/cm²").arg(Words.concentration(face.sigma));
                return face.interrupted ? qsTr("%1 · pas un résultat", "after a value").arg(spread) : spread;
            }
            color: Theme.textSecondary
            font.pixelSize: Theme.fontNormal
        }
    }
    SignChip {
        id: chip
        anchors.right: parent.right
        visible: !face.empty || face.interrupted
        sign: face.interrupted ? "warning" : Words.decisionSign(face.decision)
        word: face.verdict
        tint: face.interrupted ? Theme.undecided : Words.decisionColor(face.decision)
        provisional: face.live && !Instrument.decided
    }
    Text {
        id: noteText
        anchors { top: value.bottom; left: parent.left; right: parent.right }
        visible: text !== ""
        height: visible ? implicitHeight : 0
        text: face.note
        color: Theme.textSecondary
        font.pixelSize: Theme.fontSmall
        elide: Text.ElideRight
        textFormat: Text.PlainText
    }
    MeasureBar {
        id: drawing
        anchors { top: noteText.bottom; topMargin: noteText.visible ? 4 : 0; left: parent.left; right: parent.right }
        // A drawing would be taken for a result.
        concentration: face.interrupted ? 0 : face.concentration
        sigma: face.interrupted ? 0 : face.sigma
        atLeast: face.scale
        tint: Words.decisionColor(face.decision)
        Accessible.ignored: face.empty || face.interrupted
    }
    Rectangle {
        visible: face.live
        x: -8
        width: 4
        height: parent.height
        radius: 2
        color: Theme.focus
    }
}
