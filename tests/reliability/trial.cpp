// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include "trial.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>

#include <cerrno>

#include <sys/wait.h>
#include <unistd.h>

#include "logrecorder.h"

namespace {

constexpr unsigned SecondsPerRun = 20; // a run takes milliseconds; one that hangs ends by SIGALRM

const QString killed = QStringLiteral("killed by signal 9");

faultshim::Plan planOf(faultshim::Fault fault, int call)
{
    faultshim::Plan plan;
    plan.fault = fault;
    plan.call = call;
    return plan;
}

} // namespace

QByteArray withoutTimes(const QByteArray &content)
{
    static const QRegularExpression stamp(QStringLiteral("\\d\\d-\\d\\d-\\d{4} \\d\\d:\\d\\d:\\d\\d"));
    return QString::fromUtf8(content).replace(stamp, QStringLiteral("STAMP")).toUtf8();
}

QString inChild(const std::function<QString()> &body)
{
    int ends[2];
    if (pipe(ends) != 0)
        return QStringLiteral("no pipe");
    const pid_t child = fork();
    if (child == 0) {
        alarm(SecondsPerRun);
        const QByteArray answer = body().toUtf8();
        for (int sent = 0; sent < answer.size();) {
            const ssize_t count =
                write(ends[1], answer.constData() + sent, static_cast<size_t>(answer.size() - sent));
            if (count < 0)
                _exit(1);
            sent += static_cast<int>(count);
        }
        _exit(0);
    }
    close(ends[1]);
    QByteArray answer;
    char part[4096];
    for (ssize_t count = 0; child > 0 && (count = read(ends[0], part, sizeof part)) > 0;)
        answer.append(part, static_cast<int>(count));
    close(ends[0]);
    int status = 0;
    if (child < 0 || waitpid(child, &status, 0) != child)
        return QStringLiteral("no child");
    if (WIFSIGNALED(status))
        return QStringLiteral("killed by signal %1").arg(WTERMSIG(status));
    if (WEXITSTATUS(status) != 0)
        return QStringLiteral("ended with status %1: ").arg(WEXITSTATUS(status)) + QString::fromUtf8(answer);
    return QString::fromUtf8(answer);
}

int Trial::s_runs = 0;

Trial::Trial(Operation &operation, const QStringList &directories, Before before)
    : m_operation(operation)
    , m_state(before)
    , m_directories(directories)
    , m_earlier(found())
{
    const auto once = [this] {
        const QString complaint = m_operation.begin();
        if (complaint.isEmpty())
            m_operation.run();
        return complaint;
    };
    // Two runs, so that the file's second version is replaced and not its first.
    for (int i = 0; i < 2 && m_problem.isEmpty(); ++i)
        m_problem = inChild(once);
    if (before == Missing)
        QFile::remove(m_operation.file);
    m_files = found();
    restore(m_files);
    m_old = content();
    if (m_problem.isEmpty())
        m_problem = inChild(once);
    m_new = content();
    if (m_problem.isEmpty())
        m_problem = inChild(once);
    m_next = content();
    if (m_problem.isEmpty() && (m_new.isNull() || m_old == m_new || m_new == m_next))
        m_problem = QStringLiteral("a run does not change the file");
    restore(m_files);
    if (!m_problem.isEmpty())
        return;
    m_problem = m_operation.begin();
    faultshim::Plan plan;
    for (const QString &directory : m_directories)
        plan.directories.push_back(QFile::encodeName(directory).toStdString());
    faultshim::arm(plan);
    m_operation.run();
    m_calls = faultshim::disarm();
    restore(m_files);
}

Trial::~Trial()
{
    restore(m_earlier);
}

QByteArray Trial::content() const
{
    QFile file(m_operation.file);
    return file.open(QIODevice::ReadOnly) ? withoutTimes(file.readAll()) : QByteArray();
}

