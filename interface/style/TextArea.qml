// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
import QtQuick 2.15
import QtQuick.Templates 2.15 as T
import HalvarStyle 1.0

T.TextArea {
    id: control

    implicitWidth: 240
    implicitHeight: Math.max(Theme.touch * 1.5, contentHeight + topPadding + bottomPadding)
    padding: Theme.spacing
    font.pixelSize: Theme.fontNormal
    color: enabled ? Theme.text : Theme.disabledInk
    selectionColor: Theme.primary
    selectedTextColor: Theme.primaryInk
    placeholderTextColor: Theme.textSecondary
    wrapMode: TextEdit.Wrap
    selectByMouse: true
    // The field is left with the key that leaves every other one.
    Keys.onTabPressed: nextItemInFocusChain().forceActiveFocus(Qt.TabFocusReason)
    Keys.onBacktabPressed: nextItemInFocusChain(false).forceActiveFocus(Qt.BacktabFocusReason)

    Accessible.role: Accessible.EditableText
    Accessible.name: placeholderText

    Text {
        x: control.leftPadding
        y: control.topPadding
        width: control.width - control.leftPadding - control.rightPadding
        visible: !control.length && !control.preeditText
        text: control.placeholderText
        font: control.font
        color: control.placeholderTextColor
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
