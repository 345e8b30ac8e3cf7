// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
//
// The interface's components, each by itself on real library objects: tst_*.qml, all in one process.
#include <QtQuickTest>

#include "bench.h"

QUICK_TEST_MAIN_WITH_SETUP(tst_interface_components, Bench)
