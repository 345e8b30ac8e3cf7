// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef DIAGNOSTICTEST_H
#define DIAGNOSTICTEST_H

#include <QObject>

#include <memory>

#include "diagnosticfixture.h"

/// A test on one controller, which is blank for each test function.
class DiagnosticTest : public QObject
{
    Q_OBJECT

private slots: // called by QtTest with those of the derived class
    void initTestCase();
    void init();
    void cleanupTestCase();

protected:
    std::unique_ptr<DiagnosticFixture> m;
};

#endif // DIAGNOSTICTEST_H
