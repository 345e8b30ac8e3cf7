// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
//
// A soak of a few shots: what the long one rests on. Whether so few are flat says nothing.
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

class TstSoakRun : public QObject
{
    Q_OBJECT
private slots:
    void everyShot_isFoundInTheFiles();
    void wrongUse_isOneLineAndStatusTwo();

private:
    static int run(const QStringList &options, QString &output, QString &error)
    {
        QProcess process;
        process.start(QStringLiteral(HALVAR_SOURCE_DIR "/tools/soak-session"),
                      QStringList{QStringLiteral(HALVAR_BINARY_DIR "/bin")} + options);
        process.waitForFinished(100000);
        output = QString::fromUtf8(process.readAllStandardOutput());
        error = QString::fromUtf8(process.readAllStandardError());
        return process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
    }
};

void TstSoakRun::everyShot_isFoundInTheFiles()
{
    const QTemporaryDir out;
    QString output;
    QString error;
    const int status =
        run({QStringLiteral("--shots"), QStringLiteral("90"), QStringLiteral("--units"), QStringLiteral("8"),
             QStringLiteral("--units-a-diagnostic"), QStringLiteral("2"), QStringLiteral("--fault-every"),
             QStringLiteral("12"), QStringLiteral("--out"), out.path()},
            output, error);
    QVERIFY2(status == 0 || status == 1, qPrintable(error));
    QVERIFY2(output.contains(QStringLiteral(
                 "90 shots over 8 units: 90 found in 4 files, 0 lost, 0 values changed by the files")),
             qPrintable(output + error));
    QVERIFY2(output.contains(
                 QStringLiteral("faults on the way: 1 early releases, 1 failing acquisitions, 1 jammed "
                                "shutters, 1 lost microcontrollers, 2 shocks, 1 slow services")),
             qPrintable(output));
    QVERIFY(QFileInfo(out.filePath(QStringLiteral("soak.svg"))).size() > 1000);
}

void TstSoakRun::wrongUse_isOneLineAndStatusTwo()
{
    QString output;
    QString error;
    QCOMPARE(run({QStringLiteral("--shots"), QStringLiteral("0")}, output, error), 2);
    QCOMPARE(error,
             QStringLiteral("halvar-soak: --shots takes a number from 1 on, not '0'. See halvar-soak "
                            "--help.\n"));
    QCOMPARE(run({QStringLiteral("--out"), QStringLiteral("/nowhere")}, output, error), 2);
    QCOMPARE(error, QStringLiteral("halvar-soak: --out: the directory /nowhere cannot be written\n"));
}

QTEST_GUILESS_MAIN(TstSoakRun)
#include "tst_soak_run.moc"
