// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include "sysfiles.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <QsLog.h>

namespace simulator {

namespace {

const QString Gauge = QStringLiteral("/power_supply/bq27510-0/voltage_now");
const QString Export = QStringLiteral("/gpio/export");
constexpr qint64 LongestRead = 4096;
constexpr int HighestLine = 1023;

/// As a driver's file changes: in place, so that a reader that has it open sees the new content.
bool write(const QString &path, const QByteArray &content)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(content) == content.size() && file.flush();
}

QByteArray read(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.read(LongestRead) : QByteArray();
}

} // namespace

SysFiles::SysFiles(const QString &root, QObject *parent)
    : QObject(parent)
    , m_root(root)
{
    connect(&m_watcher, &QFileSystemWatcher::fileChanged, this, [this](const QString &path) {
        tell(path);
        if (path == m_root + Export)
            readExport();
        else
            readLevel();
    });
}

bool SysFiles::start(QString &error)
{
    QDir().mkpath(QFileInfo(m_root + Gauge).path());
    QDir().mkpath(QFileInfo(m_root + Export).path());
    if (!QFile::exists(m_root + Export))
        write(m_root + Export, QByteArray());
    if (!QFileInfo(m_root + Export).isWritable() || !setBattery(m_battery)) {
        error = QStringLiteral("the files below %1 cannot be written").arg(m_root);
        return false;
    }
    if (!m_watcher.addPath(m_root + Export)) {
        error = QStringLiteral("%1 cannot be watched").arg(m_root + Export);
        return false;
    }
    readExport();
    m_contents.insert(m_root + Export, read(m_root + Export));
    const QString value = linePath(BeeperLine, "value");
    watch(value);
    watch(linePath(BeeperLine, "direction"));
    m_level = read(value).startsWith('1') ? 1 : 0;
    return true;
}

bool SysFiles::setBattery(const QJsonValue &value)
{
    m_battery = value;
    const QString path = m_root + Gauge;
    if (value.toString() == QLatin1String("missing"))
        return !QFile::exists(path) || QFile::remove(path);
    const QByteArray line = value.isString() ? value.toString().toUtf8() : QByteArray::number(value.toInt());
    // In place but in one piece: a reader between emptying and writing would see a battery without charge.
    QFile file(path);
    if (!file.open(QIODevice::ReadWrite))
        return false;
    const QByteArray content = line + '\n';
    return file.write(content) == content.size() && file.flush() && file.resize(content.size());
}

QString SysFiles::linePath(int line, const char *file) const
{
    return QStringLiteral("%1/gpio/gpio%2/%3").arg(m_root).arg(line).arg(QLatin1String(file));
}

void SysFiles::readExport()
{
    // What was written over a longer text, with or without a zero byte at its end: the number in front
    // counts.
    QByteArray text = read(m_root + Export);
    int digits = 0;
    while (digits < text.size() && text.at(digits) >= '0' && text.at(digits) <= '9')
        ++digits;
    bool isNumber = false;
    const int line = text.left(digits).toInt(&isNumber);
    if (isNumber && line <= HighestLine)
        makeLine(line);
}

void SysFiles::makeLine(int line)
{
    const QString value = linePath(line, "value");
    if (!QFile::exists(value)) {
        QDir().mkpath(QFileInfo(value).path());
        if (!write(linePath(line, "direction"), "in\n") || !write(value, "0\n")) {
            QLOG_WARN() << "the files of line" << line << "cannot be written";
        }
    }
    if (line == BeeperLine) {
        watch(value);
        watch(linePath(line, "direction"));
    }
}

void SysFiles::watch(const QString &path)
{
    if (!QFile::exists(path) || m_watcher.files().contains(path))
        return;
    m_contents.insert(path, read(path));
    m_watcher.addPath(path);
}

void SysFiles::tell(const QString &path)
{
    // Emptied on the way to its next content: that comes with a change of its own.
    const QByteArray content = read(path);
    if (content.isEmpty() || content == m_contents.value(path))
        return;
    m_contents.insert(path, content);
    emit lineWritten(path.mid(m_root.size() + static_cast<int>(qstrlen("/gpio/"))),
                     QString::fromUtf8(content.constData()).trimmed());
}

void SysFiles::readLevel()
{
    const int level = read(linePath(BeeperLine, "value")).startsWith('1') ? 1 : 0;
    if (level == m_level)
        return;
    m_level = level;
    m_beeps += level;
    emit levelChanged(level);
}

} // namespace simulator
