// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
import QtQuick 2.15
import HalvarStyle 1.0

// Running text.
Text {
    color: Theme.text
    font.pixelSize: Theme.fontNormal
    wrapMode: Text.Wrap
    textFormat: Text.PlainText
}
