// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include "diagnostictest.h"

#include <QTest>

void DiagnosticTest::initTestCase()
{
    QVERIFY2(qEnvironmentVariableIsSet("HALVAR_INSTRUMENT"),
             "Run through simulator/instrument: this test would drive the machine's own GPIO and shell.");
    m = std::make_unique<DiagnosticFixture>();
}

void DiagnosticTest::init()
{
    m->clear();
}

void DiagnosticTest::cleanupTestCase()
{
    m.reset();
}
