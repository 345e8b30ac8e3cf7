// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
pragma Singleton
import QtQuick 2.15

// Colours and sizes of every screen. What has to be read keeps a contrast of at least 7:1 with what it stands on, in
// both themes: the instrument is used in full sun and in cellars.
QtObject {
    property bool night: false

    readonly property color background: night ? "#0d1117" : "#eef1f4"
    readonly property color surface: night ? "#1a212b" : "#ffffff"
    readonly property color surfacePressed: night ? "#293441" : "#dbe4ee"
    readonly property color outline: night ? "#6b7a8b" : "#74818f"
    readonly property color text: night ? "#f3f6f9" : "#101820"
    readonly property color textSecondary: night ? "#c3ccd6" : "#37424e"
    readonly property color primary: night ? "#8fc7ff" : "#0a3f6b"
    readonly property color primaryInk: night ? "#06192b" : "#ffffff"
    readonly property color primaryPressed: night ? "#b9dcff" : "#072c4b"
    readonly property color disabled: night ? "#333c46" : "#d5dce3"
    readonly property color disabledInk: night ? "#a3adb8" : "#4b5560"

    // What a decision, a fault or a readiness looks like; a word and a sign always stand beside it.
    readonly property color positive: night ? "#ffa3a3" : "#8c0f16"
    readonly property color negative: night ? "#86e3a8" : "#07522a"
    readonly property color undecided: night ? "#ffd37d" : "#643e00"
    readonly property color neutral: textSecondary
    readonly property color signInk: night ? "#101010" : "#ffffff"
    readonly property color positiveSoft: night ? "#3a1c1f" : "#fbe9ea"
    readonly property color negativeSoft: night ? "#14301f" : "#e5f4ea"
    readonly property color undecidedSoft: night ? "#362a12" : "#fff4dc"
    readonly property color neutralSoft: night ? "#232b36" : "#e9edf1"

    readonly property color alarm: night ? "#ffa3a3" : "#8c0f16"
    readonly property color alarmInk: night ? "#2a0508" : "#ffffff"
    readonly property color warning: night ? "#ffd37d" : "#ffc94d"
    readonly property color warningInk: "#2b1c00"
    readonly property color focus: night ? "#ffd37d" : "#b35900"
    readonly property color shade: "#99000000"

    // Pixels.
    readonly property int touch: 52
    readonly property int spacing: 12
    readonly property int spacingSmall: 6
    readonly property int margin: 14
    readonly property int radius: 10
    readonly property int fontTiny: 13
    readonly property int fontSmall: 15
    readonly property int fontNormal: 17
    readonly property int fontLarge: 21
    readonly property int fontHuge: 34
    readonly property int fontDigits: 54
}
