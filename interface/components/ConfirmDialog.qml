// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
import QtQuick 2.15
import QtQuick.Window 2.15
import QtQuick.Controls 2.15
import HalvarStyle 1.0

// Asks before something that cannot be undone. The harmless answer has the focus.
Dialog {
    id: dialog

    required property string question
    // A second way to go on, when there is one.
    property string other
    // Yes destroys something.
    property bool dangerous: false
    // Yes and the other answer are as good as each other.
    property bool even: false
    property string yes: qsTr("Confirmer")
    property string no: qsTr("Annuler")

    signal otherChosen()

    parent: Overlay.overlay
    x: Math.round((parent.width - width) / 2)
    y: Math.round((parent.height - height) / 2)
    width: Math.min(parent.width - 2 * Theme.margin, 440)
    // The second tap of a double tap must neither answer nor land on what the dialog uncovers; a tap beside it answers
    // nothing.
    onAboutToShow: {
        before = parent.Window.activeFocusItem;
        Nav.settle();
    }
    onOpened: takeFocus()
    onClosed: {
        Nav.settle();
        if (before && before.visible && before.enabled)
            Nav.focus(before);
    }
    closePolicy: Nav.settling ? Popup.NoAutoClose : Popup.CloseOnEscape

    property Item before // what had the focus
    function takeFocus() { Nav.focus(Nav.settling ? waiting : noButton); }

    Connections {
        target: Nav
        enabled: dialog.opened
        function onSettlingChanged() { dialog.takeFocus(); }
    }

    contentItem: Item {
        implicitHeight: answers.implicitHeight

        Column {
            id: answers
            width: parent.width
            spacing: Theme.margin

            Body {
                width: parent.width
                text: dialog.question
            }
            SignButton {
                objectName: "yes"
                width: parent.width
                text: dialog.yes
                sign: dialog.dangerous ? "bin" : ""
                highlighted: !dialog.dangerous && !dialog.even
                danger: dialog.dangerous
                onClicked: dialog.accept()
            }
            Button {
                objectName: "other"
                width: parent.width
                visible: text !== ""
                text: dialog.other
                onClicked: {
                    dialog.close();
                    dialog.otherChosen();
                }
            }
            Button {
                id: noButton
                objectName: "no"
                width: parent.width
                text: dialog.no
                onClicked: dialog.reject()
            }
        }
        MouseArea {
            id: waiting
            anchors.fill: parent
            visible: Nav.settling
            Keys.onPressed: function(event) { event.accepted = true; }
        }
    }
}
