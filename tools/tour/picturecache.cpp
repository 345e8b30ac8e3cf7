// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include "picturecache.h"

#include <QCoreApplication>
#include <QEvent>
#include <QQuickWindow>

void emptyPictureCache()
{
    // Items that views let go are deleted by an event, and hold their pictures until then.
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QQuickWindow window;
    window.resize(1, 1);
    window.show();
    window.releaseResources();
    window.grabWindow();
}
