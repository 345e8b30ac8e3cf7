// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include "halvar-error.h"

#include <QDateTime>

#include <QsLog.h>

#include <utility>

#include "shocklistmodel.h"

namespace {

/// As in the history file, so that screen and file show the same moment in the same words.
QString momentToText(const QDateTime &moment)
{
    return moment.toString(QStringLiteral("dd-MM-yyyy HH:mm:ss t"));
}

} // namespace

Error::Error(const QString &home, QObject *parent)
    : QObject(parent)
    , m_home(home)
    , m_shockListModel(new ShockListModel(m_home, this))
{ }

QString Error::lastShock() const
{
    const Shock *last = m_shockListModel->last();
    return last ? momentToText(last->dateTime()) : QString();
}

void Error::setShock(bool shock)
{
    if (m_shock != shock) {
        m_shock = shock;
        emit shockSignal(shock);
    }
    if (!shock)
        return;
    m_shockListModel->append(new Shock(QDateTime::currentDateTime()));
    m_shockListModel->write();
    emit lastShockSignal(momentToText(QDateTime::currentDateTime()));
}

void Error::setReadyForAcquisition(bool ready)
{
    if (m_readyForAcquisition == ready)
        return;
    m_readyForAcquisition = ready;
    QLOG_INFO() << "[Halvar Controller][Error]: readyForAcquisition is " << ready;
    emit readyForAcquisitionSignal(m_readyForAcquisition);
}

void Error::resetErrorMessage()
{
    setErrorMessage(QString());
}

void Error::setErrorMessage(QString errorMessage)
{
    if (m_errorMessage == errorMessage)
        return;
    m_errorMessage = std::move(errorMessage);
    emit errorMessageSignal(m_errorMessage);
}
