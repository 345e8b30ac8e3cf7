// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
import QtQuick 2.15
import QtQuick.Controls 2.15
import SortFilterProxyModel 0.1
import HalvarComponents 1.0
import HalvarStyle 1.0

// Every shock that the instrument has had, the newest on top.
Screen {
    id: screen

    title: qsTr("Chocs")
    subtitle: error.lastShock === "" ? qsTr("aucun choc enregistré") : qsTr("dernier : %1").arg(error.lastShock)

    first: list.count > 0 ? list : backButton

    SortFilterProxyModel {
        id: newestFirst
        sourceModel: shocks
        sortRoleName: "dateTime"
        sortOrder: Qt.DescendingOrder
    }
    // lastShock is read again at each shock.
    Choices {
        id: list
        objectName: "shockList"
        anchors.fill: parent
        model: newestFirst
        emptyText: qsTr("Aucun choc enregistré.")
        Accessible.name: screen.title

        delegate: ChoiceRow {
            id: shock
            required property date dateTime
            width: list.width - 2 * Theme.margin
            chevron: false
            sign: "shock"
            signColor: Theme.undecided
            heading: isNaN(shock.dateTime) ? qsTr("date illisible")
                                           : Qt.formatDateTime(shock.dateTime, "dd-MM-yyyy HH:mm:ss t")
            detail: qsTr("choc n° %1").arg(newestFirst.findOriginalModelIndex(shock.index) + 1)
        }
    }
}
