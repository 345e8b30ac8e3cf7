// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include "progress.h"

#include <sys/ioctl.h>
#include <unistd.h>

namespace {

int widthOf(FILE *stream)
{
    winsize size{};
    if (ioctl(fileno(stream), TIOCGWINSZ, &size) == 0 && size.ws_col > 0)
        return size.ws_col;
    return 80;
}

} // namespace

Progress::Progress(FILE *stream)
    : Progress(stream, isatty(fileno(stream)) == 1, widthOf(stream))
{ }

Progress::Progress(FILE *stream, bool isTerminal, int width)
    : m_stream(stream)
    , m_terminal(isTerminal)
    , m_width(width)
{ }

Progress::~Progress()
{
    clear();
}

QString Progress::head() const
{
    const int digits = int(QString::number(m_total).size());
    return QStringLiteral("[%1/%2] %3").arg(m_number, digits).arg(m_total).arg(m_step);
}

void Progress::begin(const QString &step)
{
    ++m_number;
    m_step = step;
    detail(QString());
}

void Progress::detail(const QString &text)
{
    if (!m_terminal)
        return;
    QString line = text.isEmpty() ? head() : head() + QStringLiteral(": ") + text;
    // A line that wraps could not be overwritten.
    if (line.size() >= m_width)
        line = line.left(m_width - 2) + QStringLiteral("…");
    write(QStringLiteral("\r\033[K") + line);
    m_shown = true;
}

void Progress::done(const QString &result)
{
    clear();
    write((result.isEmpty() ? head() : head() + QStringLiteral(": ") + result) + QLatin1Char('\n'));
}

void Progress::note(const QString &text)
{
    clear();
    write(text + QLatin1Char('\n'));
}

void Progress::clear()
{
    if (!m_shown)
        return;
    write(QStringLiteral("\r\033[K"));
    m_shown = false;
}

void Progress::write(const QString &text)
{
    const QByteArray bytes = text.toUtf8();
    fwrite(bytes.constData(), 1, size_t(bytes.size()), m_stream);
    fflush(m_stream);
}
