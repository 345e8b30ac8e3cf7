// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include "shock.h"

Shock::Shock(const QDateTime &dateTime, QObject *parent)
    : QObject(parent)
    , m_dateTime(dateTime)
{ }
