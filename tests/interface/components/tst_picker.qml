// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
import QtQuick 2.15
import HalvarScreens 1.0
import HalvarComponents 1.0
import HalvarStyle 1.0

Item {
    id: stage
    width: 480
    height: 800

    property var chosen: []

    Component {
        id: picker
        PickScreen {
            anchors.fill: parent
            title: "Local"
            items: rooms
            kind: "locaux"
            picked: function(title) { stage.chosen.push(title); }
        }
    }

    ComponentTest {
        name: "Picker"

        function headingsOf(screen) {
            waitForRendering(screen);
            return itemsOf(named(screen, "pickList")).filter(function(item) { return typeof item.heading === "string"; })
                .sort(function(a, b) { return a.mapToItem(screen, 0, 0).y - b.mapToItem(screen, 0, 0).y; })
                .map(function(item) { return item.heading.replace(/\u00a0/g, " "); });
        }
        function type(screen, text) { named(screen, "search").text = text; }

        function test_search_caresNeitherForAccentsNorForCase_data() {
            return [{ tag: "degag", found: "Dégagement" }, { tag: "SEJOUR", found: "Séjour" },
                    { tag: "séjour", found: "Séjour" }, { tag: "éntree", found: "Entrée" }];
        }
        function test_search_caresNeitherForAccentsNorForCase(data) {
            var screen = createTemporaryObject(picker, stage);
            type(screen, data.tag);
            var headings = headingsOf(screen);
            compare(headings[0], data.found);
            verify(headings.indexOf("Cuisine") < 0);
        }
        function test_roomPutAside_isNotOffered() {
            bench.addRoom("Grenier condamné", false);
            bench.addRoom("Grenier ouvert", true);
            var screen = createTemporaryObject(picker, stage);
            type(screen, "grenier");
            verify(headingsOf(screen).indexOf("Grenier ouvert") >= 0);
            verify(headingsOf(screen).indexOf("Grenier condamné") < 0);
        }
        function test_whatIsMissing_isOfferedAfterWhatIsThere() {
            var screen = createTemporaryObject(picker, stage);
            type(screen, "sej");
            compare(headingsOf(screen), ["Séjour", "Ajouter « sej »"]);
            type(screen, "Xyz");
            compare(headingsOf(screen), ["Ajouter « Xyz »"]);
            verify(says(screen, "Rien ne correspond à « Xyz »."));
            screen.allowNew = false;
            compare(headingsOf(screen), []);
        }
        function test_whatIsThere_isNotOfferedAnew() {
            var screen = createTemporaryObject(picker, stage);
            type(screen, "Séjour");
            compare(headingsOf(screen), ["Séjour"]);
        }
        function test_rows_areChosenByTouchAndByEnter() {
            stage.chosen = [];
            var screen = createTemporaryObject(picker, stage);
            type(screen, "Séjour");
            waitForRendering(screen);
            mouseClick(itemsOf(named(screen, "pickList")).filter(function(item) { return item.heading === "Séjour"; })[0]);
            compare(stage.chosen, ["Séjour"]);
            named(screen, "search").forceActiveFocus();
            keyClick(Qt.Key_Return);
            compare(stage.chosen, ["Séjour", "Séjour"]);
        }
    }
}
