// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include "session.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>

#include <battery.h>
#include <calibration.h>
#include <config.h>
#include <database.h>
#include <date.h>
#include <halvar-error.h>
#include <halvarcontroller.h>
#include <measurelistmodel.h>
#include <pin.h>
#include <simulatorcontrol.h>
#include <udlistmodel.h>

#include "failure.h"
#include "operator.h"
#include "progress.h"
#include "summary.h"

namespace {

/// Where an instrument has its home; this one's is private, and gone with it.
const QString home = QStringLiteral("/data/lambrik/");

/// Copies what \p to does not hold yet.
void copyTree(const QString &from, const QString &to)
{
    if (!QDir().mkpath(to))
        throw Failure{QStringLiteral("%1 cannot be created").arg(to)};
    QDirIterator entries(from, QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot,
                         QDirIterator::Subdirectories);
    while (entries.hasNext()) {
        const QString source = entries.next();
        const QString target = to + QLatin1Char('/') + QDir(from).relativeFilePath(source);
        if (entries.fileInfo().isDir()) {
            if (!QDir().mkpath(target))
                throw Failure{QStringLiteral("%1 cannot be created").arg(target)};
            continue;
        }
        if (QFileInfo::exists(target))
            continue;
        QFile file(source);
        if (!file.copy(target))
            throw Failure{
                QStringLiteral("%1 cannot be copied to %2: %3").arg(source, target, file.errorString())};
        // What is copied from a read-only place is to be changed all the same.
        QFile::setPermissions(target, QFile::permissions(target) | QFile::WriteOwner);
    }
}

void replaceFile(const QString &from, const QString &to)
{
    QFile::remove(to);
    QFile file(from);
    if (!file.copy(to))
        throw Failure{QStringLiteral("%1 cannot be written: %2").arg(to, file.errorString())};
}

} // namespace

Session::Session(const Options &options, Progress *progress)
    : m_options(options)
    , m_progress(progress)
    , m_scenario(Scenario::load(options.scenario))
{ }

Session::~Session() = default;

void Session::run()
{
    prepareFiles();
    assemble();
    perform();
    verify();
}

void Session::prepareFiles()
{
    if (!QFileInfo(m_options.home + QStringLiteral("/config/config_unit")).isFile())
        throw Failure{QStringLiteral("%1 is no home of an instrument: it has no config/config_unit")
                          .arg(m_options.home),
                      Failure::wrongUsage};
    if (!QDir().mkpath(m_options.out) || !QFileInfo(m_options.out).isWritable())
        throw Failure{QStringLiteral("the directory %1 cannot be written").arg(m_options.out),
                      Failure::wrongUsage};
    copyTree(QDir(m_options.home).absolutePath(), QDir::cleanPath(home));
    for (const char *name : {"files", "shock"})
        QDir(home).mkpath(QLatin1String(name));
}

void Session::assemble()
{
    m_instrument = std::make_unique<SimulatorControl>();
    if (!m_instrument->connectTo())
        throw Failure{m_instrument->errorString() + QStringLiteral(" (is halvar-simulator running?)")};
    const double speed = m_options.speed > 0 ? m_options.speed : m_scenario.speed;
    if (!m_instrument->run(QStringLiteral("speed"), {{QStringLiteral("value"), speed}}))
        throw Failure{m_instrument->errorString()};

    m_config = std::make_unique<Config>(nullptr);
    if (!m_config->read(home))
        throw Failure{QStringLiteral("%1/config/config_unit cannot be read").arg(m_options.home)};
    // The reference block that belongs to this unit lies in its case.
    if (m_config->Nist_InformationValue() > 0
        && !m_instrument->run(QStringLiteral("reference"),
                              {{QStringLiteral("value"), double(m_config->Nist_InformationValue())},
                               {QStringLiteral("precision"), double(m_config->Nist_InformationPrecision())}}))
        throw Failure{m_instrument->errorString()};
    m_database = std::make_unique<Database>(nullptr);
    if (!m_database->read(home))
        throw Failure{QStringLiteral("the reference database of %1 cannot be read").arg(m_options.home)};
    m_controller = std::make_unique<HalvarController>(home, m_config.get(), m_database.get(), nullptr);

    Interface interface;
    interface.controller = m_controller.get();
    interface.units = m_controller->uds;
    interface.directMeasures = m_controller->directMeasures;
    interface.pin = m_controller->pin;
    interface.battery = m_controller->battery;
    interface.date = m_controller->date;
    interface.error = m_controller->error;
    interface.calibration = m_controller->calibration;
    interface.rooms = m_database->m_LocalItemsListModel;
    interface.elements = m_database->m_ElementItemsListModel;
    interface.substrates = m_database->m_SubstratItemsListModel;
    interface.coatings = m_database->m_RevetementItemsListModel;
    interface.reasonsNotMeasured = m_database->m_NonMesureItemsListModel;
    m_operator = std::make_unique<Operator>(interface, m_instrument.get(), m_progress, speed);
    m_controller->init();
}

