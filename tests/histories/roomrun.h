// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef ROOMRUN_H
#define ROOMRUN_H

#include <QQmlEngine>
#include <QString>

#include "step.h"

namespace histories {

/// The steps of the rooms and of the units that are in them.
const std::vector<Kind> &roomKinds();

/// Does the steps with the reference list of rooms, a list of units and the proxy of the rooms in use.
/// \return what differs after which step, or empty. \p done counts the steps.
QString runRooms(const Steps &steps, QQmlEngine &engine, long &done);

} // namespace histories

#endif // ROOMRUN_H
