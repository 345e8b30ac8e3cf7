// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include "showcase.h"

#include <QColor>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QQmlComponent>
#include <QQmlContext>
#include <QQuickWindow>
#include <QRegularExpression>

#include <failure.h>

#include "picturecache.h"

namespace {

/// What Interface needs once, before the watch on the messages.
bool prepareOnce()
{
    static const bool isDone = [] {
        Interface::prepare();
        return true;
    }();
    return isDone;
}

} // namespace

void Showcase::fillHome()
{
    QDir(home()).removeRecursively();
    QDir().mkpath(home());
    if (QProcess::execute(
            QStringLiteral("cp"),
            {QStringLiteral("-r"), QStringLiteral(HALVAR_SOURCE_DIR "/simulator/home/."), home()})
        != 0)
        throw Failure{QStringLiteral("the sample home cannot be copied")};
}

void Showcase::setConfig(const QString &key, const QString &value)
{
    QFile file(home() + QStringLiteral("config/config_unit"));
    if (!file.open(QIODevice::ReadWrite))
        throw Failure{file.errorString()};
    QString text = QString::fromUtf8(file.readAll());
    text.replace(QRegularExpression(QStringLiteral("<%1>[^<]*").arg(key)),
                 QStringLiteral("<%1>%2").arg(key, value));
    file.resize(0);
    file.write(text.toUtf8());
}

Showcase::Showcase(const QLocale &locale, const QVariantMap &properties)
    : m_prepared(prepareOnce())
{
    config.read(home());
    database.read(home());
    controller = std::make_unique<HalvarController>(home(), &config, &database);
    interface = std::make_unique<Interface>(*controller, config, database, locale);
    window = interface->load(properties);
    if (!window)
        throw Failure{watch.warnings().join(QLatin1Char('\n'))};
    hand = std::make_unique<Hand>(window);

    QQmlComponent component(&interface->engine());
    component.setData("import QtQml 2.15\n"
                      "import HalvarComponents 1.0\n"
                      "import HalvarStyle 1.0\n"
                      "QtObject {\n"
                      "  function open(name, properties) { return Nav.open(name, properties); }\n"
                      "  function colour(name) { return Theme[name]; }\n"
                      "  function settleIn(time) { Nav.settlingTime = time; }\n"
                      "  function setMeasureMode(mode) { Instrument.setMeasureMode(mode); }\n"
                      "  function setInstrument(name, value) { Instrument[name] = value; }\n"
                      "}\n",
                      QUrl());
    m_script.reset(component.create());
    if (!m_script)
        throw Failure{component.errorString()};
}

Showcase::~Showcase()
{
    m_script.reset();
    interface.reset();
    emptyPictureCache();
    controller.reset();
}

void Showcase::unlock()
{
    controller->waitingForGo();
    hand->waitForScreen(QStringLiteral("PinScreen"));
    for (const char digit : {'1', '2', '3', '4', '5'})
        hand->key(Qt::Key(Qt::Key_0 + (digit - '0')));
    hand->waitForScreen(QStringLiteral("HomeScreen"));
}

void Showcase::settleIn(int time)
{
    QMetaObject::invokeMethod(m_script.get(), "settleIn", Q_ARG(QVariant, time));
}

void Showcase::setMeasureMode(MeasureModeEnumClass::MeasureMode mode)
{
    QMetaObject::invokeMethod(m_script.get(), "setMeasureMode", Q_ARG(QVariant, int(mode)));
}

void Showcase::setInstrument(const QString &property, const QVariant &value)
{
    QMetaObject::invokeMethod(m_script.get(), "setInstrument", Q_ARG(QVariant, property),
                              Q_ARG(QVariant, value));
}

QColor Showcase::colour(const QString &name) const
{
    QVariant colour;
    QMetaObject::invokeMethod(m_script.get(), "colour", Q_RETURN_ARG(QVariant, colour),
                              Q_ARG(QVariant, QVariant(name)));
    return colour.value<QColor>();
}

void Showcase::open(const QString &screen, const QVariantMap &properties)
{
    hand->waitFor([this] { return !window->property("settling").toBool(); },
                  QStringLiteral("input is to be taken"));
    QMetaObject::invokeMethod(m_script.get(), "open", Q_ARG(QVariant, screen), Q_ARG(QVariant, properties));
    hand->waitForScreen(screen);
}

QVariant Showcase::object(const QString &name) const
{
    return interface->engine().rootContext()->contextProperty(name);
}
