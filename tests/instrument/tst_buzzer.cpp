// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryFile>
#include <QTest>

#include <array>
#include <fcntl.h>
#include <limits>
#include <memory>
#include <sys/stat.h>
#include <unistd.h>

#include "buzzer.h"
#include "metatext.h"

namespace {

const QString gpio = QStringLiteral("/sys/class/gpio/");
const QString line79 = gpio + QStringLiteral("gpio79/");

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(cannot be opened)");
}

void replace(const QString &path, const QByteArray &content)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
    QCOMPARE(file.write(content), qint64(content.size()));
}

/// What goes to the standard error output while this object lives.
class ErrorOutput
{
public:
    ErrorOutput()
        : m_previous(::dup(STDERR_FILENO))
    {
        m_opened = m_file.open() && ::dup2(m_file.handle(), STDERR_FILENO) >= 0;
    }
    ~ErrorOutput() { restore(); }
    /// Ends the recording.
    QByteArray text()
    {
        restore();
        return m_opened ? contentOf(m_file.fileName()) : QByteArray("(not recorded)");
    }

private:
    Q_DISABLE_COPY(ErrorOutput)
    void restore()
    {
        if (m_previous < 0)
            return;
        ::dup2(m_previous, STDERR_FILENO);
        ::close(m_previous);
        m_previous = -1;
    }
    QTemporaryFile m_file;
    int m_previous;
    bool m_opened = false;
};

/// A pipe in a file's place: shows every byte that was written, in order, however often the file was opened.
class PipeInPlace
{
public:
    explicit PipeInPlace(const QString &path)
        : m_path(path)
        , m_before(contentOf(path))
    {
        QFile::remove(m_path);
        if (::mkfifo(qPrintable(m_path), 0600) == 0)
            m_fd = ::open(qPrintable(m_path), O_RDWR | O_NONBLOCK);
    }
    ~PipeInPlace()
    {
        ::close(m_fd);
        QFile::remove(m_path);
        replace(m_path, m_before);
    }
    QByteArray bytes() const
    {
        std::array<char, 4096> buffer{};
        const ssize_t count = ::read(m_fd, buffer.data(), buffer.size());
        return count > 0 ? QByteArray(buffer.data(), int(count)) : QByteArray();
    }

private:
    Q_DISABLE_COPY(PipeInPlace)
    const QString m_path;
    const QByteArray m_before;
    int m_fd = -1;
};

} // namespace

class TstBuzzer : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<Buzzer> m_buzzer;

