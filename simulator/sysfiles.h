// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef SIMULATOR_SYSFILES_H
#define SIMULATOR_SYSFILES_H

#include <QFileSystemWatcher>
#include <QHash>
#include <QJsonValue>
#include <QObject>

namespace simulator {

/// The files of the kernel's drivers, below a directory in the place of /sys/class: the battery gauge's, and
/// the GPIO lines', of which the beeper's is watched.
class SysFiles : public QObject
{
    Q_OBJECT
public:
    static constexpr int BeeperLine = 79;

    explicit SysFiles(const QString &root, QObject *parent = nullptr);

    /// False, with a reason in \p error, when the files cannot be kept here.
    bool start(QString &error);

    /// µV, "missing", or any other text; a number that is missing is as a line without digits.
    bool setBattery(const QJsonValue &value);
    QJsonValue battery() const { return m_battery; }

    int level() const { return m_level; }
    /// How many times the beeper was switched on.
    int beeps() const { return m_beeps; }

signals:
    void levelChanged(int level);
    /// \p file of the drivers ("export", "gpio79/direction", "gpio79/value") holds another \p content now.
    void lineWritten(const QString &file, const QString &content);

private:
    QString linePath(int line, const char *file) const;
    void readExport();
    void makeLine(int line);
    void readLevel();
    void watch(const QString &path);
    void tell(const QString &path);

    const QString m_root;
    QFileSystemWatcher m_watcher;
    QHash<QString, QByteArray> m_contents; ///< what each watched file held last
    QJsonValue m_battery = 4050000;
    int m_level = 0;
    int m_beeps = 0;
};

} // namespace simulator

#endif // SIMULATOR_SYSFILES_H