void Session::perform()
{
    constexpr int closingSteps = 2;
    m_progress->setTotal(int(m_scenario.steps.size()) + closingSteps);
    int number = 0;
    for (const Step &step : m_scenario.steps) {
        ++number;
        m_progress->begin(Operator::describe(step));
        try {
            m_progress->done(m_operator->perform(step));
        } catch (const Failure &failure) {
            throw Failure{QStringLiteral("step %1, %2: %3").arg(number).arg(step.kind, failure.text),
                          failure.status};
        }
    }
}

void Session::verify()
{
    const DiagnosticRecord measured = m_operator->record();
    const QVector<MeasureRecord> direct = m_operator->directMeasures();
    if (measured.name.isEmpty())
        throw Failure{QStringLiteral("the scenario opens no diagnostic, so there is nothing to save"),
                      Failure::wrongUsage};
    const QString path = home + QStringLiteral("files/") + measured.name + QStringLiteral(".xml");

    m_progress->begin(QStringLiteral("Save the diagnostic"));
    m_operator->save();
    const qint64 size = QFileInfo(path).size();
    if (size == 0)
        throw Failure{QStringLiteral("%1 was not written").arg(path)};
    m_progress->done(QStringLiteral("%1.xml, %2 bytes").arg(measured.name).arg(size));

    m_progress->begin(QStringLiteral("Load it again and compare"));
    m_operator->reload(path);
    const QStringList found = differences(measured, m_operator->record());
    if (!found.isEmpty())
        throw Failure{
            QStringLiteral("the diagnostic that was loaded is not the one that was measured: %1%2")
                .arg(found.first())
                .arg(found.size() > 1 ? QStringLiteral(" (and %1 more)").arg(found.size() - 1) : QString())};
    m_progress->done(QStringLiteral("equal, units: %1, measures: %2")
                         .arg(measured.units.size())
                         .arg(measured.measureCount()));

    QString text = summary(measured, direct);
    const QStringList events = m_operator->events();
    text += QStringLiteral("Events:           %1\n")
                .arg(events.isEmpty() ? QStringLiteral("none") : events.join(QStringLiteral(", ")));
    m_progress->note(QLatin1Char('\n') + text);
    handOver(text);
}

void Session::handOver(const QString &summaryText)
{
    const QDir out(m_options.out);
    const QString diagnostic = m_operator->record().name + QStringLiteral(".xml");
    const QString summaryName = QStringLiteral("summary.txt");
    QStringList names;
    const QVector<QPair<QString, QString>> files{
        {QStringLiteral("files/") + diagnostic, diagnostic},
        {QStringLiteral("shock/shock.xml"), QStringLiteral("shock.xml")},
        {QStringLiteral("info.txt"), QStringLiteral("info.txt")}};
    for (const auto &[source, name] : files) {
        // An instrument that was never knocked has no shock history.
        if (!QFileInfo::exists(home + source))
            continue;
        replaceFile(home + source, out.filePath(name));
        names.append(name);
    }
    QFile file(out.filePath(summaryName));
    const QByteArray bytes = summaryText.toUtf8();
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size() || !file.flush())
        throw Failure{QStringLiteral("%1 cannot be written: %2").arg(file.fileName(), file.errorString())};
    names.append(summaryName);
    m_progress->note(QStringLiteral("The files are in %1: %2")
                         .arg(QDir::cleanPath(m_options.out), names.join(QStringLiteral(", "))));
}
