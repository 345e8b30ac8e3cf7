// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include "pin.h"

#include <QTimer>

#include <QsLog.h>

namespace {
constexpr int CodeLength = 5;
constexpr short NoDigit = -1;
constexpr int EnableDelay = 5000; // ms

/// Looks at every digit: how long it takes does not tell how many of them were right.
bool areSame(const QVector<short> &entered, const QVector<short> &secret)
{
    int differences = 0;
    for (int i = 0; i < CodeLength; ++i)
        differences |= entered.at(i) ^ secret.at(i);
    return differences == 0;
}

} // namespace

PIN::PIN(QObject *parent)
    : QObject(parent)
    , m_secret(CodeLength, NoDigit)
    , m_timer(new QTimer(this))
{
    m_timer->setInterval(EnableDelay);
    m_timer->setSingleShot(true);
    connect(m_timer, &QTimer::timeout, this, &PIN::enable);
}

void PIN::setSecret(int code)
{
    QLOG_DEBUG() << "[Halvar Controller][PIN]: setSecret()";
    int divisor = 10000;
    for (short &digit : m_secret) {
        digit = static_cast<short>((code / divisor) % 10);
        divisor /= 10;
    }
}

void PIN::setAccepted(bool accepted)
{
    if (m_accepted == accepted)
        return;
    m_accepted = accepted;
    emit acceptedUpdated(m_accepted);
}

void PIN::setNbDigits(int number)
{
    if (m_nbDigits == number)
        return;
    m_nbDigits = number;
    emit nbDigitsChanged(m_nbDigits);
}

void PIN::setDisabled(bool disabled)
{
    if (m_disabled == disabled)
        return;
    m_disabled = disabled;
    if (m_disabled) {
        // The message is what the support line asks for; the pause is long enough to put a guesser off.
        QLOG_INFO() << "[Halvar Controller][PIN]: PIN disabled for 1 second.";
        m_timer->start();
    } else {
        m_timer->stop();
    }
    emit disabledUpdated(m_disabled);
}

void PIN::enable()
{
    setDisabled(false);
}

// cppcheck-suppress passedByValue ; as the keypad's pages have called it from the beginning
void PIN::enterDigit(QString digit)
{
    if (m_disabled || m_entered.size() >= CodeLength)
        return;
    m_entered.append(digit.toShort(nullptr, 10));
    setNbDigits(m_entered.size());
}

void PIN::clearDigit()
{
    if (!m_entered.isEmpty())
        m_entered.removeLast();
    setNbDigits(m_entered.size());
}

void PIN::clearDigits()
{
    m_entered.clear();
    setNbDigits(0);
    setAccepted(false);
}

bool PIN::checkDigit(int index)
{
    return index >= 0 && index < m_entered.size();
}

bool PIN::checkSecret()
{
    if (m_entered.size() != CodeLength)
        return false;
    // An unset secret is made of what no digit is, even when a text like "-1" was entered.
    if (!m_secret.contains(NoDigit) && areSame(m_entered, m_secret)) {
        setAccepted(true);
        QLOG_INFO() << "[Halvar Controller][PIN]: Password accepted.";
        return true;
    }
    setAccepted(false);
    ++m_attempts;
    if (m_attempts < m_attemptsLimit)
        return false;
    QLOG_INFO() << "[Halvar Controller][PIN]: " << m_attempts << "wrong password reached.";
    m_attempts = 0;
    return false;
}
