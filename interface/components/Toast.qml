// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
import QtQuick 2.15
import HalvarStyle 1.0

// What the operator is told in passing; it goes by itself.
Rectangle {
    id: toast

    function show(text) {
        words.text = text;
        visible = true;
        timer.restart();
    }

    visible: false
    implicitHeight: words.implicitHeight + 2 * Theme.spacing
    radius: Theme.radius
    color: Theme.text
    Accessible.role: Accessible.AlertMessage
    Accessible.name: words.text

    Text {
        id: words
        x: Theme.margin
        y: Theme.spacing
        width: toast.width - 2 * Theme.margin
        color: Theme.background
        font.pixelSize: Theme.fontNormal
        wrapMode: Text.Wrap
        maximumLineCount: 4
        elide: Text.ElideRight
        textFormat: Text.PlainText
    }
    Timer {
        id: timer
        interval: 4000
        onTriggered: toast.visible = false
    }
    MouseArea {
        anchors.fill: parent
        onClicked: toast.visible = false
    }
}
