// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef ORDERS_FILEWATCH_H
#define ORDERS_FILEWATCH_H

#include <QByteArray>
#include <QMap>

#include <functional>
#include <string>

namespace orders {

/// Puts a pipe, open as long as the program runs, in place of the beeper's line: a file would tell its last
/// value only, the pipe tells each. Comes before the first controller; further calls do nothing.
void makeBeeperPipe();

/// Tells what the controller did to the instrument's files, in the order in which it did it: the beeper's
/// line, files replaced, shell commands run. Asked between two other effects, it tells what came before the
/// second one.
class FileWatch
{
public:
    /// \param home of the controller, with its final separator.
    FileWatch(const QByteArray &home, std::function<void(const std::string &)> tell);
    ~FileWatch();
    void drain();

private:
    FileWatch(const FileWatch &) = delete;
    FileWatch &operator=(const FileWatch &) = delete;
    int watch(const QByteArray &path, unsigned int mask);
    void happened(int watch, const QByteArray &name);
    void tellNewCommands();

    const std::function<void(const std::string &)> m_tell;
    const QByteArray m_commandsFile;
    qint64 m_commandsRead = 0;
    int m_descriptor;
    int m_beeper;
    int m_commands;
    QMap<int, QByteArray> m_directories;
};

} // namespace orders

#endif // ORDERS_FILEWATCH_H
