// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
import QtQuick 2.15
import QtQuick.Controls 2.15
import QtTest 1.2
import Halvar 4.0
import HalvarComponents 1.0
import HalvarStyle 1.0

Item {
    id: stage
    width: 480
    height: 800

    Component { id: cross; LocalisationCross { } }
    Component {
        id: stepper
        Stepper {
            objectName: "time"
            width: 452
            name: "Durée"
            unit: "s"
            from: 1
            to: 120
            value: 3
            onChosen: value = number
        }
    }
    Component {
        id: dialog
        ConfirmDialog {
            title: "Supprimer"
            question: "Vraiment ?"
            yes: "Supprimer"
        }
    }
    Component { id: field; TextField { width: 200 } }
    Component { id: check; CheckBox { width: 200 } }
    Component { id: toast; Toast { width: 400 } }
    Component { id: icon; Icon { } }
    Component {
        id: row
        ListRow { width: 452; heading: "Mur"; detail: "Plâtre" }
    }
    Component { id: spy; SignalSpy { } }

    ComponentTest {
        name: "Controls"

        function watch(target, signalName) {
            return createTemporaryObject(spy, stage, { target: target, signalName: signalName });
        }

        function test_cross_hasThePositionsWhereTheyLie() {
            var item = createTemporaryObject(cross, stage);
            waitForRendering(item);
            function place(localisation) {
                var button = named(item, "localisation" + localisation);
                return button.mapToItem(item, button.width / 2, button.height / 2);
            }
            var center = place(LocalisationEnumClass.CENTER);
            verify(place(LocalisationEnumClass.UP).y < center.y);
            verify(place(LocalisationEnumClass.DOWN).y > center.y);
            verify(place(LocalisationEnumClass.LEFT).x < center.x);
            verify(place(LocalisationEnumClass.RIGHT).x > center.x);
            compare(bench.complaints(item).join("\n"), "");
        }
        function test_cross_givesTheChosenBackWhenTouchedAgain() {
            var item = createTemporaryObject(cross, stage);
            var chosen = watch(item, "chosen");
            mouseClick(named(item, "localisation" + LocalisationEnumClass.UP));
            compare(chosen.signalArguments[0][0], LocalisationEnumClass.UP);
            item.value = LocalisationEnumClass.UP;
            verify(says(item, "Haut"));
            verify(item.Accessible.name.indexOf("Haut") > 0);
            mouseClick(named(item, "localisation" + LocalisationEnumClass.UP));
            compare(chosen.signalArguments[1][0], LocalisationEnumClass.NOT_DETERMINED);
        }
        function test_stepper_staysInItsLimits() {
            var item = createTemporaryObject(stepper, stage, { from: 1, to: 4 });
            mouseClick(named(item, "timeMore"));
            compare(item.value, 4);
            verify(!named(item, "timeMore").enabled);
            for (var i = 0; i < 3; ++i)
                mouseClick(named(item, "timeLess"));
            compare(item.value, 1);
            verify(!named(item, "timeLess").enabled);
        }
        function test_stepper_refusesWhatIsNoNumber() {
            var item = createTemporaryObject(stepper, stage);
            var said = watch(Nav, "said");
            var field = named(item, "timeField");
            field.forceActiveFocus();
            field.text = "douze";
            keyClick(Qt.Key_Return);
            compare(item.value, 3);
            compare(field.text, "3");
            compare(said.count, 1);
            verify(said.signalArguments[0][0].indexOf("1 à 120") > 0);
            field.text = "12";
            keyClick(Qt.Key_Return);
            compare(item.value, 12);
            compare(said.count, 1);
            field.text = "999";
            keyClick(Qt.Key_Return);
            compare(item.value, 120);
            compare(field.text, "120");
        }
        function test_dialog_hasItsFocusOnTheHarmlessAnswer() {
            var item = createTemporaryObject(dialog, stage);
            var accepted = watch(item, "accepted");
            item.open();
            tryVerify(function() { return item.opened && !Nav.settling; });
            verify(says(item.contentItem, "Vraiment ?"));
            verify(named(item.contentItem, "no").activeFocus);
            compare(named(item.contentItem, "other"), null);
            compare(bench.complaints(item.contentItem).join("\n"), "");
            keyClick(Qt.Key_Return);
            tryVerify(function() { return !item.visible; });
            compare(accepted.count, 0);
        }
        function test_dialogThatDestroys_looksLikeIt() {
            var item = createTemporaryObject(dialog, stage, { dangerous: true });
            item.open();
            tryVerify(function() { return item.opened && !Nav.settling; });
            compareColors(named(item.contentItem, "yes").background.color, Theme.alarm);
            compare(named(item.contentItem, "yes").sign, "bin");
            verify(named(item.contentItem, "no").activeFocus);
            item.close();
        }
        function test_longText_isReadFromItsBeginning() {
            var text = "12 rue des Lilas, troisième étage, porte du fond";
            var item = createTemporaryObject(field, stage, { text: text });
            verify(item.contentWidth > item.width);
            function beginning() { return item.positionToRectangle(0).x; }
            verify(beginning() >= 0);
            item.text = text + ", à droite";
            verify(beginning() >= 0);
            item.forceActiveFocus();
            item.cursorPosition = item.length;
            verify(beginning() < 0);
            stage.forceActiveFocus();
            verify(!item.activeFocus);
            verify(beginning() >= 0);
        }
        function test_dialog_acceptsByItsButtonOnly() {
            var item = createTemporaryObject(dialog, stage);
            var accepted = watch(item, "accepted");
            item.open();
            tryVerify(function() { return item.opened; });
            // The second tap of the double tap that opened it.
            mouseClick(named(item.contentItem, "yes"));
            verify(item.opened);
            tryCompare(Nav, "settling", false);
            // Beside it.
            mouseClick(stage, 5, 5);
            verify(item.opened);
            compare(accepted.count, 0);
            mouseClick(named(item.contentItem, "yes"));
            compare(accepted.count, 1);
            verify(Nav.settling);
        }
        function test_toast_goesByItselfOrAtATouch() {
            var item = createTemporaryObject(toast, stage);
            verify(!item.visible);
            item.show("Wi-Fi éteint");
            verify(item.visible);
            compare(item.Accessible.name, "Wi-Fi éteint");
            mouseClick(item);
            verify(!item.visible);
            item.show("Wi-Fi éteint");
            tryCompare(item, "visible", false, 6000);
        }
        function test_rowOfAScriptThatRunsTheOtherWay_beginsOnTheSideOfTheOthers() {
            var item = createTemporaryObject(row, stage, { heading: "شقة في الطابق الثالث", detail: "شارع الميناء" });
            var words = itemsOf(item).filter(function(child) { return child.effectiveHorizontalAlignment !== undefined; });
            compare(words.length, 2);
            words.forEach(function(text) { compare(text.effectiveHorizontalAlignment, Text.AlignLeft); });
        }
        function test_check_keepsRoomAroundTheLinesOfItsText() {
            var box = createTemporaryObject(check, stage, { text: "Effondrement de plancher ou de plafond" });
            verify(box.contentItem.lineCount > 1);
            verify(box.height >= box.contentItem.contentHeight + 2 * Theme.spacing);
            compare(createTemporaryObject(check, stage, { text: "Humidité" }).height, Theme.touch);
        }
        function test_everySign_isDrawn() {
            for (var name in createTemporaryObject(icon, stage).lines) {
                var item = createTemporaryObject(icon, stage, { name: name, size: 48, color: "#ff0000" });
                tryVerify(function() { return bench.pixelsOf(item, "#ff0000") > 20; }, 2000, name);
                item.visible = false;
            }
            var none = createTemporaryObject(icon, stage, { size: 48, color: "#ff0000" });
            tryVerify(function() { return bench.pixelsOf(none, "#ff0000") === 0; });
        }
        function test_row_isChosenByTouchAndKeyAndHasAName() {
            var item = createTemporaryObject(row, stage);
            var clicked = watch(item, "clicked");
            mouseClick(item);
            item.forceActiveFocus();
            keyClick(Qt.Key_Return);
            compare(clicked.count, 2);
            compare(item.Accessible.name, "Mur, Plâtre");
            verify(item.height >= 48);
        }
        function test_row_keepsItsHeightWithAnyText() {
            var item = createTemporaryObject(row, stage, { heading: "W".repeat(500), detail: "العربية 🏠 ".repeat(60) });
            waitForRendering(item);
            verify(item.height < 160);
        }
    }
}
