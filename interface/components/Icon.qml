// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
import QtQuick 2.15
import HalvarStyle 1.0

// A drawn sign in a square of 24 units. Decoration: what it says is said in words beside it.
Item {
    id: icon

    property string name
    property color color: Theme.text
    property real size: 24

    readonly property var lines: ({
        "plus": "M12 4V20M4 12H20",
        "minus": "M4 12H20",
        "check": "M4 13L10 19L20 6",
        "cross": "M6 6L18 18M18 6L6 18",
        "question": "M8 8.5A4 4 0 1 1 13 12.4Q12 13 12 15M12 19V19.2",
        "warning": "M12 4L21.5 20H2.5ZM12 10V14.5M12 17.2V17.4",
        "skip": "M5 5L19 19M12 3A9 9 0 1 1 11.9 3Z",
        "target": "M12 5A7 7 0 1 1 11.9 5ZM12 2V7M12 17V22M2 12H7M17 12H22",
        "back": "M15 4L7 12L15 20",
        "next": "M9 4L17 12L9 20",
        "down": "M4 9L12 17L20 9",
        "home": "M3 12L12 4L21 12M6 10V20H18V10",
        "light": "M9 18H15M10 21H14M12 3A6 6 0 0 1 15.5 14L15 15.5H9L8.5 14A6 6 0 0 1 12 3Z",
        "wifi": "M3 9.5Q12 2.5 21 9.5M6.3 13.3Q12 9 17.7 13.3M9.3 16.8Q12 14.8 14.7 16.8M12 19.8V20",
        "shock": "M12 2L14 7.5L20 4.5L17.5 10.5L22.5 13L16.5 15L18.5 21L13 17.5L10 22L9 16.5L3 18.5L6 13L1.5 9.5L8 9L6.5 3.5L10.5 7Z",
        "folder": "M3 6V19H21V8H12L10 6Z",
        "document": "M6 3H14L18 7V21H6ZM9 11H15M9 15H15",
        "balance": "M12 4V20M7 20H17M4 7H20M4 7L1.5 13H6.5ZM20 7L17.5 13H22.5Z",
        "tune": "M4 7H13M17 7H20M4 17H7M11 17H20M15 5V9M9 15V19",
        "pulse": "M2 13H7L10 5L14 20L17 13H22",
        "wrench": "M20 6A5 5 0 0 1 13.5 11.5L6.5 19.5A2 2 0 0 1 4 17L12 10A5 5 0 0 1 17.5 3.5L14.5 6.5L17 9.5Z",
        "search": "M10.5 4A6.5 6.5 0 1 1 10.4 4ZM15.5 15.5L21 21",
        "bin": "M5 7H19M10 7V4H14V7M7 7L8 20H16L17 7",
        "edit": "M4 20L5 15L16 4L20 8L9 19Z",
        "moon": "M19 14A8 8 0 1 1 10 4A6.5 6.5 0 0 0 19 14Z",
        "sun": "M12 8A4 4 0 1 1 11.9 8ZM12 2V4M12 20V22M2 12H4M20 12H22M5 5L6.5 6.5M17.5 17.5L19 19M5 19L6.5 17.5M17.5 6.5L19 5",
        "power": "M12 3V11M7 6A8 8 0 1 0 17 6",
        "backspace": "M8 5H21V19H8L2 12ZM11 9L17 15M17 9L11 15",
        "open": "M12 3A9 9 0 1 1 11.9 3Z",
        "chosen": "M12 3A9 9 0 1 1 11.9 3ZM12 9A3 3 0 1 1 11.9 9ZM12 11A1 1 0 1 1 11.9 11Z",
        "press": "M9 14V4.5A1.6 1.6 0 0 1 12.2 4.5V10.5L17.8 11.8Q19.6 12.3 19.3 14L18 21H10.5L5.8 15.6Q5 14.2 6.2 13.4Q7.4 12.8 9 14.4",
        "wait": "M12 3A9 9 0 1 1 11.9 3ZM12 7V12L15.5 14",
        "room": "M5 21V3H19V21M5 21H19M15 12V13",
        "picture": "M3 5H21V19H3ZM3 16L9 11L14 16L17 13L21 17M15.5 8.5V8.7",
        "refresh": "M19 12A7 7 0 1 1 16.5 6.5M17 2.5V7H12.5"
    })

    implicitWidth: size
    implicitHeight: size
    Accessible.ignored: true

    onNameChanged: canvas.requestPaint()
    onColorChanged: canvas.requestPaint()

    // Not a Shape: the software renderer draws one that lies wholly outside its list's frame without the frame.
    Canvas {
        id: canvas
        anchors.fill: parent
        renderStrategy: Canvas.Immediate
        onPaint: {
            var context = getContext("2d");
            context.reset();
            if (icon.name === "")
                return;
            context.scale(width / 24, height / 24);
            context.strokeStyle = icon.color;
            context.lineWidth = 2.4;
            context.lineCap = "round";
            context.lineJoin = "round";
            context.path = icon.lines[icon.name];
            context.stroke();
        }
    }
}
