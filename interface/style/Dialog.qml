// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
import QtQuick 2.15
import QtQuick.Templates 2.15 as T
import HalvarStyle 1.0

T.Dialog {
    id: control

    implicitWidth: Math.max(300, implicitContentWidth + leftPadding + rightPadding)
    implicitHeight: implicitContentHeight + topPadding + bottomPadding
                    + (implicitHeaderHeight > 0 ? implicitHeaderHeight + spacing : 0)
                    + (implicitFooterHeight > 0 ? implicitFooterHeight + spacing : 0)
    padding: Theme.margin + 4
    topPadding: Theme.spacing
    spacing: 0
    modal: true
    focus: true

    header: Text {
        visible: control.title !== ""
        text: control.title
        color: Theme.text
        font { pixelSize: Theme.fontLarge; weight: Font.DemiBold }
        padding: Theme.margin + 4
        bottomPadding: 0
        wrapMode: Text.Wrap
    }
    background: Rectangle {
        radius: Theme.radius
        color: Theme.surface
        border.color: Theme.outline
    }
    T.Overlay.modal: Rectangle { color: Theme.shade }
    T.Overlay.modeless: Rectangle { color: Theme.shade }
}
