// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
import QtQuick 2.15
import QtQuick.Controls 2.15
import HalvarComponents 1.0
import HalvarStyle 1.0

// A new diagnostic: its name and its place.
Screen {
    id: screen

    property string refusal

    title: qsTr("Nouveau diagnostic")

    function create() {
        var name = nameField.text.trim();
        refusal = Words.refusalOfName(name);
        if (refusal === "" && diagnosticFiles.contains(name))
            refusal = qsTr("Un diagnostic porte déjà ce nom.");
        if (refusal !== "") {
            nameField.forceActiveFocus();
            nameField.cursorPosition = nameField.length;
            return;
        }
        unsavedDialog.saveThen(function() {
            controller.initFile();
            controller.fileName = name;
            controller.localization = placeField.text.trim();
            if (!Instrument.save()) {
                controller.fileName = "";
                refusal = qsTr("Le fichier ne peut pas être écrit. Vérifiez la place libre.");
                return;
            }
            Nav.leave();
            Nav.push("DiagnosticScreen");
        });
    }
    first: nameField

    UnsavedDialog { id: unsavedDialog }
    Sheet {
        anchors.fill: parent

        Caption { text: qsTr("Nom du diagnostic") }
        TextField {
            id: nameField
            objectName: "name"
            width: parent.width
            Accessible.name: qsTr("Nom du diagnostic")
            onTextEdited: screen.refusal = ""
            onAccepted: placeField.forceActiveFocus()
        }
        Row {
            width: parent.width
            visible: screen.refusal !== ""
            spacing: Theme.spacingSmall
            Icon { name: "warning"; color: Theme.alarm }
            Body {
                objectName: "refusal"
                width: parent.width - 30
                text: screen.refusal
                color: Theme.alarm
                font.weight: Font.DemiBold
                Accessible.role: Accessible.AlertMessage
                Accessible.name: text
            }
        }
        Caption { text: qsTr("Adresse ou lieu") }
        TextField {
            id: placeField
            objectName: "place"
            width: parent.width
            Accessible.name: qsTr("Adresse ou lieu")
            onAccepted: screen.create()
        }
        Button {
            objectName: "create"
            width: parent.width
            highlighted: true
            text: qsTr("Créer le diagnostic")
            onClicked: screen.create()
        }
    }
}