QStringList Trial::entries() const
{
    QStringList paths;
    for (const QString &directory : m_directories) {
        QDirIterator files(directory, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
        while (files.hasNext())
            paths.append(files.next());
    }
    paths.sort();
    return paths;
}

Trial::Files Trial::found() const
{
    Files contents;
    for (const QString &path : entries()) {
        QFile file(path);
        if (!file.open(QIODevice::ReadOnly))
            qFatal("Cannot read %s", qPrintable(path));
        contents.insert(path, file.readAll());
    }
    return contents;
}

void Trial::restore(const Files &files) const
{
    for (const QString &path : entries())
        QFile::remove(path);
    for (auto entry = files.cbegin(); entry != files.cend(); ++entry) {
        QFile file(entry.key());
        if (!file.open(QIODevice::WriteOnly) || file.write(entry.value()) != entry.value().size())
            qFatal("Cannot write %s", qPrintable(entry.key()));
    }
    if (m_state == Protected)
        QFile::setPermissions(m_operation.file, QFile::ReadOwner | QFile::ReadGroup);
}

/// A run under \p plan, then the verdict on it and on the run that follows when the cause is gone.
QString Trial::run(faultshim::Plan plan, const std::function<void()> &repair) const
{
    for (const QString &directory : m_directories)
        plan.directories.push_back(QFile::encodeName(directory).toStdString());
    QString complaint = m_operation.begin();
    if (!complaint.isEmpty())
        return complaint;
    LogRecorder log;
    faultshim::arm(plan);
    m_operation.run();
    const std::vector<faultshim::Event> events = faultshim::disarm();
    repair();
    complaint = judge(events, log.lines(QStringLiteral("ERROR")));
    if (!complaint.isEmpty())
        return complaint;
    if (plan.fault == faultshim::Fault::FailOnce && QFile::exists(m_operation.temporary))
        return QStringLiteral("the temporary file is not removed");
    log.clear();
    m_operation.run();
    if (!log.lines(QStringLiteral("ERROR")).isEmpty())
        return QStringLiteral("next run: ") + log.lines(QStringLiteral("ERROR")).join(QLatin1Char('\n'));
    if (content() != m_next)
        return QStringLiteral("something was lost:\n") + QString::fromUtf8(content());
    if (QFile::exists(m_operation.temporary))
        return QStringLiteral("next run: the temporary file is left");
    return m_operation.begin();
}

QString Trial::judge(const std::vector<faultshim::Event> &events, const QStringList &errors) const
{
    const QByteArray left = content();
    if (left != m_old && left != m_new)
        return QStringLiteral("neither the old nor the new file:\n") + QString::fromUtf8(left);
    bool opened = false;
    bool renamed = false;
    bool unsafe = false;
    const std::string temporary = QFile::encodeName(QDir::cleanPath(m_operation.temporary)).toStdString();
    for (const faultshim::Event &event : events) {
        if (event.kind == faultshim::Kind::Open && event.path == temporary && event.error == 0)
            opened = true;
        // Of what follows the rename, only the directory's sync can fail with a meaning.
        else if (renamed && event.kind != faultshim::Kind::Close && event.error != 0 && event.error != EINTR)
            unsafe = true;
        renamed = renamed || (event.kind == faultshim::Kind::Rename && event.error == 0);
    }
    if (renamed != (left == m_new))
        return QStringLiteral("the file does not tell whether it was renamed");
    const int expected =
        renamed ? (unsafe ? m_operation.errorLines(true) : 0) : m_operation.errorLines(opened);
    if (errors.size() != expected)
        return QStringLiteral("%1 Error lines instead of %2: ").arg(errors.size()).arg(expected)
            + errors.join(QLatin1Char('\n'));
    return QString();
}

QString Trial::survivesFault(const faultshim::Plan &plan) const
{
    ++s_runs;
    const QString complaint = inChild([&] { return run(plan, [] {}); });
    restore(m_files);
    return complaint;
}

QString Trial::survivesCause(const std::function<void()> &cause, const std::function<void()> &repair) const
{
    faultshim::Plan plan = planOf(faultshim::Fault::Act, 1);
    plan.action = cause;
    ++s_runs;
    const QString complaint = inChild([&] { return run(plan, repair); });
    repair();
    restore(m_files);
    return complaint;
}

QString Trial::survivesVanishing(int call) const
{
    const QString directory = QFileInfo(m_operation.file).path();
    const auto move = [](const QString &from, const QString &to) {
        if (!QDir().rename(from, to))
            qFatal("Cannot rename %s", qPrintable(from));
    };
    faultshim::Plan plan = planOf(faultshim::Fault::Act, call);
    plan.action = [&] { move(directory, directory + QStringLiteral(".gone")); };
    ++s_runs;
    const QString complaint =
        inChild([&] { return run(plan, [&] { move(directory + QStringLiteral(".gone"), directory); }); });
    restore(m_files);
    return complaint;
}

QString Trial::survivesKill(faultshim::Fault fault, int call) const
{
    ++s_runs;
    QString complaint = inChild([&] { return run(planOf(fault, call), [] {}); });
    if (complaint == killed) {
        complaint.clear();
        const QByteArray left = content();
        if (left != m_old && left != m_new)
            complaint = QStringLiteral("neither the old nor the new file:\n") + QString::fromUtf8(left);
        else
            complaint = nextRun(left);
    } else {
        complaint.prepend(QStringLiteral("not killed; "));
    }
    restore(m_files);
    return complaint;
}

QString Trial::nextRun(const QByteArray &before) const
{
    const QString complaint = inChild([&] {
        const QString wrong = m_operation.begin();
        if (wrong.isEmpty())
            m_operation.run();
        return wrong;
    });
    if (!complaint.isEmpty())
        return QStringLiteral("after the restart: ") + complaint;
    if (content() != (before == m_old ? m_new : m_next))
        return QStringLiteral("after the restart the file is not what it should be:\n")
            + QString::fromUtf8(content());
    for (const QString &path : entries()) {
        if (!m_files.contains(path) && path != m_operation.file && path != QDir::cleanPath(m_operation.file))
            return QStringLiteral("left behind: ") + path;
    }
    return QString();
}
