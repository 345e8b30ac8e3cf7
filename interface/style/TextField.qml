// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
import QtQuick 2.15
import QtQuick.Templates 2.15 as T
import HalvarStyle 1.0

T.TextField {
    id: control

    implicitWidth: 240
    implicitHeight: Theme.touch
    padding: Theme.spacing
    font.pixelSize: Theme.fontNormal
    color: enabled ? Theme.text : Theme.disabledInk
    selectionColor: Theme.primary
    selectedTextColor: Theme.primaryInk
    placeholderTextColor: Theme.textSecondary
    verticalAlignment: TextInput.AlignVCenter
    selectByMouse: true
    // Whoever does not type wants to read from the beginning.
    function showBeginning() {
        if (!activeFocus)
            cursorPosition = 0;
    }
    onActiveFocusChanged: showBeginning()
    onTextChanged: showBeginning()

    Accessible.role: Accessible.EditableText
    Accessible.name: placeholderText

    Text {
        anchors { fill: parent; leftMargin: control.leftPadding; rightMargin: control.rightPadding }
        visible: !control.length && !control.preeditText
        text: control.placeholderText
        font: control.font
        color: control.placeholderTextColor
        verticalAlignment: Text.AlignVCenter
        elide: Text.ElideRight
        Accessible.ignored: true
    }
    background: Rectangle {
        radius: Theme.radius
        color: Theme.surface
        border.width: control.activeFocus ? 3 : 1
        border.color: control.activeFocus ? Theme.focus : Theme.outline
    }
}
