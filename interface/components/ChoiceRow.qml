// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
import QtQuick 2.15

// A row of Choices. It is chosen by touch, or with the arrows and Enter.
ListRow {
    id: row

    required property int index

    // The arrows go on from it.
    onActiveFocusChanged: {
        if (activeFocus)
            ListView.view.currentIndex = index;
    }
    onClicked: ListView.view.currentIndex = index
}
