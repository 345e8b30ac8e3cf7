// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
import QtQuick 2.15
import QtQuick.Controls 2.15
import HalvarStyle 1.0

// A picture or a sign, two lines of text, and what follows them at the right: a large button.
AbstractButton {
    id: row

    required property string heading
    property string detail
    property string picture
    property string sign
    property color signColor: Theme.primary
    property bool chevron: true
    // As low as a finger allows.
    property bool compact: false
    readonly property int markSide: compact ? 40 : 48
    readonly property bool focused: activeFocus && Nav.byKeys
    default property alias trailing: trailingRow.data

    implicitHeight: compact ? Math.max(Theme.touch, lines.implicitHeight + Theme.spacingSmall)
                            : Math.max(Theme.touch + 12, lines.implicitHeight + 2 * Theme.spacing)
    focusPolicy: Qt.StrongFocus
    Accessible.role: Accessible.ListItem
    Accessible.name: detail === "" ? heading : heading + ", " + detail
    Accessible.onPressAction: clicked()
    Keys.onReturnPressed: function(event) { press(event); }
    Keys.onEnterPressed: function(event) { press(event); }

    // A key that is held down presses once.
    function press(event) {
        if (!event.isAutoRepeat)
            clicked();
    }

    background: Rectangle {
        radius: Theme.radius
        color: !row.enabled ? "transparent" : row.down ? Theme.surfacePressed : Theme.surface
        border {
            width: row.focused ? 3 : 1
            color: row.focused ? Theme.focus : Theme.outline
        }
    }
    contentItem: Item {
        Item {
            id: mark
            anchors { left: parent.left; leftMargin: Theme.spacing; verticalCenter: parent.verticalCenter }
            width: row.picture !== "" || row.sign !== "" ? row.markSide : 0
            height: row.markSide

            Rectangle {
                anchors.fill: parent
                visible: image.visible
                radius: 6
                color: "white"
            }
            Image {
                id: image
                anchors.fill: parent
                source: row.picture
                visible: status === Image.Ready
                fillMode: Image.PreserveAspectFit
                sourceSize: Qt.size(96, 96)
                asynchronous: true
            }
            // A light picture would have no edge on the row.
            Rectangle {
                anchors.fill: parent
                visible: image.visible
                color: "transparent"
                border.color: Theme.outline
            }
            Icon {
                anchors.centerIn: parent
                visible: !image.visible && mark.width > 0
                name: row.sign !== "" ? row.sign : "picture"
                size: 28
                color: row.enabled ? row.signColor : Theme.disabledInk
            }
        }
        Column {
            id: lines
            anchors {
                left: mark.right; leftMargin: mark.width > 0 ? Theme.spacing : 0
                right: trailingRow.left; rightMargin: Theme.spacingSmall
                verticalCenter: parent.verticalCenter
            }
            spacing: 2
            Text {
                width: parent.width
                text: row.heading
                color: row.enabled ? Theme.text : Theme.disabledInk
                font { pixelSize: Theme.fontNormal; weight: Font.DemiBold }
                maximumLineCount: 2
                wrapMode: Text.Wrap
                elide: Text.ElideRight
                // The side of the rows, also for a script that runs the other way.
                horizontalAlignment: Text.AlignLeft
                textFormat: Text.PlainText
            }
            Text {
                width: parent.width
                visible: text !== ""
                text: row.detail
                color: row.enabled ? Theme.textSecondary : Theme.disabledInk
                font.pixelSize: Theme.fontSmall
                maximumLineCount: 2
                wrapMode: Text.Wrap
                elide: Text.ElideRight
                horizontalAlignment: Text.AlignLeft
                textFormat: Text.PlainText
            }
        }
        Row {
            id: trailingRow
            anchors { right: arrow.left; rightMargin: arrow.visible ? 2 : Theme.spacingSmall; verticalCenter: parent.verticalCenter }
            spacing: Theme.spacingSmall
        }
        Icon {
            id: arrow
            anchors { right: parent.right; rightMargin: 6; verticalCenter: parent.verticalCenter }
            visible: row.chevron
            width: row.chevron ? 22 : 0
            name: "next"
            size: 22
            color: Theme.textSecondary
        }
    }
}
