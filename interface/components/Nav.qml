// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
pragma Singleton
import QtQuick 2.15
import QtQuick.Controls 2.15

// The way through the screens. A screen is named after its file.
Item {
    id: nav

    property StackView stack
    // The keyboard, or the instrument's keys, were used last: then it has to be seen where they are.
    property bool byKeys: false
    // True for a moment after something else has come under the finger: the second tap of a double tap must not land
    // on it.
    readonly property bool settling: pause.running || shield.running
    property int settlingTime: 250

    signal said(string text)

    // Tells the operator something in passing.
    function say(text) { said(text); }

    function urlOf(name) { return Qt.resolvedUrl("../HalvarScreens/" + name + ".qml"); }

    // Not in the middle of a shot: a screen that is left puts the trigger aside, and the results would be lost.
    function open(name, properties) {
        if (pause.running)
            return null;
        if (Instrument.shooting) {
            say(qsTr("Mesure en cours : relâchez d'abord la détente."));
            return null;
        }
        return push(name, properties);
    }
    // On top of the one that is shown, at once.
    function push(name, properties) {
        pause.restart();
        return stack.push(urlOf(name), properties || {}, StackView.Immediate);
    }
    // In place of the screen that is shown.
    function replace(name, properties) {
        if (pause.running)
            return null;
        pause.restart();
        return stack.replace(stack.currentItem, urlOf(name), properties || {}, StackView.Immediate);
    }
    function replaceAll(name) {
        pause.restart();
        return stack.replace(null, urlOf(name), {}, StackView.Immediate);
    }
    // One screen back, unless the one that is shown has a reason to stay.
    function back() {
        if (pause.running || !stack || stack.depth < 2 || !stack.currentItem.mayLeave())
            return;
        pause.restart();
        stack.pop(StackView.Immediate);
    }
    function leave() {
        pause.restart();
        stack.pop(StackView.Immediate);
    }

    // What is typed into a field that was touched, and the Return that ends it, lead nowhere.
    function seeKey(event) {
        var leading = [Qt.Key_Tab, Qt.Key_Backtab, Qt.Key_Up, Qt.Key_Down, Qt.Key_Left, Qt.Key_Right];
        byKeys = byKeys || leading.indexOf(event.key) >= 0;
    }
    // Gives the keys to a control.
    function focus(item) {
        var reason = byKeys ? Qt.TabFocusReason : Qt.OtherFocusReason;
        item.forceActiveFocus(reason);
        // One that has them already is not told again.
        if (item.activeFocus && item.focusReason !== undefined)
            item.focusReason = reason;
    }

    // For what changes on a screen, as the button that takes the place of another.
    function settle() { shield.restart(); }

    Timer { id: pause; interval: nav.settlingTime }
    Timer { id: shield; interval: nav.settlingTime }
}
