// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef DIAGNOSTICFIXTURE_H
#define DIAGNOSTICFIXTURE_H

#include <QCoreApplication>
#include <QDir>
#include <QEvent>
#include <QFile>
#include <QRegularExpression>
#include <QStringList>

#include "controllerfixture.h"
#include "databaseitemlistmodel.h"
#include "measurelistmodel.h"
#include "testhome.h"
#include "udlistmodel.h"

/// One controller for a whole test program, since its construction takes half a second; blank again, with
/// empty reference lists and an empty files/, after each clear().
class DiagnosticFixture
{
public:
    DiagnosticFixture()
        : controller(home)
    { }
    HalvarController *operator->() const { return controller.controller.get(); }
    const Database &database() const { return controller.database; }

    void clear()
    {
        controller->initFile();
        for (DatabaseItemListModel *list :
             {database().m_LocalItemsListModel, database().m_ElementItemsListModel,
              database().m_SubstratItemsListModel, database().m_RevetementItemsListModel})
            list->clear();
        // So that what was removed does not outlive the test.
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QDir(home.file(QStringLiteral("files"))).removeRecursively();
        QDir(home.path()).mkpath(QStringLiteral("files"));
    }

    /// Path of the diagnostic \p name, as the library spells it.
    QString path(const QString &name) const
    {
        return home.path() + QStringLiteral("/files/") + name + QStringLiteral(".xml");
    }
    QStringList files() const
    {
        return QDir(home.file(QStringLiteral("files")))
            .entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot, QDir::Name);
    }
    QByteArray content(const QString &name) const { return home.read(QStringLiteral("files/") + name); }
    /// The file that saving leaves, with DATE in place of its date and time; empty when that is malformed.
    QByteArray saved(const QString &name) const
    {
        static const QRegularExpression date(
            QStringLiteral("<Date>\\d\\d-\\d\\d-\\d{4} \\d\\d:\\d\\d:\\d\\d</Date>"));
        QString text = QString::fromUtf8(content(name + QStringLiteral(".xml")));
        if (!text.contains(date))
            return QByteArray();
        return text.replace(date, QStringLiteral("<Date>DATE</Date>")).toUtf8();
    }
    /// Writes these bytes as a diagnostic and loads it, without clearing anything first.
    void load(const QByteArray &bytes, const QString &name = QStringLiteral("loaded"))
    {
        home.write(QStringLiteral("files/") + name + QStringLiteral(".xml"), bytes);
        controller->loadFile(path(name));
    }
    static QByteArray reference(const char *name)
    {
        QFile file(QStringLiteral(HALVAR_SOURCE_DIR "/tests/data/diagnostic/") + QLatin1String(name));
        if (!file.open(QIODevice::ReadOnly))
            qFatal("Cannot read %s", qPrintable(file.fileName()));
        return file.readAll();
    }

    /// All that a diagnostic holds, one line for each unit and measure.
    QStringList state() const
    {
        QStringList lines{
            QStringLiteral("file|%1|%2|%3%4%5|stage %6")
                .arg(controller->fileName(), controller->localization())
                .arg(controller->effondrement)
                .arg(controller->coulures)
                .arg(controller->humidite)
                .arg(controller->accuracyStage()),
        };
        for (const Measure *accuracy :
             {controller->accuracyInit, controller->accuracyInterrupt, controller->accuracyFinal})
            lines.append(
                QStringLiteral("accuracy|%1|%2").arg(accuracy->idNAP()).arg(accuracy->detectionDecision()));
        for (const UD *unit : *controller->uds) {
            lines.append(QStringLiteral("unit|%1|%2|%3|%4|%5|%6|%7|%8")
                             .arg(unit->identifier())
                             .arg(unit->local(), QString(QLatin1Char(unit->zone())), unit->element(),
                                  unit->substrat(), unit->revetement())
                             .arg(unit->statut())
                             .arg(unit->observation()));
            for (const Measure *measure : *unit->measures()) {
                lines.append(QStringLiteral("measure|%1|%2|%3|%4|%5|%6|%7")
                                 .arg(measure->idNAP())
                                 .arg(measure->concentration(), 0, 'g', 6)
                                 .arg(measure->sigma(), 0, 'g', 6)
                                 .arg(measure->detectionDecision())
                                 .arg(measure->localisation())
                                 .arg(measure->degradationState())
                                 .arg(measure->conservationState()));
            }
        }
        return lines;
    }
    static QStringList titles(const DatabaseItemListModel *list)
    {
        QStringList result;
        for (const DatabaseItem *item : *list)
            result.append(item->title());
        return result;
    }

    TestHome home;
    ControllerFixture controller;
};

#endif // DIAGNOSTICFIXTURE_H
