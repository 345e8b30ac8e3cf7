// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
import QtQuick 2.15
import HalvarStyle 1.0

// Cards in as many columns as fit, each where there is most room.
Item {
    id: masonry

    property real leastWidth: 330
    readonly property int columns: Math.max(1, Math.floor((width + Theme.spacing) / (leastWidth + Theme.spacing)))
    readonly property real columnWidth: (width - (columns - 1) * Theme.spacing) / columns

    function arrange() {
        var heights = [];
        for (var column = 0; column < columns; ++column)
            heights.push(0);
        for (var i = 0; i < children.length; ++i) {
            if (!children[i].visible)
                continue;
            var shortest = heights.indexOf(Math.min.apply(null, heights));
            children[i].width = columnWidth;
            children[i].x = shortest * (columnWidth + Theme.spacing);
            children[i].y = heights[shortest];
            heights[shortest] += children[i].height + Theme.spacing;
        }
        implicitHeight = Math.max(0, Math.max.apply(null, heights) - Theme.spacing);
    }

    function later() { Qt.callLater(arrange); }

    onColumnsChanged: later()
    onColumnWidthChanged: later()
    Component.onCompleted: {
        for (var i = 0; i < children.length; ++i) {
            children[i].heightChanged.connect(later);
            children[i].visibleChanged.connect(later);
        }
        arrange();
    }
}
