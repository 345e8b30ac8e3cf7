// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Window 2.15
import HalvarStyle 1.0

// Content in a column that is scrolled when it is higher than the screen, and follows the keyboard's focus.
Flickable {
    id: sheet

    default property alias content: column.data
    property alias spacing: column.spacing
    property real sideMargin: Theme.margin

    contentWidth: width
    contentHeight: column.implicitHeight + Theme.spacingSmall + Theme.margin
    boundsBehavior: Flickable.StopAtBounds
    clip: true
    ScrollBar.vertical: ScrollBar { }

    // Brings an item of the column into sight.
    function reveal(item) {
        var top = item.mapToItem(column, 0, 0).y + column.y;
        if (top < contentY)
            contentY = Math.max(0, top - Theme.spacing);
        else if (top + item.height > contentY + height)
            contentY = Math.min(contentHeight - height, top + item.height - height + Theme.spacing);
    }
    function holds(item) {
        for (var i = item; i; i = i.parent) {
            if (i === column)
                return true;
        }
        return false;
    }
    readonly property Item focused: Window.activeFocusItem
    onFocusedChanged: {
        if (focused && holds(focused))
            reveal(focused);
    }

    Column {
        id: column
        x: sheet.sideMargin
        y: Theme.spacingSmall
        width: sheet.width - 2 * sheet.sideMargin
        spacing: Theme.spacing
    }
}
