// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
import QtQuick 2.15
import QtQuick.Controls 2.15
import HalvarStyle 1.0

// Asks before something that cannot be undone. The harmless answer has the focus.
Dialog {
    id: dialog

    property string question
    // A second way to go on, when there is one.
    property string other
    property string yes: qsTr("Confirmer")
    property string no: qsTr("Annuler")

    signal otherChosen()

    parent: Overlay.overlay
    x: Math.round((parent.width - width) / 2)
    y: Math.round((parent.height - height) / 2)
    width: Math.min(parent.width - 2 * Theme.margin, 440)
    // A tap beside it answers nothing.
    closePolicy: Popup.CloseOnEscape
    onOpened: noButton.forceActiveFocus()
    // Neither does the second tap of the double tap that opened it, nor does that of an answer reach what is below.
    onAboutToShow: Nav.settle()
    onClosed: Nav.settle()

    contentItem: Item {
        implicitHeight: column.implicitHeight

        Column {
            id: column
            width: parent.width
            spacing: Theme.margin

            Body {
                width: parent.width
                text: dialog.question
            }
            Button {
                objectName: "yes"
                width: parent.width
                text: dialog.yes
                highlighted: true
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
            anchors.fill: parent
            visible: Nav.settling
        }
    }
}
