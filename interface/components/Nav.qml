// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
pragma Singleton
import QtQuick 2.15
import QtQuick.Controls 2.15

// The way through the screens. A screen is named after its file.
Item {
    id: nav

    property StackView stack
    // True for a moment after a change of screen: the second tap of a double tap must not land on the new one.
    readonly property bool settling: pause.running
    property int settlingTime: 250

    signal said(string text)

    // Tells the operator something in passing.
    function say(text) { said(text); }

    function urlOf(name) { return Qt.resolvedUrl("../HalvarScreens/" + name + ".qml"); }

    function open(name, properties) {
        if (settling)
            return null;
        pause.restart();
        return stack.push(urlOf(name), properties || {}, StackView.Immediate);
    }
    function replaceAll(name) {
        pause.restart();
        return stack.replace(null, urlOf(name), {}, StackView.Immediate);
    }
    // One screen back, unless the one that is shown has a reason to stay.
    function back() {
        if (settling || !stack || stack.depth < 2 || !stack.currentItem.mayLeave())
            return;
        pause.restart();
        stack.pop(StackView.Immediate);
    }
    function leave() {
        pause.restart();
        stack.pop(StackView.Immediate);
    }

    Timer { id: pause; interval: nav.settlingTime }
}
