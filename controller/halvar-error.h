// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef HALVAR_HALVAR_ERROR_H
#define HALVAR_HALVAR_ERROR_H

#include <QObject>
#include <QString>

#include "halvar-export.h"

class ShockListModel;

/// What is wrong with the instrument, as the interface shows it: shock, readiness, error text.
///
/// Owns the shock history and adds to it. Interface thread only.
class HALVAR_EXPORT Error : public QObject
{
    Q_OBJECT

    /// A shock is signalled, until the operator resets it.
    Q_PROPERTY(bool shock READ shock NOTIFY shockSignal)
    /// The analysis service reports the instrument ready to acquire.
    Q_PROPERTY(bool readyForAcquisition READ readyForAcquisition NOTIFY readyForAcquisitionSignal)
    /// The text to show; empty for no error.
    Q_PROPERTY(QString errorMessage READ errorMessage NOTIFY errorMessageSignal)
    /// Moment of the last shock of the history, "dd-MM-yyyy HH:mm:ss t"; empty without one.
    Q_PROPERTY(QString lastShock READ lastShock NOTIFY lastShockSignal)

public:
    /// \param home the instrument's home directory; the history is home/shock/shock.xml.
    explicit Error(const QString &home, QObject *parent = nullptr);

    bool shock() const { return m_shock; }
    bool readyForAcquisition() const { return m_readyForAcquisition; }
    QString errorMessage() const { return m_errorMessage; }
    QString lastShock() const;

    /// Each call with true records a shock of its own, whether or not one is signalled already: each report
    /// of the MSP is a separate event.
    void setShock(bool shock);
    void setReadyForAcquisition(bool ready);

    Q_INVOKABLE void resetErrorMessage();

public slots:
    void setErrorMessage(QString errorMessage);

signals:
    void shockSignal(bool shock);
    void readyForAcquisitionSignal(bool readyForAcquisition);
    void errorMessageSignal(QString errorMessage);
    void lastShockSignal(QString datetime);

private:
    QString m_home;
    bool m_shock = false;
    bool m_readyForAcquisition = false;
    QString m_errorMessage;
    ShockListModel *m_shockListModel;
};

#endif // HALVAR_HALVAR_ERROR_H
