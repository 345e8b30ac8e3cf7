// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include "showcasetest.h"

#include <QQuickItem>
#include <QQuickWindow>
#include <QTest>

#include <failure.h>

#include "eye.h"

void ShowcaseTest::init()
{
    Showcase::fillHome();
    m_showcase = std::make_unique<Showcase>();
    m_showcase->settleAtOnce();
}

void ShowcaseTest::cleanup()
{
    const QStringList warnings = m_showcase->watch.warnings();
    m_showcase.reset();
    QVERIFY2(warnings.isEmpty(), qUtf8Printable(warnings.join(QLatin1Char('\n'))));
}

QQuickItem *ShowcaseTest::itemNamed(const QString &name) const
{
    const QList<QQuickItem *> items = visibleItems(m_showcase->window->contentItem());
    for (QQuickItem *item : items) {
        if (item->objectName() == name)
            return item;
    }
    throw Failure{QStringLiteral("there is no %1").arg(name)};
}
