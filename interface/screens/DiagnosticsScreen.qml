// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
import QtQuick 2.15
import QtQuick.Controls 2.15
import HalvarComponents 1.0
import HalvarStyle 1.0

// The diagnostics on the instrument.
Screen {
    id: screen

    title: qsTr("Diagnostics")
    subtitle: qsTr("Place libre : %1").arg(Words.size(diagnosticFiles.freeBytes))
    first: list.count > 0 ? list : newButton
    actions: SignButton {
        id: newButton
        objectName: "newDiagnostic"
        sign: "plus"
        text: qsTr("Nouveau")
        highlighted: true
        onClicked: Nav.open("NewDiagnosticScreen")
    }

    function load(path) {
        // What is open goes to its file first.
        unsavedDialog.saveThen(function() {
            controller.initFile();
            controller.loadFile(path);
            // Not what the content says: a copy would be saved over the diagnostic that it was made of.
            controller.fileName = diagnosticFiles.nameToSave(path);
            Nav.open("DiagnosticScreen");
        });
    }

    Connections {
        target: diagnosticFiles
        function onRowsAboutToBeInserted() {
            if (list.atYBeginning)
                Qt.callLater(list.showNewest);
        }
    }
    property bool opened: false
    onShown: {
        diagnosticFiles.following = true;
        // A list counts anew only once it has been laid out.
        opened = true;
        // The diagnostic that was left may stand elsewhere now.
        list.forceLayout();
        if (list.currentIndex > 0)
            list.positionViewAtIndex(list.currentIndex, ListView.Contain);
        else
            list.showNewest();
    }
    onHidden: diagnosticFiles.following = false
    UnsavedDialog { id: unsavedDialog }
    ConfirmDialog {
        id: damagedDialog
        property string path
        property string name
        property string problem
        title: qsTr("Fichier endommagé")
        question: qsTr("« %1 » n'est pas lisible en entier (%2). Ouvrir ce qui peut l'être ? L'original est gardé à côté.")
            .arg(name).arg(problem)
        yes: qsTr("Ouvrir ce qui est lisible")
        onAccepted: screen.load(path)
    }
    ConfirmDialog {
        id: removeDialog
        property string path
        property string name
        title: qsTr("Supprimer le diagnostic ?")
        dangerous: true
        question: qsTr("« %1 » sera effacé de l'instrument. Il ne pourra pas être retrouvé.").arg(name)
        yes: qsTr("Supprimer")
        onAccepted: {
            controller.removeFile(path);
            var gone = !diagnosticFiles.exists(path);
            // Otherwise the next save would bring it back.
            if (gone && controller.fileName === name)
                controller.initFile();
            diagnosticFiles.refresh();
            Nav.say(gone ? qsTr("« %1 » est supprimé.").arg(name)
                         : qsTr("« %1 » n'a pas pu être supprimé.").arg(name));
        }
    }

    Choices {
        id: list
        objectName: "diagnosticList"
        anchors.fill: parent
        model: screen.opened ? diagnosticFiles : null
        emptyText: qsTr("Aucun diagnostic. Créez le premier avec « Nouveau ».")
        Accessible.name: screen.title
        // To whoever is at the top; keys that lead further down keep their row.
        function showNewest() {
            positionViewAtBeginning();
            contentY -= topMargin;
            if (Nav.byKeys)
                positionViewAtIndex(currentIndex, ListView.Contain);
        }

        delegate: ChoiceRow {
            id: file
            required property string name
            required property string path
            required property string place
            required property int units
            required property bool damaged
            required property string problem
            width: list.width - 2 * Theme.margin
            sign: file.damaged ? "warning" : "document"
            signColor: file.damaged ? Theme.alarm : Theme.primary
            heading: file.name
            detail: {
                if (file.damaged)
                    return qsTr("Endommagé : %1").arg(file.problem);
                var counted = qsTr("%n unité(s)", "", file.units);
                return file.place === "" ? counted : counted + " · " + file.place;
            }
            onClicked: {
                if (!file.damaged) {
                    screen.load(file.path);
                    return;
                }
                damagedDialog.path = file.path;
                damagedDialog.name = file.name;
                damagedDialog.problem = file.problem;
                damagedDialog.open();
            }

            IconButton {
                objectName: "remove"
                sign: "bin"
                text: qsTr("Supprimer « %1 »").arg(file.heading)
                onClicked: {
                    removeDialog.path = file.path;
                    removeDialog.name = file.name;
                    removeDialog.open();
                }
            }
        }
    }
}
