// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef HALVAR_PIN_H
#define HALVAR_PIN_H

#include <QObject>
#include <QString>
#include <QVector>

#include "halvar-export.h"

class QTimer;

/// Entry of the operator's code of five digits, digit by digit.
///
/// Nothing is accepted before setSecret(). Every third wrong code is logged; locking the entry is left
/// to the owner of the object (setDisabled()).
class HALVAR_EXPORT PIN : public QObject
{
    Q_OBJECT

    /// The last check succeeded; false again after a failed one or clearDigits().
    Q_PROPERTY(bool accepted READ accepted NOTIFY acceptedUpdated)
    /// Digits typed so far, 0 to 5.
    Q_PROPERTY(int nbDigits READ nbDigits NOTIFY nbDigitsChanged)
    /// Digits are refused; ends by itself after 5 s.
    Q_PROPERTY(bool disabled READ disabled NOTIFY disabledUpdated)

public:
    explicit PIN(QObject *parent = nullptr);

    bool accepted() const { return m_accepted; }
    int nbDigits() const { return m_nbDigits; }
    bool disabled() const { return m_disabled; }

    /// \param code the expected code; digits above the fifth are lost, missing ones are leading zeros.
    void setSecret(int code);
    void setAccepted(bool accepted);
    void setNbDigits(int number);
    void setDisabled(bool disabled);

    /// Ignored while disabled and when five digits are there; a text that is no number counts as 0.
    Q_INVOKABLE void enterDigit(QString digit);
    Q_INVOKABLE void clearDigit();
    Q_INVOKABLE void clearDigits();
    /// Whether the five digits entered are the code. Fewer are no attempt. The entry stays as it is.
    Q_INVOKABLE bool checkSecret();
    /// Whether a digit has been typed at \p index, 0 to 4.
    Q_INVOKABLE bool checkDigit(int index);

public slots:
    void enable();

signals:
    void acceptedUpdated(bool accepted);
    void nbDigitsChanged(int nbDigits);
    void disabledUpdated(bool disabled);

private:
    bool m_accepted = false;
    short m_attempts = 0;
    short m_attemptsLimit = 3;
    QVector<short> m_secret;
    QVector<short> m_entered;
    int m_nbDigits = 0;
    QTimer *m_timer;
    bool m_disabled = false;
};

#endif // HALVAR_PIN_H
