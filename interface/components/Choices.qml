// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
import QtQuick 2.15
import QtQuick.Window 2.15
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
    keyNavigationEnabled: false // see move()
    activeFocusOnTab: true
    highlightMoveDuration: 0
    currentIndex: 0
    Keys.onPressed: function(event) {
        Nav.seeKey(event);
        event.accepted = false;
    }
    Keys.onUpPressed: move(false)
    Keys.onDownPressed: move(true)

    // The arrows lead from what stands above the rows through them to what stands below, and out. ListView by itself knows
    // of its rows only.
    function move(forward) {
        Nav.byKeys = true;
        var at = Window.activeFocusItem;
        var part = isIn(at, headerItem) ? headerItem : isIn(at, footerItem) ? footerItem : null;
        var next = at.nextItemInFocusChain(forward);
        if (part && isIn(next, part)) {
            Nav.focus(next);
            return;
        }
        var row = !part ? currentIndex + (forward ? 1 : -1) : (part === headerItem) !== forward ? -1 : forward ? 0 : count - 1;
        if (row >= 0 && row < count) {
            currentIndex = row;
            Nav.focus(currentItem);
            return;
        }
        var beyond = part ? null : edgeOf(forward ? footerItem : headerItem, forward);
        while (!beyond) {
            if (!isIn(next, list) || next === at)
                beyond = next;
            next = next.nextItemInFocusChain(forward);
        }
        Nav.focus(beyond);
    }
    function isIn(item, part) {
        for (; item && part; item = item.parent) {
            if (item === part)
                return true;
        }
        return false;
    }
    // The first or last control of a part, null when it has none.
    function edgeOf(part, first) {
        var begin = part ? part.nextItemInFocusChain(true) : null;
        if (!isIn(begin, part))
            return null;
        var edge = begin;
        for (var next = begin.nextItemInFocusChain(true); !first && isIn(next, part) && next !== begin;
             next = next.nextItemInFocusChain(true))
            edge = next;
        return edge;
    }
    // A control that stands above or below the rows is brought into sight.
    readonly property Item focused: Window.activeFocusItem
    onFocusedChanged: {
        if (!isIn(focused, headerItem) && !isIn(focused, footerItem))
            return;
        var top = focused.mapToItem(contentItem, 0, 0).y;
        if (top < contentY)
            contentY = Math.max(originY - topMargin, top - Theme.spacing);
        else if (top + focused.height > contentY + height)
            contentY = Math.min(originY + contentHeight + bottomMargin - height, top + focused.height - height + Theme.spacing);
    }
    ScrollBar.vertical: ScrollBar { }

    Accessible.role: Accessible.List

    Body {
        // Not of the content, whose place and size are left from the last rows.
        parent: list
        objectName: "emptyText"
        anchors.centerIn: parent
        width: parent.width - 4 * Theme.margin
        visible: list.count === 0 && text !== ""
        text: list.emptyText
        color: Theme.textSecondary
        horizontalAlignment: Text.AlignHCenter
    }
}
