// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
import QtQuick 2.15
import HalvarStyle 1.0

// A sheet that holds one group of things in a column.
Rectangle {
    id: card

    default property alias content: column.data
    property alias spacing: column.spacing

    implicitHeight: column.implicitHeight + 2 * Theme.margin
    radius: Theme.radius
    color: Theme.surface
    border.color: Theme.outline

    Column {
        id: column
        x: Theme.margin
        y: Theme.margin
        width: parent.width - 2 * Theme.margin
        spacing: Theme.spacing
    }
}
