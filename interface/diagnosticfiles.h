// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef INTERFACE_DIAGNOSTICFILES_H
#define INTERFACE_DIAGNOSTICFILES_H

#include <QAbstractListModel>
#include <QDateTime>
#include <QFileSystemWatcher>
#include <QVector>

/// The diagnostics in home/files/, the newest first, each with what its own content tells of it.
///
/// A damaged file is listed like any other, with the reason in the role "problem"; so are the copies that the
/// library keeps of damaged files before it replaces them. While it is shown, the list follows the directory
/// by itself; refresh() does so at once.
class DiagnosticFiles : public QAbstractListModel
{
    Q_OBJECT
    Q_PROPERTY(int count READ count NOTIFY changed)
    /// Whether the list follows the directory. Each save of a large diagnostic would be read back otherwise.
    Q_PROPERTY(bool following READ isFollowing WRITE setFollowing NOTIFY followingChanged)
    /// Bytes free for this user where the files are; -1 when it cannot be told.
    Q_PROPERTY(double freeBytes READ freeBytes NOTIFY changed)

public:
    enum Role {
        NameRole = Qt::UserRole + 1, ///< of the diagnostic: the file's name without ".xml"
        PathRole,
        PlaceRole,
        UnitsRole, ///< how many there are
        SizeRole, ///< bytes
        ModifiedRole, ///< date and time
        DamagedRole,
        ProblemRole ///< where it ends or cannot be read; empty for an intact file
    };
    Q_ENUM(Role)

    /// Empty until refresh(). \param home ends with a separator.
    explicit DiagnosticFiles(const QString &home, QObject *parent = nullptr);

    int count() const { return int(m_files.size()); }
    double freeBytes() const { return m_freeBytes; }

    bool isFollowing() const { return m_following; }
    /// Refreshes when it begins.
    void setFollowing(bool following);

    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

    /// Where a diagnostic of this name is kept.
    Q_INVOKABLE QString pathOf(const QString &name) const;
    /// Whether a diagnostic of this name is there now.
    Q_INVOKABLE bool contains(const QString &name) const;
    /// Whether a listed file is still there now.
    Q_INVOKABLE bool exists(const QString &path) const;
    /// Tells one state of a diagnostic's file from another: it is different after each save that succeeded,
    /// also when the content is the same. Empty when there is no file.
    Q_INVOKABLE QString stampOf(const QString &name) const;
    /// Under which name the diagnostic in one of the listed files is to be saved, whatever name its content
    /// gives: that of the file, so that it replaces no other; for a kept copy of a damaged file a name that
    /// is still free.
    Q_INVOKABLE QString nameToSave(const QString &path) const;

public slots:
    void refresh();

signals:
    void changed();
    void followingChanged();

private:
    struct Entry
    {
        QString path;
        QString name;
        QString place;
        int units = 0;
        qint64 size = 0;
        QDateTime modified;
        QString problem;

        bool operator!=(const Entry &other) const;
    };
    static Entry read(const QString &path);
    /// Row by row, so that a view stays where it is.
    void become(const QVector<Entry> &files);

    const QString m_directory;
    QVector<Entry> m_files;
    double m_freeBytes = -1;
    bool m_following = false;
    QFileSystemWatcher m_watcher;
};

#endif // INTERFACE_DIAGNOSTICFILES_H
