// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include "filewatch.h"

#include <QFile>
#include <QtGlobal>

#include <fcntl.h>
#include <sys/inotify.h>
#include <sys/stat.h>
#include <unistd.h>

namespace orders {

namespace {
const QByteArray BeeperLine = QByteArrayLiteral("/sys/class/gpio/gpio79/value");

int beeperPipe = -1;
} // namespace

void makeBeeperPipe()
{
    if (beeperPipe >= 0)
        return;
    ::unlink(BeeperLine.constData());
    if (::mkfifo(BeeperLine.constData(), 0644) != 0)
        qFatal("Cannot make a pipe of the beeper's line");
    beeperPipe = ::open(BeeperLine.constData(), O_RDWR | O_NONBLOCK | O_CLOEXEC);
    if (beeperPipe < 0)
        qFatal("Cannot open the beeper's line");
}

FileWatch::FileWatch(const QByteArray &home, std::function<void(const std::string &)> tell)
    : m_tell(std::move(tell))
    , m_commandsFile(qgetenv("HALVAR_INSTRUMENT_COMMANDS"))
    , m_commandsRead(QFile(QString::fromLocal8Bit(m_commandsFile)).size())
    , m_descriptor(::inotify_init1(IN_NONBLOCK | IN_CLOEXEC))
    // With the opening between them, the kernel does not make one of two equal events in a row.
    , m_beeper(watch(BeeperLine, IN_OPEN | IN_CLOSE_WRITE))
    , m_commands(watch(m_commandsFile, IN_CLOSE_WRITE))
{
    char before[64];
    while (::read(beeperPipe, before, sizeof before) > 0) { }
    m_directories.insert(watch(home + "files", IN_MOVED_TO), "files/");
    m_directories.insert(watch(home + "other/files", IN_MOVED_TO), "other/files/");
    m_directories.insert(watch(home + "shock", IN_MOVED_TO), "shock/");
    m_directories.insert(watch("/data/lambrik", IN_MOVED_TO), "lambrik/");
}

FileWatch::~FileWatch()
{
    ::close(m_descriptor);
}

int FileWatch::watch(const QByteArray &path, unsigned int mask)
{
    const int ret = ::inotify_add_watch(m_descriptor, path.constData(), mask);
    if (ret < 0)
        qFatal("Cannot watch %s", path.constData());
    return ret;
}

void FileWatch::drain()
{
    alignas(inotify_event) char buffer[4096];
    for (;;) {
        const ssize_t size = ::read(m_descriptor, buffer, sizeof buffer);
        if (size <= 0)
            return;
        for (ssize_t offset = 0; offset < size;) {
            const auto *event = reinterpret_cast<const inotify_event *>(buffer + offset);
            if (!(event->mask & IN_OPEN))
                happened(event->wd, event->len ? QByteArray(event->name) : QByteArray());
            offset += ssize_t(sizeof(inotify_event) + event->len);
        }
    }
}

void FileWatch::happened(int watch, const QByteArray &name)
{
    if (watch == m_beeper) {
        char value[2] = {'?', '?'}; // with the zero byte behind it
        if (::read(beeperPipe, value, sizeof value) != sizeof value)
            qFatal("The beeper's line was closed without a value");
        m_tell(value[0] == '0' ? "beeper off" : "beeper on");
    } else if (watch == m_commands) {
        tellNewCommands();
    } else {
        m_tell("file " + m_directories.value(watch).toStdString() + name.toStdString());
    }
}

void FileWatch::tellNewCommands()
{
    QFile record(QString::fromLocal8Bit(m_commandsFile));
    if (!record.open(QIODevice::ReadOnly) || !record.seek(m_commandsRead))
        qFatal("Cannot read the record of commands");
    while (!record.atEnd())
        m_tell("shell " + record.readLine().trimmed().toStdString());
    m_commandsRead = record.pos();
}

} // namespace orders
