// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
import QtQuick 2.15
import QtQuick.Templates 2.15 as T

// No transitions: a gloved hand does not wait, and the device has better use for its processor.
T.StackView {
}
