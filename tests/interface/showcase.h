// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef SHOWCASE_H
#define SHOWCASE_H

#include <QColor>

#include <memory>

#include <interface.h>

#include "controllerfixture.h"
#include "hand.h"
#include "qmlwatch.h"

/// The interface on a home of its own, and what is done to it. Inside a private instrument only.
class Showcase
{
    const bool m_prepared; // before the watch, which replaces what is prepared

public:
    /// Fills /data/lambrik with the sample home; once for each private instrument.
    static void fillHome();
    static QString home() { return QStringLiteral("/data/lambrik/"); }
    /// Rewrites one value of the configuration of /data/lambrik.
    static void setConfig(const QString &key, const QString &value);

    /// \param properties initial ones of Main.qml.
    explicit Showcase(const QLocale &locale = QLocale(QStringLiteral("fr_FR")),
                      const QVariantMap &properties = {});
    ~Showcase();

    HalvarController *operator->() const { return controller.get(); }
    /// Past hold-off and code, without waiting for either.
    void unlock();
    /// No pause for double taps after a change of screen.
    void settleAtOnce() { settleIn(1); }
    /// Such a pause, in ms. An operator has 250.
    void settleIn(int time);
    /// As the settings' screen does.
    void setMeasureMode(MeasureModeEnumClass::MeasureMode mode);
    /// Sets a property of Instrument.
    void setInstrument(const QString &property, const QVariant &value);
    /// Opens a screen as Nav.open() does. \param properties may hold QML objects.
    void open(const QString &screen, const QVariantMap &properties = {});
    /// A colour of Theme, as it is now.
    QColor colour(const QString &name) const;
    /// One of the objects that QML sees.
    QVariant object(const QString &name) const;

    QmlWatch watch; ///< first in, last out: tearing down is to be silent as well
    Config config{nullptr};
    Database database{nullptr};
    std::unique_ptr<HalvarController> controller;
    std::unique_ptr<Interface> interface;
    QQuickWindow *window = nullptr;
    std::unique_ptr<Hand> hand;

private:
    std::unique_ptr<QObject> m_script;
};

#endif // SHOWCASE_H
