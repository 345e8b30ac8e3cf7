// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include "picturecache.h"

#include <QQuickWindow>

void emptyPictureCache()
{
    QQuickWindow window;
    window.resize(1, 1);
    window.show();
    window.releaseResources();
    window.grabWindow();
}
