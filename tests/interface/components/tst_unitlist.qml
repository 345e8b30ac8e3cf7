// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
import QtQuick 2.15
import Halvar 4.0
import HalvarScreens 1.0
import HalvarComponents 1.0
import HalvarStyle 1.0

Item {
    id: stage
    width: 480
    height: 800

    Component { id: units; UnitsScreen { anchors.fill: parent } }
    Component { id: usedRoomsList; RoomsScreen { anchors.fill: parent } }

    ComponentTest {
        name: "UnitList"

        function rowsOf(screen, list) {
            waitForRendering(screen);
            return itemsOf(named(screen, list)).filter(function(item) { return typeof item.heading === "string"; });
        }
        function test_room_showsItsUnitsOnly() {
            bench.addUnit("Cuisine", "Mur", UDStatutEnumClass.RAW);
            bench.addUnit("Séjour", "Porte", UDStatutEnumClass.RAW);
            bench.addUnit("Cuisine", "", UDStatutEnumClass.RAW);
            var screen = createTemporaryObject(units, stage, { room: "Cuisine" });
            compare(rowsOf(screen, "unitList").map(function(row) { return row.heading; }),
                    ["Zone A · Mur", "Zone A · élément à choisir"]);
            verify(says(screen, "2 unités"));
            bench.addUnit("Cuisine", "Plafond", UDStatutEnumClass.RAW);
            compare(rowsOf(screen, "unitList").length, 3);
        }
        function test_statut_isAWordASignAndAColour_data() {
            return [{ tag: "raw", statut: UDStatutEnumClass.RAW, word: "À mesurer", sign: "target", tint: "neutral" },
                    { tag: "positive", statut: UDStatutEnumClass.POSITIVE, word: "Positive", sign: "plus", tint: "positive" },
                    { tag: "negative", statut: UDStatutEnumClass.NEGATIVE, word: "Négative", sign: "minus", tint: "negative" },
                    { tag: "skipped", statut: UDStatutEnumClass.SKIPPED, word: "Non mesurée", sign: "skip", tint: "undecided" }];
        }
        function test_statut_isAWordASignAndAColour(data) {
            bench.addUnit("Cuisine", "Mur", data.statut);
            var screen = createTemporaryObject(units, stage, { room: "Cuisine" });
            var row = rowsOf(screen, "unitList")[0];
            verify(says(row, data.word));
            var chip = itemsOf(row).filter(function(item) { return item.word === data.word; })[0];
            compare(chip.sign, data.sign);
            compareColors(chip.color, Theme[data.tint]);
            compare(bench.complaints(screen).join("\n"), "");
        }
        function test_rowsUsedAgain_showTheirOwnUnit() {
            for (var i = 0; i < 60; ++i)
                bench.addUnit("Cuisine", "Mur " + i, UDStatutEnumClass.RAW);
            var screen = createTemporaryObject(units, stage, { room: "Cuisine" });
            var list = named(screen, "unitList");
            for (var first = 0; first < 60; first += 7) {
                list.positionViewAtIndex(first, ListView.Beginning);
                var rows = rowsOf(screen, "unitList");
                verify(rows.length > 5);
                rows.forEach(function(row) { compare(row.heading, "Zone A · Mur " + row.index); });
            }
            // And what becomes of it while it is shown.
            uds.get(59).statut = UDStatutEnumClass.NEGATIVE;
            uds.get(59).element = "Porte";
            var last = rowsOf(screen, "unitList").filter(function(row) { return row.index === 59; })[0];
            compare(last.heading, "Zone A · Porte");
            verify(says(last, "Négative"));
        }
        function test_emptyRoom_saysHowToBegin() {
            var screen = createTemporaryObject(units, stage, { room: "Cave" });
            verify(says(screen, "Aucune unité dans ce local."));
        }
        function test_rooms_countTheirUnits() {
            bench.addUnit("Cuisine", "Mur", UDStatutEnumClass.POSITIVE);
            bench.addUnit("Cuisine", "Mur", UDStatutEnumClass.RAW);
            var screen = createTemporaryObject(usedRoomsList, stage);
            screen.shown();
            var rows = rowsOf(screen, "roomList");
            compare(rows.length, 1);
            compare(rows[0].heading, "Cuisine");
            compare(rows[0].detail, "2 unités · 1 à mesurer");
            verify(says(rows[0], "1 pos."));
        }
    }
}
