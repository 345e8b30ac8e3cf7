// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
import QtQuick 2.15
import QtQuick.Controls 2.15
import HalvarStyle 1.0

// The trigger, and what the instrument is at. A trigger that is held with the mouse leaves no hand for the rest: it
// can be kept pressed.
Item {
    id: bar

    // Room for what the instrument did last.
    readonly property bool wide: width >= 900
    readonly property var instrument: panel.state
    readonly property bool pressed: instrument.pressed
    readonly property string acquisition: {
        switch (instrument.nap.acquisition) {
        case "measure": return qsTr("mesure en cours");
        case "accuracy": return qsTr("contrôle de justesse en cours");
        case "calibration": return qsTr("calibrage en cours");
        default: return instrument.nap.alive ? qsTr("au repos") : qsTr("arrêté");
        }
    }
    readonly property string safety: {
        if (!instrument.msp.alive)
            return qsTr("arrêté");
        switch (instrument.msp.state) {
        case "STANDBY": return qsTr("en veille, détente sans effet");
        case "READY_HARD": return qsTr("prêt, attend la détente");
        case "SHUTTER_OPEN_HARD": return qsTr("obturateur ouvert par la détente");
        case "READY_SOFT": return qsTr("prêt, sans détente");
        case "SHUTTER_OPEN_SOFT": return qsTr("obturateur ouvert sans détente");
        case "ERROR": return qsTr("en erreur, à acquitter");
        default: return String(instrument.msp.state);
        }
    }
    readonly property string result: {
        var last = instrument.nap.last;
        if (!last)
            return qsTr("aucune");
        return qsTr("%1 ± %2 mg/cm²").arg(Number(last.value).toLocaleString(Qt.locale(), "f", 2))
                                     .arg(Number(last.sigma).toLocaleString(Qt.locale(), "f", 2));
    }

    // A window that goes with the trigger in its hand lets it go.
    function letGo() {
        if (trigger.down || keep.checked)
            hold(false);
    }

    implicitHeight: Math.max(trigger.implicitHeight, words.implicitHeight, wide ? done.implicitHeight : 0) + 2 * Theme.spacing

    function hold(down) {
        if (down !== pressed)
            Hand.run(down ? "press" : "release");
    }

    component StateText: Text {
        width: words.width
        color: Theme.text
        font.pixelSize: Theme.fontSmall
        wrapMode: Text.Wrap
        Accessible.role: Accessible.StaticText
        Accessible.name: text
    }

    Rectangle {
        anchors.fill: parent
        color: Theme.surface
    }
    Button {
        id: trigger
        objectName: "trigger"
        x: Theme.margin
        y: Theme.spacing
        width: Math.min(280, (parent.width - 3 * Theme.margin) / 2)
        height: parent.height - 2 * Theme.spacing
        implicitHeight: 2 * Theme.touch
        text: bar.pressed ? qsTr("Détente pressée") : qsTr("Presser et maintenir la détente")
        highlighted: true
        focus: true
        font.pixelSize: Theme.fontLarge
        Accessible.description: qsTr("Pressée tant que le bouton l'est.")
        // A key that is held repeats itself; it is held once.
        Keys.onPressed: event.accepted = event.isAutoRepeat
        Keys.onReleased: event.accepted = event.isAutoRepeat
        onPressed: bar.hold(true)
        onReleased: bar.hold(keep.checked)
        onCanceled: bar.hold(keep.checked)
    }
    Column {
        id: words
        anchors {
            left: trigger.right; leftMargin: Theme.margin
            right: bar.wide ? done.left : parent.right; rightMargin: Theme.margin
            verticalCenter: parent.verticalCenter
        }
        spacing: 2

        CheckBox {
            id: keep
            objectName: "keep"
            width: parent.width
            text: qsTr("Garder pressée")
            onToggled: {
                if (!checked)
                    bar.hold(false);
            }
        }
        StateText { text: qsTr("Microcontrôleur : %1").arg(bar.safety) }
        StateText { text: qsTr("Service : %1").arg(bar.acquisition) }
        StateText { text: qsTr("Dernière mesure terminée : %1").arg(bar.result) }
    }
    LastDone {
        id: done
        anchors { right: parent.right; rightMargin: Theme.margin; verticalCenter: parent.verticalCenter }
        width: 400
        visible: bar.wide
    }
    Rectangle {
        anchors.bottom: parent.bottom
        width: parent.width
        height: 1
        color: Theme.outline
    }
}
