// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include "bench.h"

#include <QFile>
#include <QImage>
#include <QPixmap>
#include <QQmlContext>
#include <QQuickItem>
#include <QQuickWindow>
#include <QScreen>

#include <battery.h>
#include <databaseitemlistmodel.h>
#include <date.h>
#include <halvar-error.h>
#include <measurelistmodel.h>
#include <nap/records.h>
#include <pin.h>
#include <ud.h>
#include <udlistmodel.h>

#include "eye.h"
#include "picturecache.h"
#include "showcase.h"

namespace nap = com::halvar::nap;

void Bench::applicationAvailable()
{
    Interface::prepare();
    Showcase::fillHome();
    // The end of the hold-off before a measure is told by startMeasure() here.
    Showcase::setConfig(QStringLiteral("Time_Before_Open_Shutter"), QStringLiteral("600000"));
    m_config.read(Showcase::home());
    m_database = std::make_unique<Database>(nullptr);
    m_database->read(Showcase::home());
    m_controller = std::make_unique<HalvarController>(Showcase::home(), &m_config, m_database.get());
    m_interface =
        std::make_unique<Interface>(*m_controller, m_config, *m_database, QLocale(QStringLiteral("fr_FR")));
}

void Bench::qmlEngineAvailable(QQmlEngine *engine)
{
    m_interface->declareIn(*engine);
    engine->rootContext()->setContextProperty(QStringLiteral("bench"), this);
}

void Bench::cleanupTestCase()
{
    m_watch.reset();
    m_interface.reset();
    m_controller.reset();
    m_database.reset();
    emptyPictureCache();
}

QStringList Bench::warnings()
{
    const QStringList found = m_watch ? m_watch->warnings() : QStringList();
    m_watch.reset();
    return found;
}

QStringList Bench::complaints(QObject *item) const
{
    const auto *quickItem = qobject_cast<QQuickItem *>(item);
    return quickItem && quickItem->window() ? ::complaints(quickItem->window())
                                            : QStringList{QStringLiteral("the item is in no window")};
}

int Bench::pixelsOf(QObject *item, const QColor &color) const
{
    const auto *quickItem = qobject_cast<QQuickItem *>(item);
    if (!quickItem || !quickItem->window())
        return 0;
    const QQuickWindow *window = quickItem->window();
    const QRect rect =
        quickItem->mapRectToScene(QRectF(0, 0, quickItem->width(), quickItem->height())).toRect();
    const QImage image = window->screen()->grabWindow(window->winId()).toImage().copy(rect);
    int found = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            found += image.pixelColor(x, y).rgb() == color.rgb() ? 1 : 0;
    }
    return found;
}

void Bench::reset()
{
    // QtTest puts its own handler in place before each test.
    m_watch.reset();
    m_watch = std::make_unique<QmlWatch>();
    m_controller->setAcquisitionMode(AcquisitionModeEnumClass::NONE);
    m_controller->initFile();
    m_controller->directMeasures->clear();
    m_controller->pin->setDisabled(false);
    m_controller->pin->clearDigits();
    m_controller->pin->setAccepted(false);
    setError(QString());
    setShock(false);
}

void Bench::conditions(bool ready, double temperature, double voltage)
{
    nap::AcqConditions conditions;
    conditions.set_readyForAcquisition(ready);
    conditions.set_temperature(temperature);
    conditions.set_acceleratingVoltage(voltage);
    m_controller->nap_AcqConditions(conditions);
}

void Bench::setBattery(int microvolts)
{
    QFile gauge(QStringLiteral("/sys/class/power_supply/bq27510-0/voltage_now"));
    if (gauge.open(QIODevice::WriteOnly | QIODevice::Truncate))
        gauge.write(QByteArray::number(microvolts));
    gauge.close();
    QMetaObject::invokeMethod(m_controller->battery, "update");
}

void Bench::setError(const QString &text)
{
    m_controller->error->setErrorMessage(text);
}

void Bench::setShock(bool on)
{
    m_controller->error->setShock(on);
}

void Bench::setPinDisabled(bool on)
{
    m_controller->pin->setDisabled(on);
}

void Bench::setSourceEnd(int days)
{
    m_controller->date->setEndDate(QDate::currentDate().addDays(days));
    m_controller->date->setNbWarningMonths(m_config.Remaining_Time_Before_EndSource());
}

void Bench::openShutter()
{
    m_controller->msp_event(MSPClient::SHUT_OPENED);
}

void Bench::startMeasure()
{
    QMetaObject::invokeMethod(m_controller.get(), "startMeasure");
}

void Bench::tellFirst()
{
    nap::DetectionResult result;
    result.set_value(0);
    m_controller->nap_DetectionResult(result);
}

void Bench::tellResult(double concentration, double sigma, int decision)
{
    nap::DetectionResult result;
    result.set_value(concentration);
    result.set_sigma(sigma);
    result.set_decision(static_cast<nap::DetectionDecision>(decision));
    m_controller->nap_DetectionResult(result);
}

void Bench::tellEnd()
{
    m_controller->nap_AcqStatus(nap::NOT_STARTED);
}

void Bench::setCheck(int decision)
{
    m_controller->currentAccuracy()->setDetectionDecision(
        static_cast<DetectionDecisionEnumClass::DetectionDecision>(decision));
}

void Bench::addUnit(const QString &room, const QString &element, int statut)
{
    auto *unit = new UD;
    unit->setLocal(room);
    unit->setElement(element);
    UDStatutEnumClass::UDStatut wanted = static_cast<UDStatutEnumClass::UDStatut>(statut);
    unit->setStatut(wanted);
    m_controller->uds->append(unit);
}

void Bench::addRoom(const QString &title, bool activated)
{
    DatabaseItemListModel *rooms = m_database->m_LocalItemsListModel;
    rooms->add(title, QString(), QStringLiteral("locaux"));
    rooms->at(rooms->count() - 1)->setProperty("activated", activated);
}
