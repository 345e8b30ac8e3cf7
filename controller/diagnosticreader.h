// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef HALVAR_DIAGNOSTICREADER_H
#define HALVAR_DIAGNOSTICREADER_H

#include <QString>

#include "xmlreader.h"

class Database;
class DatabaseItemListModel;
class HalvarController;
class Measure;
class QIODevice;
class UD;

/// Reads a diagnostic file into a controller, as far as it can be read: units and measures are added, name,
/// place, accuracy results and building observations taken over.
///
/// Rooms, elements, substrates and coatings that the reference lists lack are added to them, and the lists
/// are written back as soon as a unit is through, so that they outlive a power cut.
/// Depth of the input costs no stack: what is unknown is skipped without recursion.
class DiagnosticReader
{
public:
    /// Neither is owned; without a database the reference lists stay as they are.
    DiagnosticReader(HalvarController &controller, const Database *database);

    /// \return false when the file is damaged: error() says where and why.
    bool read(QIODevice *device);
    /// "line 12, column 3: Premature end of document."
    QString error() const;

private:
    void readTopLevel();
    void readInformations();
    void readAccuracies();
    void readAccuracy();
    void readUnits();
    void readUnit();
    void readUnitChild(UD &unit);
    void readMeasures(UD &unit);
    void readMeasure(UD &unit);
    void readBuilding();
    const QString *readReference(DatabaseItemListModel *list, const char *imageMessage,
                                 const char *valueMessage, const char *addedMessage, const QString &kind);
    void writeDatabase();
    /// Once a load has written very much, only every second, fourth, eighth... write is carried out.
    bool isWritePutOff();
    /// The current element's text, until the next one is read; null when damage cuts it off, so that half a
    /// word is never taken for one. What child elements hold is no part of it.
    const QString *text();
    const QString *text(const char *message);

    HalvarController &m_controller;
    const Database *m_database;
    halvar::XmlReader m_xml;
    QString m_text;
    bool m_databaseWritten = false;
    bool m_listsGrew = false; ///< since the last write
    qint64 m_itemsWritten = 0; ///< of the reference lists, in all writes together
    int m_writesWaited = 0; ///< for which the next write has been put off
    int m_writesToWait = 1;
};

#endif // HALVAR_DIAGNOSTICREADER_H
