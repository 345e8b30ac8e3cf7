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

    property int number: 0
    property bool live: false
    // A role holds an enumeration's value in a wrapping of its own; a number compares.
    readonly property int place: localisation
    readonly property int degradation: degradationState
    readonly property string noted: {
        var words = [];
        if (place !== LocalisationEnumClass.NOT_DETERMINED)
            words.push(Words.localisation(place));
        if (degradation !== DegradationStateEnumClass.NON_DEGRADE)
            words.push(Words.degradation(degradation));
        // The state of conservation is announced by the signal of the degradation.
        if (qtObject && qtObject.degradationState >= 0 && qtObject.conservationState !== "")
            words.push(qtObject.conservationState);
        return words.join(" · ");
    }

    objectName: "measure" + number
    implicitHeight: face.implicitHeight + 2 * Theme.spacing
    focusPolicy: Qt.StrongFocus
    Accessible.role: Accessible.ListItem
    Accessible.name: face.Accessible.name + (noted === "" ? "" : ", " + noted)
    Accessible.onPressAction: clicked()
    Keys.onReturnPressed: press(event)
    Keys.onEnterPressed: press(event)

    // A key that is held down presses once.
    function press(event) {
        if (!event.isAutoRepeat)
            clicked();
    }
    onClicked: Nav.open("MeasureScreen", { measure: qtObject, number: number })

    background: Rectangle {
        radius: Theme.radius
        color: row.down ? Theme.surfacePressed : Theme.surface
        border {
            width: row.activeFocus ? 3 : 1
            color: row.activeFocus ? Theme.focus : Theme.outline
        }
    }
    MeasureFace {
        id: face
        x: Theme.margin
        y: Theme.spacing
        width: row.width - 2 * Theme.margin
        heading: {
            var name = idNAP >= 0 ? qsTr("Mesure %1 · n° %2").arg(row.number).arg(idNAP)
                                  : qsTr("Mesure %1").arg(row.number);
            return row.live ? qsTr("%1 · en cours").arg(name) : name;
        }
        concentration: model.concentration
        sigma: model.sigma
        decision: model.detectionDecision
        note: row.noted
        live: row.live
    }
}
