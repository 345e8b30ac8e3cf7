// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef HALVAR_SHOCKLISTMODEL_H
#define HALVAR_SHOCKLISTMODEL_H

#include <QString>

#include "halvar-export.h"
#include "qqmlobjectlistmodel.h"
#include "shock.h"

class QFile;

/// The history of shocks, oldest first, and its file shock/shock.xml. It only grows.
class HALVAR_EXPORT ShockListModel : public QQmlObjectListModel<Shock>
{
    Q_OBJECT

public:
    /// Reads the history. \param home directory of the instrument's files, ending in a separator.
    explicit ShockListModel(const QString &home, QObject *parent = nullptr);

    /// Adds the shocks of the file; silent when it cannot be opened or holds something else. A file that
    /// could not be read to its end is kept as shock.xml.damaged before write() replaces it.
    void read();
    /// Saves the whole list, replacing the file whole. Silent when it cannot be opened; one Error line when
    /// writing fails. Then the old file is untouched.
    void write();

private:
    QFile *m_file;
    bool m_unread = false; ///< the file may hold more than was read
};

#endif // HALVAR_SHOCKLISTMODEL_H
