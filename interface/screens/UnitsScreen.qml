// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
import QtQuick 2.15
import QtQuick.Controls 2.15
import SortFilterProxyModel 0.1
import HalvarComponents 1.0
import HalvarStyle 1.0

// The units of one room.
Screen {
    id: screen

    property string room

    title: room
    subtitle: qsTr("%n unité(s)", "", list.count)
    first: list.count > 0 ? list : addButton
    actions: SignButton {
        id: addButton
        objectName: "addUnit"
        sign: "plus"
        text: qsTr("Unité")
        highlighted: true
        onClicked: {
            if (Nav.settling)
                return;
            uds.add(-1);
            var unit = uds.getLast();
            unit.local = screen.room;
            unit.identifier = uds.count;
            Nav.open("UnitScreen", { row: uds.count - 1, fresh: true });
        }
    }

    // Back from a unit, it is the chosen one.
    property int lastRow: -1
    onShown: {
        var row = proxy.findProxyModelIndex(lastRow);
        if (row >= 0) {
            list.currentIndex = row;
            list.positionViewAtIndex(row, ListView.Contain);
        }
    }

    SortFilterProxyModel {
        id: proxy
        sourceModel: uds
        filterRoleName: "local"
        filterValue: screen.room
    }
    Choices {
        id: list
        objectName: "unitList"
        anchors.fill: parent
        model: proxy
        emptyText: qsTr("Aucune unité dans ce local. Ajoutez la première avec « Unité ».")
        Accessible.name: qsTr("Unités de %1").arg(screen.room)

        delegate: ChoiceRow {
            id: entry
            required property var zone // a character, or its code
            required property string element
            required property string substrat
            required property string revetement
            required property int statut
            width: list.width - 2 * Theme.margin
            picture: elements.findImageFromTitle(entry.element)
            sign: "picture"
            heading: Words.unitTitle(entry.zone, entry.element)
            detail: [entry.substrat, entry.revetement].filter(function(part) { return part !== ""; }).join(" · ")
            onClicked: {
                screen.lastRow = proxy.findOriginalModelIndex(entry.index);
                Nav.open("UnitScreen", { row: screen.lastRow });
            }

            SignChip {
                sign: Words.statutSign(entry.statut)
                word: Words.statut(entry.statut)
                tint: Words.statutColor(entry.statut)
            }
        }
    }
}
