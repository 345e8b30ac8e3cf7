// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
import QtQuick 2.15
import QtQuick.Controls 2.15
import Halvar 4.0
import HalvarComponents 1.0
import HalvarStyle 1.0

// The rooms that have units, and the way to all others.
Screen {
    id: screen

    property var sums: ({})

    title: qsTr("Locaux")
    subtitle: controller.fileName
    first: list.count > 0 ? list : addButton
    actions: SignButton {
        id: addButton
        objectName: "addRoom"
        sign: "plus"
        text: qsTr("Local")
        highlighted: true
        onClicked: Nav.open("PickScreen", {
            title: qsTr("Choisir un local"),
            items: rooms,
            kind: "locaux",
            current: controller.udLocal,
            picked: function(title) { screen.enter(title); }
        })
    }

    function enter(room) {
        controller.udLocal = room;
        Nav.push("UnitsScreen", { room: room });
    }
    // Once for all rooms: a large diagnostic has thousands of units.
    function count() {
        var found = {};
        for (var row = 0; row < uds.count; ++row) {
            var unit = uds.get(row);
            var sum = found[unit.local] || (found[unit.local] = { units: 0, positive: 0, open: 0 });
            ++sum.units;
            if (unit.statut === UDStatutEnumClass.POSITIVE)
                ++sum.positive;
            else if (unit.statut === UDStatutEnumClass.RAW)
                ++sum.open;
        }
        sums = found;
    }
    function detailOf(room) {
        var sum = sums[room];
        if (!sum)
            return "";
        var text = qsTr("%n unité(s)", "", sum.units);
        return text + " · " + (sum.open > 0 ? qsTr("%1 à mesurer").arg(sum.open) : qsTr("terminé"));
    }
    onShown: {
        screen.count();
        list.currentIndex = Math.max(0, usedRooms.findCurrentIndex(controller.udLocal || usedRooms.firstTitle()));
    }

    Choices {
        id: list
        objectName: "roomList"
        anchors.fill: parent
        model: usedRooms
        emptyText: qsTr("Aucun local encore. Ajoutez le premier avec « Local ».")
        Accessible.name: screen.title

        delegate: ChoiceRow {
            id: entry
            required property string title
            required property string image
            width: list.width - 2 * Theme.margin
            picture: entry.image
            sign: "room"
            heading: entry.title
            detail: screen.detailOf(entry.title)
            onClicked: {
                if (!Nav.settling)
                    screen.enter(entry.title);
            }

            SignChip {
                readonly property int positive: screen.sums[entry.title] ? screen.sums[entry.title].positive : 0
                visible: positive > 0
                sign: "plus"
                word: qsTr("%1 pos.", "positive units of a room").arg(positive)
                tint: Theme.positive
            }
        }
    }
}
