// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef SHOWCASETEST_H
#define SHOWCASETEST_H

#include <QObject>
#include <QString>

#include <memory>

#include "showcase.h"

class QQuickItem;

/// A test of the screens with a showcase on a fresh sample home for each test function. A warning of Qt's
/// that a function left unread fails it.
class ShowcaseTest : public QObject
{
    Q_OBJECT

private slots: // called by QtTest for each function of the derived class
    void init();
    void cleanup();

protected:
    /// The visible item with this object name. \throws Failure when there is none.
    QQuickItem *itemNamed(const QString &name) const;

    std::unique_ptr<Showcase> m_showcase;
};

#endif // SHOWCASETEST_H
