// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef HALVAR_DATABASE_H
#define HALVAR_DATABASE_H

#include <QObject>
#include <QString>
#include <QXmlStreamWriter>

#include "databaseitemlistmodel.h"
#include "halvar-export.h"
#include "xmlreader.h"

/// The reference lists offered to the operator, and their two files under the home directory:
/// database/database_unit.xml (what is measured) and database/database_diagnostic.xml (reasons and states,
/// never written). Made and read by the application before the controller; owns the lists, which the
/// application hands to QML. Interface thread only.
class HALVAR_EXPORT Database : public QObject
{
    Q_OBJECT

public:
    explicit Database(QObject *parent = nullptr);
    ~Database() override;

    /// write(), unless the unit file still holds what this object last wrote there. For many writes in a
    /// row: it repeats a failed write each time, but its Error line only when the reason differs.
    bool writeIfChanged() const;

public slots:
    /// Adds the items of both files to the lists, which are not cleared first.
    /// \param home directory of the instrument's files, ending in a separator.
    /// \return true when both files were opened and read without an XML error. A unit file that could not be
    /// read to its end is kept as database_unit.xml.damaged before write() replaces it.
    bool read(const QString &home);
    /// Writes the unit file from the four unit lists, replacing it whole. Const, as the lists stay as they
    /// are: the controller, which only reads the lists' owner, saves what a diagnostic has added to them.
    /// \return false, without a message, when the file cannot be opened; false and one Error line when
    /// writing fails. Then the old file is untouched.
    bool write() const;

public:
    // In the files: locaux, elements, substrats, revetements.
    DatabaseItemListModel *m_LocalItemsListModel;
    DatabaseItemListModel *m_ElementItemsListModel;
    DatabaseItemListModel *m_SubstratItemsListModel;
    DatabaseItemListModel *m_RevetementItemsListModel;
    // In the files: non_visite, non_mesure, etat_usage, etat_degrade.
    DatabaseItemListModel *m_NonVisiteItemsListModel;
    DatabaseItemListModel *m_NonMesureItemsListModel;
    DatabaseItemListModel *m_EtatUsageItemsListModel;
    DatabaseItemListModel *m_EtatDegradeItemsListModel;

private:
    bool readFile(const QString &name, const QString &root);
    void readItems();
    void readItem();
    void writeItems(const QString &section, const DatabaseItemListModel *items) const;
    void writeItem(const DatabaseItem *item) const;
    bool writeUnitFile() const;
    QString unitPath() const;
    QByteArray unitDocument() const;
    void watch(const DatabaseItemListModel *list);

    QString m_home;
    halvar::XmlReader m_XmlStreamReader;
    mutable QXmlStreamWriter m_XmlStreamWriter; // composes in memory only
    QString m_sCurrentItemType;
    DatabaseItemListModel *m_databaseItemsListModel = nullptr;
    quint64 m_revision = 1; ///< grows with every change of what the unit file holds
    mutable quint64 m_writtenRevision = 0; ///< what the last successful write left, 0 for nothing
    mutable bool m_unread = false; ///< the unit file may hold more than was read
    mutable QString m_reportedFailure; ///< why the last writes failed, empty when they did not
};

#endif // HALVAR_DATABASE_H
