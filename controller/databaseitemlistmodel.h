// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef HALVAR_DATABASEITEMLISTMODEL_H
#define HALVAR_DATABASEITEMLISTMODEL_H

#include <QHash>
#include <QString>

#include "databaseitem.h"
#include "halvar-export.h"
#include "qqmlobjectlistmodel.h"

/// One reference list, in the order in which its items were added. Titles may occur more than once:
/// whoever must not add a title twice asks activateIfTitleExist() first.
class HALVAR_EXPORT DatabaseItemListModel : public QQmlObjectListModel<DatabaseItem>
{
    Q_OBJECT

public:
    explicit DatabaseItemListModel(QObject *parent = nullptr);

    /// Image of the first item with exactly this title, empty when there is none.
    Q_INVOKABLE QString findImageFromTitle(const QString &title) const;
    /// Activates the first item with exactly this title; false when there is none.
    bool activateIfTitleExist(const QString &title);
    /// Home folder, ending in a separator, of the items that are added from now on.
    void setHome(const QString &home) { m_home = home; }
    QString home() const { return m_home; }

public slots:
    /// Adds an activated entry that is not part of the delivered database.
    /// \param image file name in the folder of \p type, or a URL; see DatabaseItem::setImage().
    /// \param index row of the new entry, -1 for the end.
    void add(const QString &title, const QString &image, const QString &type = QString(), int index = -1);

private:
    DatabaseItem *findTitle(const QString &title) const;
    void forgetTitles() { m_titlesKnown = false; }
    bool areTitlesKnown() const { return m_titlesKnown && m_titlesVersion == DatabaseItem::titlesVersion(); }
    void noteTitles(int first, int last) const;

    QString m_home;
    // The first item of each title, while the rows are as they were and titlesVersion() is this one. Asking
    // the version and not dataChanged: bindings to an item's title look titles up before the list hears of
    // the change.
    mutable QHash<QString, DatabaseItem *> m_byTitle;
    mutable bool m_titlesKnown = false;
    mutable quint64 m_titlesVersion = 0;
};

#endif // HALVAR_DATABASEITEMLISTMODEL_H
