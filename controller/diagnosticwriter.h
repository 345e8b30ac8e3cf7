// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef HALVAR_DIAGNOSTICWRITER_H
#define HALVAR_DIAGNOSTICWRITER_H

#include <QByteArray>
#include <QHash>
#include <QString>
#include <QXmlStreamWriter>

#include "bytesink.h"

class Database;
class DatabaseItemListModel;
class HalvarController;
class Measure;
class UD;

/// Composes the diagnostic file: UTF-8 XML, indented, French element names and labels.
///
/// In memory, since the file takes the old one's place in one piece. Time and size grow with the number of
/// units and measures only.
class DiagnosticWriter
{
public:
    /// Neither is owned; a null database gives no pictures.
    DiagnosticWriter(const HalvarController &controller, const Database *database);

    /// The whole document, as the controller stands now.
    QByteArray document();

private:
    using ImageByTitle = QHash<QString, QString>;

    void writeInformations();
    void writeAccuracies();
    void writeAccuracy(const Measure &accuracy, const QString &statut);
    void writeUnits();
    void writeUnit(const UD &unit, int number);
    void writeMeasure(const Measure &measure);
    void writeBuilding();
    void writeReference(const QString &element, const QString &title, const ImageByTitle &images);
    void writeText(const QString &element, const QString &text);

    const HalvarController &m_controller;
    ImageByTitle m_locals;
    ImageByTitle m_elements;
    ImageByTitle m_substrats;
    ImageByTitle m_revetements;
    QByteArray m_document;
    halvar::ByteSink m_sink{&m_document};
    QXmlStreamWriter m_xml;
};

#endif // HALVAR_DIAGNOSTICWRITER_H
