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

    Component { id: keypad; PinScreen { anchors.fill: parent } }

    ComponentTest {
        name: "Keypad"

        function dotsOf(screen) {
            return itemsOf(screen).filter(function(item) { return item.objectName === "dot" && item.filled; }).length;
        }
        function enter(screen, code) {
            for (var i = 0; i < code.length; ++i)
                mouseClick(named(screen, "digit" + code[i]));
        }

        function test_eachDigit_fillsADot() {
            var screen = createTemporaryObject(keypad, stage);
            compare(dotsOf(screen), 0);
            verify(!named(screen, "clearDigit").enabled);
            enter(screen, "907");
            compare(dotsOf(screen), 3);
            compare(pin.nbDigits, 3);
            mouseClick(named(screen, "clearDigit"));
            compare(dotsOf(screen), 2);
            mouseClick(named(screen, "clearAll"));
            compare(dotsOf(screen), 0);
        }
        function test_keys_doAsTheirButtons() {
            var screen = createTemporaryObject(keypad, stage);
            screen.forceActiveFocus();
            keyClick("1");
            keyClick("2");
            compare(dotsOf(screen), 2);
            keyClick(Qt.Key_Backspace);
            compare(dotsOf(screen), 1);
            keyClick(Qt.Key_Delete);
            compare(dotsOf(screen), 0);
        }
        function test_wrongCode_isSaidThenCleared() {
            var screen = createTemporaryObject(keypad, stage);
            enter(screen, "99999");
            verify(says(screen, "Code refusé. Essais restants : 2"));
            compare(dotsOf(screen), 5);
            enter(screen, "1");
            compare(pin.nbDigits, 5);
            tryCompare(pin, "nbDigits", 0);
            verify(!pin.accepted);
        }
        function test_disabledPin_takesNothing() {
            var screen = createTemporaryObject(keypad, stage);
            bench.setPinDisabled(true);
            verify(says(screen, "Saisie bloquée"));
            for (var digit = 0; digit < 10; ++digit)
                verify(!named(screen, "digit" + digit).enabled);
            enter(screen, "12345");
            compare(pin.nbDigits, 0);
        }
        function test_everyShape_isRight_data() {
            return [{ tag: "portrait", width: 480, height: 720 }, { tag: "landscape", width: 800, height: 420 }];
        }
        function test_everyShape_isRight(data) {
            var screen = createTemporaryObject(keypad, stage, { anchors: undefined });
            screen.anchors.fill = undefined;
            screen.width = data.width;
            screen.height = data.height;
            waitForRendering(screen);
            for (var digit = 0; digit < 10; ++digit) {
                var key = named(screen, "digit" + digit);
                verify(key.width >= 48 && key.height >= 48, "digit " + digit);
                var corner = key.mapToItem(screen, key.width, key.height);
                verify(corner.x <= data.width && corner.y <= data.height, "digit " + digit);
            }
        }
    }
}
