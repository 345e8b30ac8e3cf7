// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
import QtQuick 2.15
import QtTest 1.15
import SortFilterProxyModel 0.1

Item {
    id: root

    property QtObject list: fixture.list
    property string wanted: ""
    property int limit: 2

    width: 200
    height: 400

    SortFilterProxyModel {
        id: bound

        sourceModel: root.list
        filterRoleName: "title"
        filterPattern: root.wanted
        filterPatternSyntax: SortFilterProxyModel.FixedString
        sortRoleName: "rank"
        sortOrder: Qt.DescendingOrder
    }

    SortFilterProxyModel {
        id: byValue

        property var value

        sourceModel: root.list
        filterRoleName: "rank"
        filterValue: value
    }

    SortFilterProxyModel {
        id: byExpression

        sourceModel: root.list
        filterExpression: model.rank >= root.limit && index !== 3
        sortOrder: Qt.AscendingOrder
        sortExpression: {
            if (modelLeft.title.length !== modelRight.title.length)
                return modelLeft.title.length < modelRight.title.length;
            return indexLeft > indexRight;
        }
    }

    SortFilterProxyModel {
        id: broken

        filterExpression: model.title.nothing.at.all
    }

    SortFilterProxyModel {
        id: rooms

        sourceModel: fixture.rooms
        filterRoleName: "activated"
        filterValue: true
    }

    Repeater {
        id: view

        model: byExpression
        delegate: Item {
            property string text: title
            property int row: index
        }
    }

    TestCase {
        name: "Proxy"
        when: windowShown

        function init() {
            root.wanted = "";
            root.limit = 2;
            byValue.value = undefined;
            fixture.reset();
        }

        function fill() {
            for (let i = 0; i < arguments.length; ++i)
                list.append(fixture.newItem(arguments[i], i));
        }

        function titles(proxy) {
            let result = [];
            for (let i = 0; i < proxy.rowCount(); ++i)
                result.push(proxy.data(proxy.index(i, 0), 258));
            return result.join(" ");
        }

        function delegates() {
            let result = [];
            for (let i = 0; i < view.count; ++i)
                result.push(view.itemAt(i).row + view.itemAt(i).text);
            return result.join(" ");
        }

        function test_pattern_followsItsBinding() {
            fill("abc", "bcd", "cde");
            compare(titles(bound), "cde bcd abc");
            root.wanted = "bc";
            compare(titles(bound), "bcd abc");
            root.wanted = "c.";
            compare(titles(bound), "");
            list.get(0).title = "c.";
            compare(titles(bound), "c.");
            compare(fixture.warnings().length, 0);
        }

        function test_value_isAnyJavaScriptValue() {
            fill("a", "b", "c");
            compare(titles(byValue), "a b c");
            byValue.value = 1;
            compare(titles(byValue), "b");
            byValue.value = "1";
            compare(titles(byValue), "b");
            byValue.value = 1.5;
            compare(titles(byValue), "");
            byValue.value = undefined;
            compare(titles(byValue), "a b c");
        }

        function test_expressions_driveDelegates() {
            fill("a", "b", "long", "d", "e", "longer");
            // rank >= 2, without source row 3, short titles first, later rows first
            compare(delegates(), "0e 1long 2longer");
            list.get(0).rank = 5;
            compare(delegates(), "0e 1a 2long 3longer");
            list.get(4).title = "longest";
            compare(delegates(), "0a 1long 2longer 3longest");
            list.remove(3);
            compare(delegates(), "0a 1long 2longer 3longest");
            compare(fixture.warnings().length, 0);
        }

        function test_brokenExpression_hidesNothing() {
            fill("a", "b");
            broken.sourceModel = root.list;
            compare(titles(broken), "a b");
            broken.sourceModel = null;
            let warnings = fixture.warnings();
            verify(warnings.length >= 2);
            for (let i = 0; i < warnings.length; ++i)
                verify(warnings[i].indexOf("TypeError") > 0, warnings[i]);
        }

        function test_lookups() {
            fixture.rooms.add("Salon", "");
            fixture.rooms.add("Cuisine", "");
            fixture.rooms.add("Entrée", "");
            compare(rooms.findCurrentIndex("Entrée"), 2);
            fixture.rooms.get(0).activated = false;
            compare(rooms.findCurrentIndex("Entrée"), 1);
            compare(rooms.findCurrentIndex("Salon"), 0);
            compare(rooms.findCurrentIndex("Grenier"), 0);
            compare(rooms.findOriginalModelIndex(1), 2);
            compare(rooms.findOriginalModelIndex(2), -1);
            compare(rooms.findProxyModelIndex(2), 1);
            compare(rooms.findProxyModelIndex(0), -1);
            // A list of other items has no titles to look for.
            fill("a", "b");
            compare(bound.findCurrentIndex("a"), 0);
        }

        function test_enumeration_isReachableByTheTypesName() {
            compare(SortFilterProxyModel.RegExp, 0);
            compare(SortFilterProxyModel.Wildcard, 1);
            compare(SortFilterProxyModel.FixedString, 2);
            compare(SortFilterProxyModel.RegExp2, 3);
            compare(SortFilterProxyModel.WildcardUnix, 4);
            compare(SortFilterProxyModel.W3CXmlSchema11, 5);
            compare(bound.filterPatternSyntax, SortFilterProxyModel.FixedString);
            compare(bound.sortOrder, Qt.DescendingOrder);
        }
    }
}
