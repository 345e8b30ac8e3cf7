// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

#include "halvar-error.h"
#include "logrecorder.h"
#include "metatext.h"
#include "shocklistmodel.h"
#include "signallog.h"

namespace {

const QString format = QStringLiteral("dd-MM-yyyy HH:mm:ss t");

/// A moment as the screen shows it, without its zone.
QDateTime momentOf(const QString &text)
{
    return QDateTime::fromString(text.section(QLatin1Char(' '), 0, 1), QStringLiteral("dd-MM-yyyy HH:mm:ss"));
}

} // namespace

class TstError : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<QTemporaryDir> m_directory;

    QString home() const { return m_directory->path() + QLatin1Char('/'); }
    QByteArray history() const
    {
        QFile file(home() + QStringLiteral("shock/shock.xml"));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    int recorded() const { return history().count("<shock>"); }

private slots:
    void init()
    {
        m_directory = std::make_unique<QTemporaryDir>();
        QVERIFY(QDir(m_directory->path()).mkdir(QStringLiteral("shock")));
    }

    void interface_isWhatTheInterfaceBinds()
    {
        QCOMPARE(metaText(Error::staticMetaObject), linesOf(R"(
            property bool shock NOTIFY shockSignal
            property bool readyForAcquisition NOTIFY readyForAcquisitionSignal
            property QString errorMessage NOTIFY errorMessageSignal
            property QString lastShock NOTIFY lastShockSignal
            signal shockSignal(bool shock)
            signal readyForAcquisitionSignal(bool readyForAcquisition)
            signal errorMessageSignal(QString errorMessage)
            signal lastShockSignal(QString datetime)
            slot void setErrorMessage(QString errorMessage)
            invokable void resetErrorMessage())"));
    }

    void fresh_knowsOfNothingWrongAndIsNotReady()
    {
        QObject parent;
        const auto *error = new Error(home(), &parent);
        QCOMPARE(error->parent(), &parent);
        QVERIFY(!error->shock());
        QVERIFY(!error->readyForAcquisition());
        QVERIFY(error->errorMessage().isEmpty());
        QVERIFY(error->lastShock().isEmpty());
        QVERIFY(history().isEmpty());
    }

    void history_isReadAtConstruction()
    {
        {
            ShockListModel shocks(home());
            shocks.append(new Shock(QDateTime(QDate(2026, 1, 2), QTime(3, 4, 5))));
            shocks.append(new Shock(QDateTime(QDate(2026, 7, 8), QTime(9, 10, 11))));
            shocks.write();
        }
        const Error error(home());
        QVERIFY(!error.shock());
        QCOMPARE(error.lastShock(), QDateTime(QDate(2026, 7, 8), QTime(9, 10, 11)).toString(format));
        QVERIFY(error.lastShock().startsWith(QLatin1String("08-07-2026 09:10:11 ")));
        QCOMPARE(error.property("lastShock").toString(), error.lastShock());
    }

    void entryThatIsNoMoment_showsNoMoment()
    {
        QFile file(home() + QStringLiteral("shock/shock.xml"));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("<history_shocks><shock>yesterday</shock></history_shocks>");
        file.close();
        QVERIFY(Error(home()).lastShock().isEmpty());
    }

    void shock_isSignalledThenRecordedThenDated()
    {
        Error error(home());
        auto *shocks = error.findChild<ShockListModel *>();
        QVERIFY(shocks);
        SignalLog log;
        log.watch(&error, &Error::shockSignal, QStringLiteral("shock"));
        log.watch(shocks, &ShockListModel::rowsInserted, QStringLiteral("row"));
        log.watch(shocks, &ShockListModel::countChanged, QStringLiteral("count"));
        log.watch(&error, &Error::lastShockSignal, QStringLiteral("last"));
        QList<int> recordedThen;
        connect(&error, &Error::shockSignal, &error, [&] {
            recordedThen.append(recorded());
            QVERIFY(error.shock());
        });
        connect(shocks, &ShockListModel::countChanged, &error, [&] { recordedThen.append(recorded()); });
        connect(&error, &Error::lastShockSignal, &error, [&] { recordedThen.append(recorded()); });
        QSignalSpy last(&error, &Error::lastShockSignal);
        QSignalSpy signalled(&error, &Error::shockSignal);

        const QDateTime before = QDateTime::currentDateTime();
        error.setShock(true);
        const QDateTime after = QDateTime::currentDateTime();

        QCOMPARE(log.text(), QStringLiteral("shock row count last"));
        QCOMPARE(recordedThen, (QList<int>{0, 0, 1}));
        QCOMPARE(signalled.first().first().toBool(), true);
        const QString text = last.first().first().toString();
        QVERIFY2(QRegularExpression(QStringLiteral("^\\d\\d-\\d\\d-\\d{4} \\d\\d:\\d\\d:\\d\\d \\S+$"))
                     .match(text)
                     .hasMatch(),
                 qPrintable(text));
        QVERIFY(before.addSecs(-1) <= momentOf(text) && momentOf(text) <= after);
        QVERIFY(text.endsWith(before.timeZoneAbbreviation()) || text.endsWith(after.timeZoneAbbreviation()));
        QCOMPARE(shocks->last()->parent(), shocks);
        QVERIFY(before <= shocks->last()->dateTime() && shocks->last()->dateTime() <= after);
        QCOMPARE(error.lastShock(), shocks->last()->dateTime().toString(format));
    }

    void eachReportOfAShock_isAnEventOfItsOwn()
    {
        Error error(home());
        QSignalSpy signalled(&error, &Error::shockSignal);
        QSignalSpy last(&error, &Error::lastShockSignal);
        error.setShock(true);
        QCOMPARE(recorded(), 1);
        error.setShock(true);
        QCOMPARE(recorded(), 2);
        QCOMPARE(signalled.count(), 1);
        QCOMPARE(last.count(), 2);
        QVERIFY(error.shock());
    }

    void endOfAShock_recordsNothing()
    {
        Error error(home());
        error.setShock(true);
        QSignalSpy signalled(&error, &Error::shockSignal);
        QSignalSpy last(&error, &Error::lastShockSignal);
        const QString shown = error.lastShock();
        error.setShock(false);
        error.setShock(false);
        QCOMPARE(signalled.count(), 1);
        QCOMPARE(signalled.first().first().toBool(), false);
        QCOMPARE(last.count(), 0);
        QCOMPARE(recorded(), 1);
        QVERIFY(!error.shock());
        QCOMPARE(error.lastShock(), shown);
    }

    void noShock_writesNoFile()
    {
        Error error(home());
        QSignalSpy signalled(&error, &Error::shockSignal);
        error.setShock(false);
        QCOMPARE(signalled.count(), 0);
        QVERIFY(history().isEmpty());
    }

    void shockThatCannotBeSaved_isShownAllTheSame()
    {
        QVERIFY(QDir(home()).rmdir(QStringLiteral("shock")));
        Error error(home());
        QSignalSpy last(&error, &Error::lastShockSignal);
        error.setShock(true);
        QVERIFY(error.shock());
        QCOMPARE(last.count(), 1);
        QVERIFY(!error.lastShock().isEmpty());
    }

    void readiness_isLoggedAndAnnouncedWhenItChanges()
    {
        Error error(home());
        QSignalSpy changed(&error, &Error::readyForAcquisitionSignal);
        const LogRecorder log;
        error.setReadyForAcquisition(false);
        QCOMPARE(changed.count(), 0);
        error.setReadyForAcquisition(true);
        QVERIFY(error.readyForAcquisition());
        error.setReadyForAcquisition(true);
        error.setReadyForAcquisition(false);
        QVERIFY(!error.readyForAcquisition());
        QCOMPARE(changed.count(), 2);
        QCOMPARE(changed.at(0).first().toBool(), true);
        QCOMPARE(changed.at(1).first().toBool(), false);
        QCOMPARE(log.lines(), linesOf(R"(
            INFO [Halvar Controller][Error]: readyForAcquisition is  true
            INFO [Halvar Controller][Error]: readyForAcquisition is  false)"));
    }

    void readiness_changesWithoutTheLogToo()
    {
        Error error(home());
        const LogRecorder log(QsLogging::OffLevel);
        error.setReadyForAcquisition(true);
        QVERIFY(error.readyForAcquisition());
        QVERIFY(log.lines().isEmpty());
    }

    void errorMessage_isAnnouncedWhenItChangesAndNotLogged()
    {
        Error error(home());
        QSignalSpy changed(&error, &Error::errorMessageSignal);
        const LogRecorder log;
        const QString text = QString::fromUtf8("Gestion des données - Erreur C4");
        error.setErrorMessage(QString());
        QCOMPARE(changed.count(), 0);
        error.setErrorMessage(text);
        error.setErrorMessage(text);
        QCOMPARE(error.errorMessage(), text);
        QCOMPARE(changed.count(), 1);
        QCOMPARE(changed.first().first().toString(), text);
        error.setErrorMessage(QStringLiteral("Erreur C0"));
        QCOMPARE(changed.count(), 2);
        QCOMPARE(error.property("errorMessage").toString(), QStringLiteral("Erreur C0"));
        QVERIFY(log.lines().isEmpty());
    }

    void resetErrorMessage_announcesOnlyWhenThereWasOne()
    {
        Error error(home());
        QSignalSpy changed(&error, &Error::errorMessageSignal);
        error.resetErrorMessage();
        QCOMPARE(changed.count(), 0);
        error.setErrorMessage(QStringLiteral("Erreur C5"));
        error.resetErrorMessage();
        error.resetErrorMessage();
        QVERIFY(error.errorMessage().isEmpty());
        QCOMPARE(changed.count(), 2);
        QVERIFY(changed.last().first().toString().isEmpty());
    }

    void shockAndReadiness_leaveTheTextAlone()
    {
        Error error(home());
        error.setErrorMessage(QStringLiteral("Erreur C5"));
        error.setShock(true);
        error.setShock(false);
        error.setReadyForAcquisition(true);
        QCOMPARE(error.errorMessage(), QStringLiteral("Erreur C5"));
    }
};

QTEST_GUILESS_MAIN(TstError)
#include "tst_error.moc"
