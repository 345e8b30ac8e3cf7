// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
import QtQuick 2.15

// The scale of the bars of one list of measures: the same length means the same value, also for the measure that runs.
// While it does, the scale only grows: bars that go to and fro cannot be read.
Item {
    id: scale

    property QtObject list
    property real full: 0 // mg/cm²

    function needOf(measure) { return measure.concentration + 1.5 * measure.sigma; }
    function refresh() {
        var most = 0;
        for (var row = 0; list && row < list.count; ++row)
            most = Math.max(most, needOf(list.get(row)));
        full = most;
    }
    function grow() {
        if (Instrument.shooting && Instrument.measure && Instrument.list === list)
            full = Math.max(full, needOf(Instrument.measure));
    }
    onListChanged: refresh()

    Connections {
        target: scale.list
        enabled: !Instrument.shooting
        function onCountChanged() { scale.refresh(); }
    }
    Connections {
        target: Instrument.measure
        // With the value and the sigma of the same result.
        function onConcentrationChanged() { Qt.callLater(scale.grow); }
        function onSigmaChanged() { Qt.callLater(scale.grow); }
    }
    Connections {
        target: Instrument
        function onShotEnded() { scale.refresh(); }
    }
}
