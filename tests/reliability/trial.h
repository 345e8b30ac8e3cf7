// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef TRIAL_H
#define TRIAL_H

#include <QByteArray>
#include <QMap>
#include <QString>
#include <QStringList>

#include <functional>
#include <vector>

#include "faultshim.h"
#include "operations.h"

/// Runs \p body in a child process. \return what it returned, or how it ended when it did not end by itself:
/// "killed by signal 9". One that hangs is killed by SIGALRM, 14.
QString inChild(const std::function<QString()> &body);

/// \p content with every time stamp replaced by the same word.
QByteArray withoutTimes(const QByteArray &content);

/// One operation from one state of the disk, again and again, with one fault each time.
///
/// Every run is a process of its own, on files that are as they were at the beginning.
class Trial
{
public:
    /// How a run finds the file.
    enum Before {
        Exists,
        Missing,
        Protected, ///< exists, and may not be written
    };

    Trial(Operation &operation, const QStringList &directories, Before before);
    /// Leaves the files as they were before.
    ~Trial();

    /// Why there can be no trial, empty when there can.
    QString problem() const { return m_problem; }
    /// The calls of a run without a fault.
    const std::vector<faultshim::Event> &calls() const { return m_calls; }

    /// The process is killed by \p fault at \p call: the file is then the old or the new one, complete; the
    /// instrument starts, reads it, and its next run leaves the file that it should and nothing else. \return
    /// what is wrong, empty when nothing is.
    QString survivesKill(faultshim::Fault fault, int call) const;
    /// \p plan comes true while the operation runs: afterwards the file is the old or the new one; the log
    /// has the Error lines that it should; the next run in the same process loses nothing and leaves nothing
    /// behind.
    QString survivesFault(const faultshim::Plan &plan) const;
    /// Likewise when \a cause comes before the operation's first call, and \a repair after its last.
    QString survivesCause(const std::function<void()> &cause, const std::function<void()> &repair) const;
    /// Likewise when the file's directory is away from \p call on, until the run is over.
    QString survivesVanishing(int call) const;

    /// How many runs with a fault there were so far, in all trials.
    static int runs() { return s_runs; }

    /// What a run finds: path and content of each file.
    const QMap<QString, QByteArray> &files() const { return m_files; }
    /// The operation's file before and after a run, its time stamps made equal; null when there is none.
    const QByteArray &oldContent() const { return m_old; }
    const QByteArray &newContent() const { return m_new; }

private:
    using Files = QMap<QString, QByteArray>; ///< path and content

    QString run(faultshim::Plan plan, const std::function<void()> &repair) const;
    QString judge(const std::vector<faultshim::Event> &events, const QStringList &errors) const;
    QString nextRun(const QByteArray &before) const;
    QStringList entries() const;
    Files found() const;
    QByteArray content() const;
    void restore(const Files &files) const;

    static int s_runs;
    Operation &m_operation;
    const Before m_state;
    const QStringList m_directories;
    const Files m_earlier; ///< as they were before the trial
    Files m_files; ///< as each run finds them
    QString m_problem;
    std::vector<faultshim::Event> m_calls;
    QByteArray m_old;
    QByteArray m_new; ///< after one run
    QByteArray m_next; ///< after two
};

#endif // TRIAL_H
