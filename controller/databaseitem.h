// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef HALVAR_DATABASEITEM_H
#define HALVAR_DATABASEITEM_H

#include <QObject>
#include <QString>

#include "halvar-export.h"

/// One label of a reference list: a room, an element, a reason ...
class HALVAR_EXPORT DatabaseItem : public QObject
{
    Q_OBJECT
    /// Offered to the user.
    Q_PROPERTY(bool activated READ activated WRITE setActivated NOTIFY activatedChanged)
    /// Picture as a "file:" or "qrc:" URL, or empty.
    Q_PROPERTY(QString image READ image WRITE setImage NOTIFY imageChanged)
    Q_PROPERTY(QString title READ title WRITE setTitle NOTIFY titleChanged)
    /// Name of the list that the item belongs to, and of its pictures' folder.
    Q_PROPERTY(QString type READ type WRITE setType NOTIFY typeChanged)
    /// Part of the delivered database, as opposed to an entry added while working.
    Q_PROPERTY(bool original READ original WRITE setOriginal NOTIFY originalChanged)

public:
    /// Activated, original and otherwise empty.
    /// \param home directory of the instrument's files, ending in a separator.
    explicit DatabaseItem(const QString &home, QObject *parent = nullptr);
    ~DatabaseItem() override;

    bool activated() const { return m_activated; }
    QString image() const { return m_image; }
    QString title() const { return m_title; }
    QString type() const { return m_type; }
    bool original() const { return m_original; }

    void setActivated(bool activated);
    /// A bare file name is looked up in home/database/type/, so the type is set first; it becomes the
    /// "file:" URL of that file, or empty when there is no such file. A "file:" or "qrc:" URL stands.
    void setImage(const QString &image);
    void setTitle(const QString &title);
    void setType(const QString &type);
    void setOriginal(bool original);

    /// Another number whenever an item that may be in a list got another title or ended. It changes before
    /// any signal tells so: whoever keeps titles and items together knows then that they are out of date.
    static quint64 titlesVersion();

signals:
    void activatedChanged();
    void imageChanged();
    void titleChanged();
    void typeChanged();
    void originalChanged();

private:
    void noteTitleChange() const;

    QString m_home;
    bool m_activated = true;
    QString m_image;
    QString m_title;
    QString m_type;
    bool m_original = true;
};

#endif // HALVAR_DATABASEITEM_H
