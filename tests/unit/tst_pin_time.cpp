// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
//
// A wrong code takes the same time wherever it is wrong, counted in instructions of the processor.
#include <QTest>

#include <csignal>

#include <sys/ptrace.h>
#include <sys/wait.h>
#include <unistd.h>

#include "pin.h"

namespace {

#if defined(__x86_64__) || defined(__aarch64__)
constexpr bool CountsInstructions = true;
#else
constexpr bool CountsInstructions = false;
#endif

void enter(PIN &pin, const char *code)
{
    pin.clearDigits();
    for (const char *digit = code; *digit; ++digit)
        pin.enterDigit(QString(QLatin1Char(*digit)));
}

/// Stops here when traced.
void mark()
{
    raise(SIGSTOP);
}

/// The instructions between both marks of \p child; -1 when it ends before the second.
long instructionsBetweenMarks(pid_t child)
{
    int status = 0;
    if (waitpid(child, &status, 0) != child || !WIFSTOPPED(status))
        return -1;
    for (long count = 0;; ++count) {
        if (ptrace(PTRACE_SINGLESTEP, child, nullptr, nullptr) != 0 || waitpid(child, &status, 0) != child
            || !WIFSTOPPED(status))
            return -1;
        if (WSTOPSIG(status) == SIGSTOP)
            return count;
    }
}

/// How many instructions it takes to find \p code wrong, when the right one is 12345.
long instructionsFor(const char *code)
{
    const pid_t child = fork();
    if (child == 0) {
        PIN pin;
        pin.setSecret(12345);
        // What the first call has to look up is looked up.
        enter(pin, code);
        pin.checkSecret();
        enter(pin, code);
        if (ptrace(PTRACE_TRACEME, 0, nullptr, nullptr) != 0)
            _exit(1);
        mark();
        pin.checkSecret();
        mark();
        _exit(0);
    }
    const long count = instructionsBetweenMarks(child);
    kill(child, SIGKILL);
    waitpid(child, nullptr, 0);
    return count;
}

} // namespace

class TstPinTime : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        if (!CountsInstructions)
            QSKIP("This processor does not run single instructions.");
    }

    void wrongCode_takesTheSameTimeWhereverItIsWrong_data()
    {
        QTest::addColumn<QByteArray>("code");
        QTest::newRow("second digit") << QByteArray("19345");
        QTest::newRow("third digit") << QByteArray("12945");
        QTest::newRow("fourth digit") << QByteArray("12395");
        QTest::newRow("last digit") << QByteArray("12349");
        QTest::newRow("all digits") << QByteArray("98761");
        QTest::newRow("right digits in another order") << QByteArray("54321");
    }
    void wrongCode_takesTheSameTimeWhereverItIsWrong()
    {
        QFETCH(QByteArray, code);
        const long first = instructionsFor("92345");
        QVERIFY2(first > 50, qPrintable(QString::number(first)));
        QCOMPARE(instructionsFor(code.constData()), first);
    }
};

QTEST_GUILESS_MAIN(TstPinTime)
#include "tst_pin_time.moc"
