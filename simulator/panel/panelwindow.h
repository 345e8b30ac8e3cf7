// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef SIMULATOR_PANELWINDOW_H
#define SIMULATOR_PANELWINDOW_H

#include <QLocale>
#include <QPoint>
#include <QQmlApplicationEngine>
#include <QTranslator>

#include "panel.h"

class QQuickWindow;

namespace simulator {

/// The window of the simulated instrument's panel.
class PanelWindow
{
public:
    /// Style, font and resources of the program; before the first window.
    static void prepare();

    PanelWindow(Simulator &simulator, const QLocale &locale);
    ~PanelWindow();

    /// Opens the window at \p position of the screen; null, with a warning of Qt, when it cannot be.
    QQuickWindow *open(const QPoint &position = QPoint());
    Panel &panel() { return m_panel; }

private:
    Q_DISABLE_COPY(PanelWindow)
    Panel m_panel;
    QTranslator m_translator;
    QQmlApplicationEngine m_engine; // last made, first gone: it looks at the others
};

} // namespace simulator

#endif // SIMULATOR_PANELWINDOW_H
