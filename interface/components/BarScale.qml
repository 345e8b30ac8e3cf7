// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
import QtQuick 2.15

// The scale of the bars of one list of measures: the same length means the same value. A shot that runs may need a
// larger one for itself; the others follow when it has ended.
Item {
    id: scale

    property QtObject list
    property real full: 0 // mg/cm²

    function refresh() {
        var most = 0;
        for (var row = 0; list && row < list.count; ++row) {
            var measure = list.get(row);
            most = Math.max(most, measure.concentration + 1.5 * measure.sigma);
        }
        full = most;
    }
    onListChanged: refresh()

    Connections {
        target: scale.list
        enabled: !Instrument.shooting
        function onCountChanged() { scale.refresh(); }
    }
    Connections {
        target: Instrument
        function onShotEnded() { scale.refresh(); }
    }
}
