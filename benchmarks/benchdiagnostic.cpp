// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include "benchdiagnostic.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>

#include "measurelistmodel.h"
#include "udlistmodel.h"

namespace {

/// Concentration and sigma are averages of counts: no round numbers.
Measure *newMeasure(int unit, int number, QObject *parent)
{
    auto *measure = new Measure(parent);
    measure->setIdNAP(unit * BenchDiagnostic::measuresOfAUnit + number);
    measure->setConcentration(1.0 + (unit % 89 + 0.3 * number) / 97);
    measure->setSigma(0.3 / (7 + number));
    measure->setDetectionDecision(number % 2 == 0 ? DetectionDecisionEnumClass::NEGATIVE
                                                  : DetectionDecisionEnumClass::POSITIVE);
    measure->setLocalisation(number % 2 == 0 ? LocalisationEnumClass::CENTER : LocalisationEnumClass::UP);
    measure->setDegradationState(DegradationStateEnumClass::ETAT_USAGE);
    measure->setConservationState(QStringLiteral("Usure par friction"));
    return measure;
}

} // namespace

BenchDiagnostic::BenchDiagnostic(int rooms)
{
    QDir home(m_home.path());
    for (const char *directory : {"config", "database", "files", "shock"})
        home.mkpath(QLatin1String(directory));
    for (int i = 0; i < rooms; ++i) {
        m_rooms.append(QStringLiteral("Salon %1").arg(i));
        m_database.m_LocalItemsListModel->add(m_rooms.last(), QString());
    }
    m_database.m_ElementItemsListModel->add(QStringLiteral("Plinthe"), QString());
    m_database.m_SubstratItemsListModel->add(QStringLiteral("Bois"), QString());
    m_database.m_RevetementItemsListModel->add(QStringLiteral("Peinture"), QString());
    m_database.read(m_home.path() + QLatin1Char('/'));
    m_controller =
        std::make_unique<HalvarController>(m_home.path() + QLatin1Char('/'), &m_config, &m_database);
}

BenchDiagnostic &BenchDiagnostic::shared()
{
    static BenchDiagnostic diagnostic;
    return diagnostic;
}

HalvarController &BenchDiagnostic::withUnits(int units)
{
    if (m_controller->uds->count() == units)
        return *m_controller;
    clear();
    m_controller->setFileName(QStringLiteral("benchmark"));
    for (int i = 0; i < units; ++i) {
        auto *unit = new UD(m_controller->uds);
        unit->setIdentifier(i + 1);
        unit->setLocal(m_rooms.at(int(qint64(i) * m_rooms.size() / units)));
        unit->setElement(QStringLiteral("Plinthe"));
        unit->setSubstrat(QStringLiteral("Bois"));
        unit->setRevetement(QStringLiteral("Peinture"));
        unit->setStatut(UDStatutEnumClass::POSITIVE);
        // No two alike among the first ten thousand, and in no order.
        unit->setObservation(QStringLiteral("Trace %1 sur le mur, côté fenêtre")
                                 .arg(i * 7919 % 10007, 5, 10, QLatin1Char('0')));
        for (int m = 0; m < measuresOfAUnit; ++m)
            unit->measures()->append(newMeasure(i, m, unit->measures()));
        m_controller->uds->append(unit);
    }
    m_controller->saveFile();
    return *m_controller;
}

void BenchDiagnostic::clear()
{
    m_controller->initFile();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QCoreApplication::processEvents();
}

QByteArray BenchDiagnostic::document() const
{
    QFile file(path());
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}
