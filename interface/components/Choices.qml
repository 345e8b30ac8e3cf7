// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
import QtQuick 2.15
import QtQuick.Controls 2.15
import HalvarStyle 1.0

// A list that makes no more delegates than fit, uses them again, and is walked through with the arrows.
ListView {
    id: list

    property string emptyText

    spacing: Theme.spacingSmall
    leftMargin: Theme.margin
    rightMargin: Theme.margin
    topMargin: Theme.spacingSmall
    bottomMargin: Theme.margin
    clip: true
    reuseItems: true
    cacheBuffer: 0
    boundsBehavior: Flickable.StopAtBounds
    keyNavigationEnabled: true
    activeFocusOnTab: true
    highlightMoveDuration: 0
    currentIndex: 0
    ScrollBar.vertical: ScrollBar { }

    Accessible.role: Accessible.List

    Body {
        anchors.centerIn: parent
        width: parent.width - 4 * Theme.margin
        visible: list.count === 0 && text !== ""
        text: list.emptyText
        color: Theme.textSecondary
        horizontalAlignment: Text.AlignHCenter
    }
}
