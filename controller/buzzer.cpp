// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include "buzzer.h"

#include <cstdio>
#include <fcntl.h>
#include <unistd.h>

namespace {

constexpr unsigned int BuzzerLine = 79;
constexpr useconds_t ExportDelay = 500000; // µs
constexpr char GpioDirectory[] = "/sys/class/gpio";
constexpr size_t PathSize = 64;

/// Opens "GpioDirectory/gpioN/name"; negative and reported as \p context when that fails.
int openLineFile(unsigned int gpio, const char *name, int flags, const char *context)
{
    char path[PathSize];
    std::snprintf(path, sizeof path, "%s/gpio%u/%s", GpioDirectory, gpio, name);
    const int fd = ::open(path, flags | O_CLOEXEC);
    if (fd < 0)
        std::perror(context);
    return fd;
}

/// Writes once, as a sysfs attribute wants it, and closes.
int writeOnce(int fd, const void *data, size_t size)
{
    const ssize_t written = ::write(fd, data, size);
    ::close(fd);
    return written == static_cast<ssize_t>(size) ? 0 : -1;
}

int writeLineNumber(const char *name, unsigned int gpio)
{
    char path[PathSize];
    std::snprintf(path, sizeof path, "%s/%s", GpioDirectory, name);
    const int fd = ::open(path, O_WRONLY | O_CLOEXEC);
    if (fd < 0) {
        // Giving a line back fails for want of the same directory: one text serves both.
        std::perror("gpio/export");
        return fd;
    }
    char number[PathSize];
    const int length = std::snprintf(number, sizeof number, "%u", gpio);
    return writeOnce(fd, number, static_cast<size_t>(length));
}

} // namespace

Buzzer::Buzzer(QObject *parent)
    : QObject(parent)
{
    gpio_export(BuzzerLine);
    ::usleep(ExportDelay);
    gpio_set_dir(BuzzerLine, OUTPUT_PIN);
}

void Buzzer::setBeep_time(int microseconds)
{
    m_beep_time = microseconds;
}

void Buzzer::beep()
{
    gpio_set_value(BuzzerLine, HIGH);
    // Without a length the beeper stays on: it is how a shutter fault is sounded.
    if (m_beep_time == 0)
        return;
    if (m_beep_time > 0)
        ::usleep(static_cast<useconds_t>(m_beep_time));
    gpio_set_value(BuzzerLine, LOW);
}

int Buzzer::gpio_export(unsigned int gpio)
{
    return writeLineNumber("export", gpio);
}

int Buzzer::gpio_unexport(unsigned int gpio)
{
    return writeLineNumber("unexport", gpio);
}

int Buzzer::gpio_set_dir(unsigned int gpio, PIN_DIRECTION direction)
{
    const int fd = openLineFile(gpio, "direction", O_WRONLY, "gpio/direction");
    if (fd < 0)
        return fd;
    // With the zero byte, which the driver takes as the end of the word.
    return direction == OUTPUT_PIN ? writeOnce(fd, "out", 4) : writeOnce(fd, "in", 3);
}

int Buzzer::gpio_set_value(unsigned int gpio, PIN_VALUE value)
{
    const int fd = openLineFile(gpio, "value", O_WRONLY, "gpio/set-value");
    if (fd < 0)
        return fd;
    return writeOnce(fd, value != LOW ? "1" : "0", 2);
}

int Buzzer::gpio_get_value(unsigned int gpio, unsigned int *value)
{
    const int fd = openLineFile(gpio, "value", O_RDONLY, "gpio/get-value");
    if (fd < 0)
        return fd;
    char digit = '0';
    const ssize_t count = ::read(fd, &digit, 1);
    ::close(fd);
    if (count != 1)
        return -1;
    *value = digit != '0' ? 1 : 0;
    return 0;
}

int Buzzer::gpio_fd_open(unsigned int gpio)
{
    return openLineFile(gpio, "value", O_RDONLY | O_NONBLOCK, "gpio/fd_open");
}

int Buzzer::gpio_fd_close(int fd)
{
    return ::close(fd);
}
