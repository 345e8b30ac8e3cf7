// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
import QtQuick 2.15
import QtQuick.Controls 2.15
import Halvar 4.0
import HalvarComponents 1.0
import HalvarStyle 1.0

// A measure in a list, by the roles of its model.
AbstractButton {
    id: row

    required property int number
    required property int index
    property bool live: false
    property real scale: 0
    readonly property bool interrupted: Instrument.interrupted.indexOf(qtObject) >= 0
    required property var qtObject // a null in the place of one that goes would count as a change from here
    required property int idNAP
    required property double concentration
    required property double sigma
    required property int detectionDecision
    required property int localisation
    required property int degradationState
    readonly property bool focused: activeFocus && Nav.byKeys
    readonly property string noted: {
        var words = [];
        if (localisation !== LocalisationEnumClass.NOT_DETERMINED)
            words.push(Words.localisation(localisation));
        if (degradationState !== DegradationStateEnumClass.NON_DEGRADE)
            words.push(Words.degradation(degradationState));
        // The state of conservation is announced by the signal of the degradation.
        if (qtObject && qtObject.degradationState >= 0 && qtObject.conservationState !== "")
            words.push(qtObject.conservationState);
        return words.join(" · ");
    }

    objectName: "measure" + number
    implicitHeight: face.implicitHeight + 2 * face.y
    focusPolicy: Qt.StrongFocus
    Accessible.role: Accessible.ListItem
    Accessible.name: face.Accessible.name + (noted === "" ? "" : ", " + noted)
    Accessible.onPressAction: clicked()
    Keys.onReturnPressed: function(event) { press(event); }
    Keys.onEnterPressed: function(event) { press(event); }

    // A key that is held down presses once.
    function press(event) {
        if (!event.isAutoRepeat)
            clicked();
    }
    // The arrows go on from it.
    onActiveFocusChanged: {
        if (activeFocus)
            ListView.view.currentIndex = index;
    }
    onClicked: Nav.open("MeasureScreen", { measure: qtObject, number: number })

    background: Rectangle {
        radius: Theme.radius
        color: row.down ? Theme.surfacePressed : Theme.surface
        border {
            width: row.focused ? 3 : 1
            color: row.focused ? Theme.focus : Theme.outline
        }
    }
    MeasureFace {
        id: face
        x: Theme.margin
        y: 8
        width: row.width - 2 * Theme.margin
        heading: {
            var name = row.idNAP >= 0 && !row.interrupted ? qsTr("Mesure %1 · tir n° %2").arg(row.number).arg(row.idNAP)
                                                      : qsTr("Mesure %1").arg(row.number);
            return row.live ? qsTr("%1 · en cours").arg(name) : name;
        }
        concentration: row.concentration
        sigma: row.sigma
        decision: row.detectionDecision
        note: row.noted
        live: row.live
        scale: row.scale
        interrupted: row.interrupted
    }
}
