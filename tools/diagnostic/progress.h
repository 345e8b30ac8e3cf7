// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef DIAGNOSTIC_PROGRESS_H
#define DIAGNOSTIC_PROGRESS_H

#include <QString>

#include <cstdio>

/// Says what is being done: one line a step, and on a terminal a line that changes while a step runs.
class Progress
{
public:
    /// \param stream standard output; whether it is a terminal decides about the changing line.
    explicit Progress(FILE *stream);
    Progress(FILE *stream, bool isTerminal, int width);
    ~Progress();

    void setTotal(int steps) { m_total = steps; }
    void begin(const QString &step);
    /// What the step is at; shown on a terminal only.
    void detail(const QString &text);
    /// The step is done: its line, with \p result when there is one.
    void done(const QString &result = QString());
    /// A line between the steps.
    void note(const QString &text);
    /// Removes the changing line, for whoever writes next.
    void clear();

private:
    Q_DISABLE_COPY(Progress)
    QString head() const;
    void write(const QString &text);

    FILE *const m_stream;
    const bool m_terminal;
    const int m_width;
    int m_total = 0;
    int m_number = 0;
    QString m_step;
    bool m_shown = false;
};

#endif // DIAGNOSTIC_PROGRESS_H
