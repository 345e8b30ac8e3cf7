// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
import QtQuick 2.15
import QtQuick.Controls 2.15
import SortFilterProxyModel 0.1
import HalvarComponents 1.0
import HalvarStyle 1.0

// One entry of a reference list: found by its picture or by typing, without caring for case and accents. What the list
// lacks is added to it and kept.
Screen {
    id: screen

    property QtObject items
    property string current
    property bool allowNew: true
    property bool allowNone: false
    // Type of a new entry: the list's own name, by which its pictures are found.
    property string kind
    // Called with the title.
    property var picked

    readonly property string wanted: search.text.trim()
    readonly property string wantedPlain: Words.plain(wanted)

    function matches(title) { return wantedPlain === "" || Words.plain(title).indexOf(wantedPlain) >= 0; }
    // The row of the entry with this title, whether it is offered or not; -1 for none.
    function rowOf(title) {
        for (var row = 0; row < items.count; ++row) {
            if (items.get(row).title === title)
                return row;
        }
        return -1;
    }
    function pick(title) {
        if (Nav.settling)
            return;
        // The screen goes first: what is picked may open another.
        var done = picked;
        Nav.back();
        if (done)
            done(title);
    }
    function add(title) {
        var row = rowOf(title);
        if (row >= 0)
            items.get(row).activated = true;
        else
            items.add(title, "", kind);
        if (!database.write())
            Nav.say(qsTr("« %1 » n'a pas pu être gardé pour la prochaine fois.").arg(title));
        pick(title);
    }

    first: list.count > 0 ? list : search
    // Whoever types means the search, wherever the keys are.
    Keys.onPressed: function(event) {
        if (event.text.trim() === "" || event.modifiers & (Qt.ControlModifier | Qt.AltModifier))
            return;
        search.insert(search.length, event.text);
        search.cursorPosition = search.length;
        Nav.focus(search);
        event.accepted = true;
    }

    // An expression is not evaluated again when a word is typed.
    onWantedPlainChanged: proxy.invalidate()
    SortFilterProxyModel {
        id: proxy
        sourceModel: screen.items
        filterExpression: model.activated && screen.matches(model.title)
    }

    TextField {
        id: search
        objectName: "search"
        anchors { top: parent.top; left: parent.left; right: parent.right; margins: Theme.margin; topMargin: Theme.spacingSmall }
        placeholderText: screen.allowNew ? qsTr("Chercher ou ajouter") : qsTr("Chercher")
        rightPadding: 52
        Accessible.name: placeholderText
        Keys.onDownPressed: list.forceActiveFocus()
        onAccepted: {
            if (list.count === 1)
                screen.pick(proxy.data(proxy.index(0, 0), screen.items.roleForName("title")));
        }

        Icon {
            anchors { right: parent.right; rightMargin: 14; verticalCenter: parent.verticalCenter }
            name: "search"
            color: Theme.textSecondary
        }
    }
    Choices {
        id: list
        objectName: "pickList"
        anchors { top: search.bottom; topMargin: Theme.spacingSmall; bottom: parent.bottom; left: parent.left; right: parent.right }
        model: proxy
        emptyText: screen.wanted === "" ? qsTr("Cette liste est vide.") : qsTr("Rien ne correspond à « %1 ».").arg(screen.wanted)
        currentIndex: proxy.findCurrentIndex(screen.current)
        Accessible.name: screen.title
        onCountChanged: Qt.callLater(showCurrent)
        // What stands above the rows may get its height after them.
        readonly property real above: headerItem ? headerItem.height : 0
        onAboveChanged: Qt.callLater(showCurrent)
        function showCurrent() {
            if (currentIndex > 0)
                positionViewAtIndex(currentIndex, ListView.Contain);
            else
                positionViewAtBeginning();
        }

        header: Column {
            width: list.width - 2 * Theme.margin
            spacing: Theme.spacingSmall
            bottomPadding: children.length > 0 && implicitHeight > Theme.spacingSmall ? Theme.spacingSmall : 0

            ListRow {
                objectName: "none"
                width: parent.width
                visible: screen.allowNone && screen.wanted === ""
                chevron: false
                sign: "skip"
                heading: qsTr("Ne rien noter")
                onClicked: screen.pick("")
            }
        }
        // After what was found: the first row is the likely one.
        footer: Column {
            width: list.width - 2 * Theme.margin
            topPadding: list.count > 0 && addNew.visible ? Theme.spacingSmall : 0

            ListRow {
                id: addNew
                objectName: "addNew"
                width: parent.width
                visible: screen.allowNew && screen.wanted !== "" && !(screen.rowOf(screen.wanted) >= 0
                    && screen.items.get(screen.rowOf(screen.wanted)).activated)
                chevron: false
                sign: "plus"
                heading: qsTr("Ajouter « %1 »").arg(screen.wanted)
                onClicked: screen.add(screen.wanted)
            }
        }
        delegate: ChoiceRow {
            id: entry
            required property string title
            required property string image
            required property bool original
            width: list.width - 2 * Theme.margin
            chevron: false
            picture: entry.image
            readonly property bool chosen: entry.title === screen.current
            sign: entry.image !== "" ? "picture" : chosen ? "chosen" : "open"
            heading: entry.title
            detail: entry.original ? "" : qsTr("ajouté sur l'instrument")
            onClicked: screen.pick(entry.title)

            Icon {
                visible: entry.chosen && entry.image !== ""
                name: "chosen"
                size: 28
                color: Theme.primary
            }
        }
    }
}
