// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include "panelwindow.h"

#include <QFont>
#include <QGuiApplication>
#include <QQmlContext>
#include <QQuickStyle>
#include <QQuickWindow>

// Outside any namespace, as the macro wants it.
static void loadResources()
{
    Q_INIT_RESOURCE(panel);
}

namespace simulator {

void PanelWindow::prepare()
{
    loadResources();
    QQuickStyle::setStyle(QStringLiteral(":/halvar-panel/HalvarStyle"));
    QFont font(QStringLiteral("Inter"));
    font.setPixelSize(17);
    QGuiApplication::setFont(font);
}

PanelWindow::PanelWindow(Simulator &simulator, const QLocale &locale)
    : m_panel(simulator)
{
    // Numbers are written as the language writes them.
    QLocale::setDefault(locale);
    if (m_translator.load(locale, QStringLiteral("panel"), QStringLiteral("_"),
                          QStringLiteral(":/halvar-panel/i18n")))
        QCoreApplication::installTranslator(&m_translator);
    m_engine.rootContext()->setContextProperty(QStringLiteral("panel"), &m_panel);
    m_engine.addImportPath(QStringLiteral("qrc:/halvar-panel"));
}

PanelWindow::~PanelWindow()
{
    QCoreApplication::removeTranslator(&m_translator);
    QLocale::setDefault(QLocale::c());
}

QQuickWindow *PanelWindow::open(const QPoint &position)
{
    m_engine.setInitialProperties({{QStringLiteral("x"), position.x()}, {QStringLiteral("y"), position.y()}});
    m_engine.load(QUrl(QStringLiteral("qrc:/halvar-panel/Panel.qml")));
    auto *window = qobject_cast<QQuickWindow *>(m_engine.rootObjects().value(0));
    if (window) {
        window->setFramePosition(position);
        window->show();
    }
    return window;
}

} // namespace simulator
