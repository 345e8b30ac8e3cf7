// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
import QtQuick 2.15
import QtQuick.Templates 2.15 as T
import HalvarStyle 1.0

T.ScrollBar {
    id: control

    implicitWidth: 8
    implicitHeight: 8
    padding: 1
    // Too narrow for a finger: the list itself is drawn.
    interactive: false
    visible: policy !== T.ScrollBar.AlwaysOff && size < 1

    contentItem: Rectangle {
        implicitWidth: 6
        implicitHeight: 6
        radius: 3
        color: Theme.outline
    }
}
