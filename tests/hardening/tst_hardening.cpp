// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
//
// The protections at work: what would be a way in ends the process instead. Each fault is made on purpose, in
// a child.
#include <QTest>

#include <csignal>
#include <cstring>

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

/// The signal that ended \p body in a child process; 0 when none did.
template <typename Body>
int signalOf(Body body)
{
    const pid_t child = fork();
    if (child == 0) {
        const rlimit none = {0, 0};
        setrlimit(RLIMIT_CORE, &none);
        std::signal(SIGABRT, SIG_DFL);
        std::signal(SIGSEGV, SIG_DFL);
        close(STDERR_FILENO);
        body();
        _exit(0);
    }
    int status = 0;
    waitpid(child, &status, 0);
    return WIFSIGNALED(status) ? WTERMSIG(status) : 0;
}

/// Not known to the compiler.
size_t hidden(size_t value)
{
    volatile size_t kept = value;
    return kept;
}

__attribute__((noinline)) void copyInto(char *buffer, size_t length)
{
    char small[8];
    std::memset(small, 'x', hidden(sizeof small));
    std::memcpy(small, buffer, length); // checked: the compiler knows how much room there is
    buffer[0] = small[hidden(0)];
}

__attribute__((noinline)) void overwriteFrame(size_t length)
{
    volatile char small[8];
    // Byte by byte, where no library function can check anything.
    volatile char *const place = small;
    for (size_t i = 0; i < length; ++i)
        place[i] = 'x';
}

} // namespace

class TstHardening : public QObject
{
    Q_OBJECT

private slots:
    void copyBeyondTheBuffer_endsTheProcess()
    {
        char text[64] = "text";
        QCOMPARE(signalOf([&] { copyInto(text, hidden(8)); }), 0);
        QCOMPARE(signalOf([&] { copyInto(text, hidden(12)); }), SIGABRT);
    }

    void writingOverTheFrame_endsTheProcess()
    {
        QCOMPARE(signalOf([] { overwriteFrame(hidden(8)); }), 0);
        QCOMPARE(signalOf([] { overwriteFrame(hidden(48)); }), SIGABRT);
    }
};

QTEST_APPLESS_MAIN(TstHardening)
#include "tst_hardening.moc"
