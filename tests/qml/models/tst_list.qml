// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
import QtQuick 2.15
import QtTest 1.15

Item {
    id: root

    property QtObject list: fixture.list
    property int boundCount: list.count

    width: 200
    height: 400

    ListView {
        id: view

        anchors.fill: parent
        model: root.list
        delegate: Item {
            id: row

            property string text: title + "/" + rank + "/" + model.state
            property int number: index
            property QtObject object: qtObject

            function rename(newTitle) {
                model.title = newTitle;
            }

            width: 200
            height: 20
        }
    }

    SignalSpy {
        id: dataSpy

        target: root.list
        signalName: "dataChanged"
    }

    TestCase {
        name: "List"
        when: windowShown

        function init() {
            fixture.reset();
            dataSpy.clear();
        }

        function fill() {
            for (let i = 0; i < arguments.length; ++i)
                list.append(fixture.newItem(arguments[i], i));
            view.forceLayout();
        }

        function texts() {
            view.forceLayout();
            let result = [];
            for (let i = 0; i < view.count; ++i)
                result.push(view.itemAtIndex(i).text);
            return result.join(" ");
        }

        function test_delegates_readRolesByName() {
            fill("a", "b");
            compare(texts(), "a/0/0 b/1/0");
            compare(view.itemAtIndex(1).number, 1);
            compare(view.itemAtIndex(1).object, list.get(1));
        }

        function test_delegates_followPropertyChanges() {
            fill("a", "b");
            list.get(1).title = "x";
            list.get(0).rank = 7;
            list.get(0).state = 2;
            compare(texts(), "a/7/2 x/1/0");
            compare(dataSpy.count, 3);
        }

        function test_delegates_writeThroughTheModel() {
            fill("a", "b");
            view.itemAtIndex(1).rename("written");
            compare(list.get(1).title, "written");
            compare(texts(), "a/0/0 written/1/0");
            view.itemAtIndex(0).object.title = "direct";
            compare(texts(), "direct/0/0 written/1/0");
        }

        function test_delegates_followRows() {
            fill("a", "b", "c");
            list.prepend(fixture.newItem("first", 9));
            compare(texts(), "first/9/0 a/0/0 b/1/0 c/2/0");
            list.move(1, 3);
            compare(texts(), "first/9/0 c/2/0 a/0/0 b/1/0");
            list.remove(0);
            compare(texts(), "c/2/0 a/0/0 b/1/0");
            list.remove(list.get(1));
            compare(texts(), "c/2/0 b/1/0");
            list.insert(1, fixture.newItem("between", 5));
            compare(texts(), "c/2/0 between/5/0 b/1/0");
            list.clear();
            compare(view.count, 0);
        }

        function test_count_isABindableNumber() {
            compare(typeof list.count, "number");
            compare(boundCount, 0);
            fill("a", "b", "c");
            compare(boundCount, 3);
            list.remove(1);
            compare(boundCount, 2);
            list.clear();
            compare(boundCount, 0);
        }

        function test_operations_areCallable() {
            compare(list.isEmpty(), true);
            compare(list.getFirst(), null);
            compare(list.getLast(), null);
            fill("a", "b", "c");
            compare(list.size(), 3);
            compare(list.isEmpty(), false);
            compare(list.getFirst().title, "a");
            compare(list.getLast().title, "c");
            compare(list.get(1).title, "b");
            compare(list.get("#b").title, "b");
            compare(list.get("#z"), null);
            compare(list.get(-1), null);
            compare(list.get(3), null);
            compare(list.indexOf(list.get(2)), 2);
            compare(list.indexOf(root), -1);
            compare(list.contains(list.get(0)), true);
            compare(list.contains(root), false);
            compare(list.contains(null), false);
            compare(list.roleForName("title"), 0);
            compare(list.roleForName("rank"), 260);
            compare(list.roleForName("nothing"), -1);
            let array = list.toVarArray();
            compare(array.length, 3);
            compare(array[2].title, "c");
            list.append(null);
            list.append(root);
            compare(list.count, 3);
        }

        function test_identifier_isFollowed() {
            fill("a");
            list.get(0).uid = "other";
            compare(list.get("other").title, "a");
            compare(list.get("#a"), null);
        }

        function test_items_belongToTheListOnceAppended() {
            fill("a");
            gc();
            wait(0);
            gc();
            compare(list.get(0).title, "a");
        }
    }
}
