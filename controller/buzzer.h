// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef HALVAR_BUZZER_H
#define HALVAR_BUZZER_H

#include <QObject>

#include "halvar-export.h"

/// The beeper on GPIO line 79, through the kernel's sysfs interface.
///
/// beep() blocks its caller for the beep time. Interface thread only.
class HALVAR_EXPORT Buzzer : public QObject
{
    Q_OBJECT

public:
    enum PIN_DIRECTION {
        INPUT_PIN = 0,
        OUTPUT_PIN = 1
    };
    enum PIN_VALUE {
        LOW = 0,
        HIGH = 1
    };

    /// Exports the line and makes it an output; waits half a second for the kernel to create its files.
    /// The line is not given back by the destructor.
    explicit Buzzer(QObject *parent = nullptr);

    /// \param microseconds length of a beep; 0 leaves the beeper on until the next beep ends.
    void setBeep_time(int microseconds);
    void beep();

    // GPIO operations: 0 or a descriptor on success, negative on failure. A file that cannot be opened is
    // reported through perror.
    int gpio_export(unsigned int gpio);
    int gpio_unexport(unsigned int gpio);
    int gpio_set_dir(unsigned int gpio, PIN_DIRECTION direction);
    int gpio_set_value(unsigned int gpio, PIN_VALUE value);
    int gpio_get_value(unsigned int gpio, unsigned int *value);
    int gpio_fd_open(unsigned int gpio);
    int gpio_fd_close(int fd);

private:
    int m_beep_time = 500000; // µs
};

#endif // HALVAR_BUZZER_H
