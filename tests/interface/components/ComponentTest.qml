// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
import QtQuick 2.15
import QtTest 1.2

// A test that starts from fresh objects and fails on any warning of Qt.
TestCase {
    when: windowShown

    function init() { bench.reset(); }
    function cleanup() { compare(bench.warnings().join("\n"), ""); }

    // All visible items below one.
    function itemsOf(item) {
        var found = [];
        for (var i = 0; i < item.children.length; ++i) {
            var child = item.children[i];
            if (child.visible)
                found = found.concat(child, itemsOf(child));
        }
        return found;
    }
    function named(item, name) {
        return itemsOf(item).filter(function(child) { return child.objectName === name; })[0] || null;
    }
    // As people type them: without the blanks that keep a line together.
    function textsOf(item) {
        return itemsOf(item).filter(function(child) { return typeof child.text === "string" && child.text !== ""; })
            .map(function(child) { return child.text.replace(/\u00a0/g, " "); });
    }
    function says(item, text) {
        return textsOf(item).some(function(found) { return found.indexOf(text) >= 0; });
    }
    function compareColors(found, wanted) { compare(String(found), String(wanted)); }
}
