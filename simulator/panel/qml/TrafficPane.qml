// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
import QtQuick 2.15
import QtQuick.Controls 2.15
import HalvarStyle 1.0

// The traffic of both links while it passes, oldest first.
Item {
    id: pane

    Rectangle {
        anchors.fill: parent
        color: Theme.surface
    }
    Rectangle {
        width: parent.width
        height: 1
        color: Theme.outline
    }
    Row {
        id: tools
        anchors { top: parent.top; topMargin: 4; right: parent.right; rightMargin: Theme.margin }
        spacing: Theme.spacingSmall

        Repeater {
            model: [{ link: "", text: qsTr("Tout") }, { link: "NAP", text: "NAP" }, { link: "MSP", text: "MSP" }]
            Button {
                objectName: "show" + modelData.link
                leftPadding: 10
                rightPadding: 10
                text: modelData.text
                highlighted: panel.shownLink === modelData.link
                Accessible.name: modelData.link === "" ? qsTr("Trafic des deux liaisons")
                                                       : qsTr("Trafic de la liaison %1").arg(modelData.link)
                onClicked: panel.shownLink = modelData.link
            }
        }
        Button {
            objectName: "clear"
            leftPadding: 10
            rightPadding: 10
            text: qsTr("Effacer")
            Accessible.name: qsTr("Effacer le trafic")
            onClicked: panel.clearTraffic()
        }
    }
    Caption {
        anchors {
            left: parent.left; leftMargin: Theme.margin
            right: tools.left; rightMargin: Theme.spacingSmall
            verticalCenter: tools.verticalCenter
        }
        text: qsTr("Trafic")
    }
    ListView {
        id: list
        objectName: "trafficList"
        anchors {
            top: tools.bottom; topMargin: 4; bottom: parent.bottom
            left: parent.left; right: parent.right; leftMargin: Theme.margin; rightMargin: Theme.margin
        }
        clip: true
        reuseItems: true
        cacheBuffer: 0
        boundsBehavior: Flickable.StopAtBounds
        activeFocusOnTab: true
        model: panel.traffic
        Accessible.role: Accessible.List
        Accessible.name: qsTr("Trafic")
        ScrollBar.vertical: ScrollBar { }

        // The end stays in sight unless somebody reads further up.
        property bool following: true
        onMovementEnded: following = atYEnd
        // Once the new lines have their places.
        onCountChanged: Qt.callLater(follow)
        onContentHeightChanged: Qt.callLater(follow)
        onOriginYChanged: Qt.callLater(follow)
        onHeightChanged: Qt.callLater(follow)
        function follow() {
            if (following)
                positionViewAtEnd();
        }

        delegate: Item {
            objectName: "trafficLine"
            width: list.width - Theme.margin
            height: Math.max(22, line.implicitHeight + 4)
            // Half a line at the top is read by nobody; whoever scrolls sees that it goes on.
            opacity: list.following && !list.moving && y < list.contentY && 2 * height < list.height ? 0 : 1
            Accessible.role: Accessible.ListItem
            Accessible.name: link.text + " " + line.text

            Text {
                id: time
                y: 2
                width: 92
                text: model.time
                color: Theme.textSecondary
                font.pixelSize: Theme.fontTiny
            }
            Text {
                id: link
                anchors { left: time.right; top: time.top }
                width: 56
                // Seen from the instrument.
                text: (model.incoming ? "→ " : "← ") + model.link
                color: model.link === "NAP" ? Theme.primary : Theme.undecided
                font { pixelSize: Theme.fontTiny; weight: Font.DemiBold }
            }
            Text {
                id: line
                anchors { left: link.right; right: parent.right; top: time.top }
                text: model.text
                color: Theme.text
                font.pixelSize: Theme.fontTiny
                wrapMode: Text.Wrap
                textFormat: Text.PlainText
            }
        }
        Text {
            visible: list.count === 0
            text: qsTr("Rien n'est encore passé.")
            color: Theme.textSecondary
            font.pixelSize: Theme.fontSmall
        }
    }
}
