// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
import QtQuick 2.15
import HalvarStyle 1.0

// The name of a group, above it.
Text {
    color: Theme.textSecondary
    font { pixelSize: Theme.fontSmall; weight: Font.DemiBold }
    wrapMode: Text.Wrap
    textFormat: Text.PlainText
    Accessible.role: Accessible.Heading
    Accessible.name: text
}
