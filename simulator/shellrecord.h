// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef SIMULATOR_SHELLRECORD_H
#define SIMULATOR_SHELLRECORD_H

#include <QByteArray>
#include <QFileSystemWatcher>
#include <QObject>

namespace simulator {

/// The record that the stand-ins of the shell commands append their lines to, watched.
class ShellRecord : public QObject
{
    Q_OBJECT
public:
    /// \param path of the record; empty when there is none.
    explicit ShellRecord(const QString &path, QObject *parent = nullptr);

    /// What was called before is left alone. False, with a reason in \p error, when the record cannot be
    /// watched.
    bool start(QString &error);

signals:
    /// \p line is the command's name and its arguments.
    void called(const QString &line);

private:
    void read();

    const QString m_path;
    QFileSystemWatcher m_watcher;
    qint64 m_position = 0;
    QByteArray m_begun; ///< of a line whose end has not been written yet
};

} // namespace simulator

#endif // SIMULATOR_SHELLRECORD_H
