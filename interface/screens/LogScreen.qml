// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
import QtQuick 2.15
import QtQuick.Controls 2.15
import SortFilterProxyModel 0.1
import HalvarComponents 1.0
import HalvarStyle 1.0

// The log while it is written.
Screen {
    id: screen

    readonly property var levels: ["TRACE", "DEBUG", "INFO", "WARN", "ERROR", "FATAL"]

    title: qsTr("Journal")
    actions: [
        IconButton {
            objectName: "lessLog"
            sign: "minus"
            text: qsTr("Journal moins détaillé")
            enabled: logLines.level < screen.levels.length - 1
            onClicked: ++logLines.level
        },
        Body {
            height: Theme.touch
            verticalAlignment: Text.AlignVCenter
            text: qsTr("Niveau : %1", "of the log").arg(screen.levels[logLines.level] || qsTr("aucun"))
        },
        IconButton {
            objectName: "moreLog"
            sign: "plus"
            text: qsTr("Journal plus détaillé")
            enabled: logLines.level > 0
            onClicked: --logLines.level
        }
    ]

    first: list

    TextField {
        id: search
        objectName: "search"
        anchors { top: parent.top; left: parent.left; right: parent.right; margins: Theme.margin; topMargin: Theme.spacingSmall }
        placeholderText: qsTr("Lignes qui contiennent…")
        Accessible.name: placeholderText
    }
    SortFilterProxyModel {
        id: proxy
        sourceModel: logLines
        filterRoleName: "text"
        filterPatternSyntax: SortFilterProxyModel.FixedString
        filterPattern: search.text
    }
    Choices {
        id: list
        objectName: "logList"
        anchors { top: search.bottom; topMargin: Theme.spacingSmall; bottom: parent.bottom; left: parent.left; right: parent.right }
        spacing: 0
        model: proxy
        emptyText: qsTr("Aucune ligne.")
        Accessible.name: screen.title
        // Its lines are read, not chosen.
        keyNavigationEnabled: false
        currentIndex: -1
        function scroll(way) {
            contentY = Math.max(originY - topMargin,
                                Math.min(contentY + way, originY + contentHeight + bottomMargin - height));
            following = atYEnd;
        }
        Keys.onUpPressed: scroll(-Theme.touch)
        Keys.onDownPressed: scroll(Theme.touch)
        // The end stays in sight unless somebody reads further up.
        property bool following: true
        onMovementEnded: following = atYEnd
        onCountChanged: {
            if (following)
                Qt.callLater(positionViewAtEnd);
        }

        delegate: Item {
            id: row
            required property int level
            required property string time
            required property string text
            width: list.width - 2 * Theme.margin
            readonly property color ink: level >= 4 ? Theme.alarm : level === 3 ? Theme.undecided : Theme.text
            height: Math.max(when.implicitHeight, line.implicitHeight) + 8
            Accessible.role: Accessible.ListItem
            Accessible.name: time + " " + screen.levels[level] + " " + text

            // In a column of their own, to be run through.
            Text {
                id: when
                objectName: "when"
                y: 4
                width: 104
                text: row.time + "\n" + screen.levels[row.level]
                color: row.ink
                font.pixelSize: Theme.fontSmall
                textFormat: Text.PlainText
            }
            Body {
                id: line
                objectName: "line"
                x: when.width
                y: 4
                width: parent.width - x
                text: row.text
                font.pixelSize: Theme.fontSmall
                color: row.ink
                wrapMode: Text.Wrap
                maximumLineCount: 6
                elide: Text.ElideRight
            }
            Rectangle {
                anchors.bottom: parent.bottom
                width: parent.width
                height: 1
                color: Theme.outline
                opacity: 0.4
            }
        }
    }
}
