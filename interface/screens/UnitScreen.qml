// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
import QtQuick 2.15
import QtQuick.Controls 2.15
import Halvar 4.0
import HalvarComponents 1.0
import HalvarStyle 1.0

// One unit: what it is, how it stands, and its measures. The trigger is live as long as the unit wants a result.
MeasuringScreen {
    id: screen

    property int row: -1
    property bool fresh: false
    property QtObject unit: uds.get(row)
    property Item elementRow // of the form, which is made for the window's shape
    readonly property int statut: unit ? unit.statut : UDStatutEnumClass.RAW
    // Of its measures, when none of them runs.
    property int negatives: 0
    function count() {
        negatives = 0;
        for (var i = 0; unit && i < unit.measures.count; ++i) {
            if (unit.measures.get(i).detectionDecision === DetectionDecisionEnumClass.NEGATIVE)
                ++negatives;
        }
    }
    Connections {
        target: Instrument
        function onShotEnded() { screen.count(); }
    }

    title: {
        if (!unit)
            return "";
        return unit.element === "" ? qsTr("Zone %1").arg(Words.zone(unit.zone)) : Words.unitTitle(unit.zone, unit.element);
    }
    // The number that it has in the file.
    subtitle: unit ? qsTr("%1 · unité n° %2").arg(unit.local).arg(row + 1) : ""
    actions: SignChip {
        objectName: "statut"
        sign: Words.statutSign(screen.statut)
        word: Words.statut(screen.statut)
        tint: Words.statutColor(screen.statut)
    }

    function pick(title, items, kind, property) {
        Nav.open("PickScreen", {
            title: title,
            items: items,
            kind: kind,
            current: unit[property],
            picked: function(chosen) {
                screen.unit[property] = chosen;
                Instrument.save();
            }
        });
    }
    function skip(reasons, title) {
        Nav.open("PickScreen", {
            title: title,
            items: reasons,
            allowNew: false,
            allowNone: true,
            picked: function(reason) {
                screen.unit.statut = UDStatutEnumClass.SKIPPED;
                // What was observed before stays.
                screen.unit.observation = [reason, screen.unit.observation].filter(function(text) {
                    return text !== "";
                }).join(" – ");
                Instrument.enable(false);
                Instrument.save();
            }
        });
    }
    function nextZone() {
        if (Nav.settling)
            return;
        uds.add(row);
        var added = uds.getLast();
        added.identifier = uds.count;
        Instrument.save();
        // In place of this one: the way back leads to the room.
        Nav.replace("UnitScreen", { row: uds.count - 1, fresh: true });
    }

    first: statut === UDStatutEnumClass.RAW ? elementRow : nextButton
    onShown: {
        controller.editionMode = !screen.fresh;
        Instrument.measureUnit(screen.row);
        screen.count();
        // What was noted on another screen may have made the last measure higher.
        if (list.count > 0)
            Qt.callLater(list.showLast);
    }
    onHidden: {
        controller.editionMode = false;
        Instrument.standby();
        Instrument.save();
    }

    Component {
        id: form

        Column {
            spacing: Theme.spacingSmall

            Rectangle {
                width: parent.width
                height: Theme.touch
                radius: Theme.radius
                color: Theme.surface
                border.color: Theme.outline
                Body {
                    anchors { left: parent.left; leftMargin: Theme.margin; verticalCenter: parent.verticalCenter }
                    text: qsTr("Zone")
                }
                Row {
                    anchors { right: parent.right; rightMargin: Theme.spacingSmall; verticalCenter: parent.verticalCenter }
                    IconButton {
                        objectName: "zoneBefore"
                        sign: "back"
                        text: qsTr("Lettre précédente")
                        enabled: screen.unit !== null && Words.zone(screen.unit.zone) > "A" && !Instrument.shooting
                        onClicked: screen.shiftZone(-1)
                    }
                    Text {
                        objectName: "zone"
                        width: 48
                        height: Theme.touch
                        horizontalAlignment: Text.AlignHCenter
                        verticalAlignment: Text.AlignVCenter
                        text: screen.unit ? Words.zone(screen.unit.zone) : ""
                        color: Theme.text
                        font { pixelSize: Theme.fontHuge; weight: Font.Bold }
                        Accessible.role: Accessible.StaticText
                        Accessible.name: qsTr("Zone %1").arg(text)
                    }
                    IconButton {
                        objectName: "zoneAfter"
                        sign: "next"
                        text: qsTr("Lettre suivante")
                        enabled: screen.unit !== null && Words.zone(screen.unit.zone) < "Z" && !Instrument.shooting
                        onClicked: screen.shiftZone(1)
                    }
                }
            }
            ListRow {
                objectName: "element"
                Component.onCompleted: screen.elementRow = this
                compact: true
                width: parent.width
                picture: screen.unit ? elements.findImageFromTitle(screen.unit.element) : ""
                sign: "picture"
                heading: screen.unit && screen.unit.element !== "" ? screen.unit.element : qsTr("Élément à choisir")
                detail: screen.unit && screen.unit.element !== "" ? qsTr("Élément") : ""
                onClicked: screen.pick(qsTr("Élément"), elements, "elements", "element")
            }
            ListRow {
                objectName: "substrate"
                compact: true
                width: parent.width
                picture: screen.unit ? substrates.findImageFromTitle(screen.unit.substrat) : ""
                sign: "picture"
                heading: screen.unit && screen.unit.substrat !== "" ? screen.unit.substrat : qsTr("Substrat à choisir")
                detail: screen.unit && screen.unit.substrat !== "" ? qsTr("Substrat") : ""
                onClicked: screen.pick(qsTr("Substrat"), substrates, "substrats", "substrat")
            }
            ListRow {
                objectName: "coating"
                compact: true
                width: parent.width
                picture: screen.unit ? coatings.findImageFromTitle(screen.unit.revetement) : ""
                sign: "picture"
                heading: screen.unit && screen.unit.revetement !== "" ? screen.unit.revetement : qsTr("Revêtement à choisir")
                detail: screen.unit && screen.unit.revetement !== "" ? qsTr("Revêtement") : ""
                onClicked: screen.pick(qsTr("Revêtement"), coatings, "revetements", "revetement")
            }
            TextField {
                objectName: "observation"
                width: parent.width
                leftPadding: observationCaption.x + observationCaption.width + Theme.spacing
                placeholderText: qsTr("rien de noté")
                text: screen.unit ? screen.unit.observation : ""
                Accessible.name: qsTr("Observation")
                // The keys go on where Tab would lead.
                onAccepted: Nav.focus(nextItemInFocusChain())
                onEditingFinished: {
                    if (!screen.unit || screen.unit.observation === text)
                        return;
                    screen.unit.observation = text;
                    // Also when the screen is left from the field, which is after it was saved.
                    Instrument.save();
                }

                Body {
                    id: observationCaption
                    anchors.verticalCenter: parent.verticalCenter
                    x: Theme.margin
                    text: qsTr("Observation")
                    color: Theme.textSecondary
                    font.pixelSize: Theme.fontSmall
                }
            }
        }
    }

    function shiftZone(step) {
        unit.zone = typeof unit.zone === "number" ? unit.zone + step
                                                  : String.fromCharCode(unit.zone.charCodeAt(0) + step);
        Instrument.save();
    }

    Item {
        id: left
        anchors { top: parent.top; bottom: bottomBar.top; left: parent.left }
        width: screen.wide ? Math.round(parent.width * 0.45) : 0
        visible: screen.wide

        Sheet {
            anchors.fill: parent
            Loader {
                width: parent.width
                active: screen.wide
                sourceComponent: form
            }
        }
    }
    BarScale {
        id: barScale
        list: screen.unit ? screen.unit.measures : null
    }
    ShotPanel {
        id: panel
        x: left.width + (screen.wide ? 2 : Theme.margin)
        y: Theme.spacingSmall
        width: parent.width - x - Theme.margin
    }
    Choices {
        id: list
        objectName: "measureList"
        anchors { top: panel.bottom; topMargin: Theme.spacingSmall; bottom: bottomBar.top; left: left.right; right: parent.right }
        leftMargin: screen.wide ? 2 : Theme.margin
        onLeftMarginChanged: contentX = -leftMargin
        model: screen.unit ? screen.unit.measures : null
        Accessible.name: qsTr("Mesures de l'unité")
        activeFocusOnTab: false // the form comes first

        readonly property real inner: width - leftMargin - rightMargin
        property Item description // in the list, when there is no place beside it
        // The end, from the top of a row on: a figure that is cut is read as another one.
        function showLast() {
            bottomMargin = Theme.margin;
            forceLayout();
            positionViewAtEnd();
            if (atYBeginning)
                return;
            var rows = description ? Array.from(description.children) : [];
            for (var i = count - 1; i >= 0 && itemAtIndex(i); --i)
                rows.push(itemAtIndex(i));
            var top = Infinity;
            rows.forEach(function(row) {
                var y = row.mapToItem(contentItem, 0, 0).y - topMargin;
                if (y > contentY - 1 && y < top)
                    top = y;
            });
            if (top === Infinity)
                return;
            bottomMargin += top - contentY;
            contentY = top;
        }

        header: Column {
            width: list.inner
            bottomPadding: Theme.spacingSmall
            spacing: Theme.spacingSmall

            Loader {
                width: parent.width
                active: !screen.wide
                visible: active
                sourceComponent: form
                onItemChanged: list.description = item
            }
            Caption {
                width: parent.width
                visible: text !== ""
                text: {
                    if (list.count === 0)
                        return screen.statut === UDStatutEnumClass.SKIPPED ? "" : qsTr("Pas encore de mesure.");
                    var text = qsTr("%n mesure(s), la dernière en bas", "", list.count);
                    var missing = controller.nbMeasures - screen.negatives;
                    if (screen.statut === UDStatutEnumClass.RAW && screen.negatives > 0 && missing > 0)
                        text += " · " + qsTr("il manque %n négative(s)", "", missing);
                    return text;
                }
            }
        }
        delegate: MeasureRow {
            id: entry
            width: list.inner
            number: entry.index + 1
            scale: barScale.full
            live: Instrument.shooting && Instrument.measure !== null && entry.index === list.count - 1
        }
        // Once the new one has its height.
        onCountChanged: Qt.callLater(showNewest)
        onHeightChanged: Qt.callLater(showNewest)
        function showNewest() {
            if (count > 0)
                showLast();
        }
    }
    Item {
        id: bottomBar
        anchors { bottom: parent.bottom; left: parent.left; right: parent.right }
        height: Theme.touch + 2 * Theme.spacingSmall

        Row {
            x: Theme.margin
            y: Theme.spacingSmall
            spacing: Theme.spacingSmall

            // What takes one of the two wide places depends on the statut.
            readonly property real half: (bottomBar.width - 2 * Theme.margin - 2 * spacing
                                          - removeButton.width) / 2

            IconButton {
                id: removeButton
                objectName: "removeUnit"
                enabled: !Instrument.shooting
                sign: "bin"
                text: qsTr("Supprimer l'unité")
                onClicked: removeDialog.open()
            }
            SignButton {
                objectName: "skip"
                width: parent.half
                visible: screen.statut === UDStatutEnumClass.RAW
                enabled: !Instrument.shooting
                leftPadding: Theme.spacingSmall
                rightPadding: Theme.spacingSmall
                sign: "skip"
                text: qsTr("Ne pas mesurer")
                onClicked: skipDialog.open()
            }
            SignButton {
                objectName: "again"
                width: parent.half
                visible: screen.statut !== UDStatutEnumClass.RAW
                enabled: !Instrument.shooting && !Instrument.armed
                sign: screen.statut === UDStatutEnumClass.SKIPPED ? "target" : "refresh"
                text: screen.statut === UDStatutEnumClass.SKIPPED ? qsTr("Mesurer") : qsTr("Remesurer")
                onClicked: {
                    // A unit that was left out is to be measured after all.
                    if (screen.unit.statut === UDStatutEnumClass.SKIPPED)
                        screen.unit.statut = UDStatutEnumClass.RAW;
                    Instrument.enable(true);
                }
            }
            SignButton {
                id: nextButton
                objectName: "nextZone"
                width: parent.half
                enabled: !Instrument.shooting
                highlighted: screen.statut !== UDStatutEnumClass.RAW
                sign: "next"
                text: qsTr("Zone suivante")
                onClicked: screen.nextZone()
            }
        }
    }
    ConfirmDialog {
        id: skipDialog
        title: qsTr("Ne pas mesurer")
        even: true
        question: qsTr("Pourquoi cette unité n'est-elle pas mesurée ?")
        yes: qsTr("L'unité ne peut pas être mesurée")
        other: qsTr("Le local n'a pas été visité")
        onAccepted: screen.skip(reasonsNotMeasured, qsTr("Raison : non mesurée"))
        onOtherChosen: screen.skip(reasonsNotVisited, qsTr("Raison : local non visité"))
    }
    ConfirmDialog {
        id: removeDialog
        title: qsTr("Supprimer l'unité ?")
        dangerous: true
        question: qsTr("L'unité n° %1 (%2) et ses mesures seront effacées du diagnostic.").arg(screen.row + 1).arg(screen.title)
        yes: qsTr("Supprimer")
        onAccepted: {
            var gone = screen.row;
            Nav.leave();
            uds.remove(gone);
            Instrument.save();
        }
    }
}