private slots:
    void initTestCase()
    {
        QVERIFY2(qEnvironmentVariableIsSet("HALVAR_INSTRUMENT"), "run it in simulator/instrument");
    }

    void init()
    {
        QVERIFY(QDir().mkpath(line79));
        replace(gpio + QStringLiteral("export"), {});
        replace(gpio + QStringLiteral("unexport"), {});
        replace(line79 + QStringLiteral("direction"), "in\n");
        replace(line79 + QStringLiteral("value"), "0\n");
        if (!m_buzzer)
            m_buzzer = std::make_unique<Buzzer>();
    }

    void interface_isNoneForQml() { QCOMPARE(metaText(Buzzer::staticMetaObject), QStringList()); }

    void enumerations_haveTheDriversValues()
    {
        QCOMPARE(int(Buzzer::INPUT_PIN), 0);
        QCOMPARE(int(Buzzer::OUTPUT_PIN), 1);
        QCOMPARE(int(Buzzer::LOW), 0);
        QCOMPARE(int(Buzzer::HIGH), 1);
    }

    void construction_exportsTheLineWaitsAndMakesItAnOutput()
    {
        const PipeInPlace exported(gpio + QStringLiteral("export"));
        const PipeInPlace direction(line79 + QStringLiteral("direction"));
        const PipeInPlace value(line79 + QStringLiteral("value"));
        QObject parent;
        QElapsedTimer timer;
        timer.start();
        const auto *buzzer = new Buzzer(&parent);
        QVERIFY2(timer.elapsed() >= 500, qPrintable(QString::number(timer.elapsed())));
        QCOMPARE(buzzer->parent(), &parent);
        QCOMPARE(exported.bytes(), QByteArray("79"));
        QCOMPARE(direction.bytes(), QByteArray("out\0", 4));
        QCOMPARE(value.bytes(), QByteArray());
    }

    void construction_looksForTheDirectionAfterTheWait()
    {
        QVERIFY(QDir(line79).removeRecursively());
        ErrorOutput errors;
        const Buzzer buzzer;
        QCOMPARE(errors.text(), QByteArray("gpio/direction: No such file or directory\n"));
    }

    void destruction_leavesTheLineExported()
    {
        const PipeInPlace unexported(gpio + QStringLiteral("unexport"));
        m_buzzer.reset();
        QCOMPARE(unexported.bytes(), QByteArray());
        QCOMPARE(contentOf(line79 + QStringLiteral("value")), QByteArray("0\n"));
    }

    void beep_switchesOnSleepsAndSwitchesOff()
    {
        const PipeInPlace value(line79 + QStringLiteral("value"));
        m_buzzer->setBeep_time(120000);
        QElapsedTimer timer;
        timer.start();
        m_buzzer->beep();
        QVERIFY2(timer.elapsed() >= 120, qPrintable(QString::number(timer.elapsed())));
        QCOMPARE(value.bytes(), QByteArray("1\0000\0", 4));
    }

    void beep_lastsHalfASecondUnlessToldOtherwise()
    {
        Buzzer fresh;
        const PipeInPlace value(line79 + QStringLiteral("value"));
        QElapsedTimer timer;
        timer.start();
        fresh.beep();
        QVERIFY2(timer.elapsed() >= 500 && timer.elapsed() < 5000,
                 qPrintable(QString::number(timer.elapsed())));
        QCOMPARE(value.bytes(), QByteArray("1\0000\0", 4));
    }

    void beepTimeZero_leavesTheLineHighUntilTheNextBeep()
    {
        m_buzzer->setBeep_time(0);
        m_buzzer->beep();
        QCOMPARE(contentOf(line79 + QStringLiteral("value")), QByteArray("1\0", 2));
        m_buzzer->setBeep_time(1);
        m_buzzer->beep();
        QCOMPARE(contentOf(line79 + QStringLiteral("value")), QByteArray("0\0", 2));
    }

    void negativeBeepTime_countsAsNoSleep()
    {
        const PipeInPlace value(line79 + QStringLiteral("value"));
        for (int time : {-1, std::numeric_limits<int>::min()}) {
            m_buzzer->setBeep_time(time);
            QElapsedTimer timer;
            timer.start();
            m_buzzer->beep();
            QVERIFY2(timer.elapsed() < 5000, qPrintable(QString::number(timer.elapsed())));
            QCOMPARE(value.bytes(), QByteArray("1\0000\0", 4));
        }
    }

    void lineThatIsNotExported_isReportedForBothWritesAndStillSlept()
    {
        QVERIFY(QDir(line79).removeRecursively());
        m_buzzer->setBeep_time(120000);
        QElapsedTimer timer;
        timer.start();
        ErrorOutput errors;
        m_buzzer->beep();
        QCOMPARE(errors.text(), QByteArray("gpio/set-value: No such file or directory\n").repeated(2));
        QVERIFY2(timer.elapsed() >= 120, qPrintable(QString::number(timer.elapsed())));
    }

    void operations_writeExactlyTheirBytes()
    {
        {
            const PipeInPlace exported(gpio + QStringLiteral("export"));
            QVERIFY(m_buzzer->gpio_export(79) >= 0);
            QCOMPARE(exported.bytes(), QByteArray("79"));
            QVERIFY(m_buzzer->gpio_export(0) >= 0);
            QCOMPARE(exported.bytes(), QByteArray("0"));
            QVERIFY(m_buzzer->gpio_export(std::numeric_limits<unsigned int>::max()) >= 0);
            QCOMPARE(exported.bytes(), QByteArray("4294967295"));
        }
        {
            const PipeInPlace unexported(gpio + QStringLiteral("unexport"));
            QVERIFY(m_buzzer->gpio_unexport(79) >= 0);
            QCOMPARE(unexported.bytes(), QByteArray("79"));
        }
        {
            const PipeInPlace direction(line79 + QStringLiteral("direction"));
            QVERIFY(m_buzzer->gpio_set_dir(79, Buzzer::OUTPUT_PIN) >= 0);
            QCOMPARE(direction.bytes(), QByteArray("out\0", 4));
            QVERIFY(m_buzzer->gpio_set_dir(79, Buzzer::INPUT_PIN) >= 0);
            QCOMPARE(direction.bytes(), QByteArray("in\0", 3));
        }
        const PipeInPlace value(line79 + QStringLiteral("value"));
        QVERIFY(m_buzzer->gpio_set_value(79, Buzzer::HIGH) >= 0);
        QCOMPARE(value.bytes(), QByteArray("1\0", 2));
        QVERIFY(m_buzzer->gpio_set_value(79, Buzzer::LOW) >= 0);
        QCOMPARE(value.bytes(), QByteArray("0\0", 2));
    }

    void otherLines_haveFilesOfTheirOwn()
    {
        const QString other = gpio + QStringLiteral("gpio4294967295/");
        QVERIFY(QDir().mkpath(other));
        replace(other + QStringLiteral("value"), "0\n");
        QVERIFY(m_buzzer->gpio_set_value(4294967295U, Buzzer::HIGH) >= 0);
        QCOMPARE(contentOf(other + QStringLiteral("value")), QByteArray("1\0", 2));
        QCOMPARE(contentOf(line79 + QStringLiteral("value")), QByteArray("0\n"));
    }

    void getValue_isOneUnlessTheByteIsZero_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<unsigned int>("value");
        QTest::newRow("low") << QByteArray("0\n") << 0U;
        QTest::newRow("high") << QByteArray("1\n") << 1U;
        QTest::newRow("only the first byte counts") << QByteArray("01") << 0U;
        QTest::newRow("anything else") << QByteArray("x") << 1U;
        QTest::newRow("a zero byte") << QByteArray("\0", 1) << 1U;
    }

    void getValue_isOneUnlessTheByteIsZero()
    {
        QFETCH(QByteArray, content);
        replace(line79 + QStringLiteral("value"), content);
        unsigned int value = 7;
        QVERIFY(m_buzzer->gpio_get_value(79, &value) >= 0);
        QTEST(value, "value");
    }

    void getValue_ofNothing_failsAndLeavesTheValue()
    {
        replace(line79 + QStringLiteral("value"), {});
        unsigned int value = 7;
        QVERIFY(m_buzzer->gpio_get_value(79, &value) < 0);
        QCOMPARE(value, 7U);
    }

    void fdOpen_isReadOnlyAndNeverBlocks()
    {
        const int fd = m_buzzer->gpio_fd_open(79);
        QVERIFY(fd >= 0);
        const int flags = ::fcntl(fd, F_GETFL);
        QCOMPARE(flags & O_ACCMODE, O_RDONLY);
        QVERIFY(flags & O_NONBLOCK);
        char digit = 0;
        QCOMPARE(::read(fd, &digit, 1), ssize_t(1));
        QCOMPARE(digit, '0');
        QCOMPARE(m_buzzer->gpio_fd_close(fd), 0);
        QVERIFY(m_buzzer->gpio_fd_close(fd) < 0);
        QVERIFY(m_buzzer->gpio_fd_close(-1) < 0);
    }

    void missingFiles_areReportedByTheirNames()
    {
        const QString moved = QStringLiteral("/sys/class/gpio-away");
        QVERIFY(QDir().rename(QStringLiteral("/sys/class/gpio"), moved));
        unsigned int value = 7;
        ErrorOutput errors;
        const std::array<int, 6> results{m_buzzer->gpio_export(79),
                                         m_buzzer->gpio_unexport(79),
                                         m_buzzer->gpio_set_dir(79, Buzzer::OUTPUT_PIN),
                                         m_buzzer->gpio_set_value(79, Buzzer::HIGH),
                                         m_buzzer->gpio_get_value(79, &value),
                                         m_buzzer->gpio_fd_open(79)};
        const QByteArray text = errors.text();
        QVERIFY(QDir().rename(moved, QStringLiteral("/sys/class/gpio")));
        for (int result : results)
            QVERIFY(result < 0);
        QCOMPARE(value, 7U);
        // Exporting and giving back share one text.
        QCOMPARE(text,
                 QByteArray("gpio/export: No such file or directory\n"
                            "gpio/export: No such file or directory\n"
                            "gpio/direction: No such file or directory\n"
                            "gpio/set-value: No such file or directory\n"
                            "gpio/get-value: No such file or directory\n"
                            "gpio/fd_open: No such file or directory\n"));
    }

    void noDescriptor_isLeftOpen()
    {
        const auto open = [] { return QDir(QStringLiteral("/proc/self/fd")).entryList().size(); };
        const int before = open();
        unsigned int value = 0;
        for (int i = 0; i < 20; ++i) {
            m_buzzer->gpio_export(79);
            m_buzzer->gpio_unexport(79);
            m_buzzer->gpio_set_dir(79, Buzzer::OUTPUT_PIN);
            m_buzzer->gpio_set_value(79, Buzzer::LOW);
            m_buzzer->gpio_get_value(79, &value);
        }
        QCOMPARE(open(), before);
    }
};

QTEST_GUILESS_MAIN(TstBuzzer)
#include "tst_buzzer.moc"
