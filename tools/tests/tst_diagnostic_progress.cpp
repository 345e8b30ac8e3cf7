// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include <QTest>

#include <cstdio>
#include <memory>

#include <progress.h>

class TstDiagnosticProgress : public QObject
{
    Q_OBJECT
private slots:
    void aFile_getsOneLineForEachStep();
    void aTerminal_seesALineThatChanges();
    void aLongLine_isCutAtTheTerminalsWidth();

private:
    static QByteArray written(bool isTerminal, int width, void (*work)(Progress &));
};

QByteArray TstDiagnosticProgress::written(bool isTerminal, int width, void (*work)(Progress &))
{
    const std::unique_ptr<FILE, int (*)(FILE *)> file(tmpfile(), &fclose);
    if (!file)
        return "no temporary file";
    {
        Progress progress(file.get(), isTerminal, width);
        work(progress);
    }
    rewind(file.get());
    QByteArray bytes(4096, '\0');
    bytes.resize(int(fread(bytes.data(), 1, size_t(bytes.size()), file.get())));
    return bytes;
}

void TstDiagnosticProgress::aFile_getsOneLineForEachStep()
{
    const QByteArray bytes = written(false, 80, [](Progress &progress) {
        progress.setTotal(12);
        progress.begin(QStringLiteral("Calibrate"));
        progress.detail(QStringLiteral("half way"));
        progress.done(QStringLiteral("succeeded"));
        progress.note(QStringLiteral("A note"));
        progress.begin(QStringLiteral("Measure"));
        progress.done();
    });
    QCOMPARE(bytes, QByteArray("[ 1/12] Calibrate: succeeded\nA note\n[ 2/12] Measure\n"));
}

void TstDiagnosticProgress::aTerminal_seesALineThatChanges()
{
    const QByteArray bytes = written(true, 80, [](Progress &progress) {
        progress.setTotal(2);
        progress.begin(QStringLiteral("Measure"));
        progress.detail(QStringLiteral("3 results"));
        progress.done(QStringLiteral("Négative"));
        progress.begin(QStringLiteral("Save"));
    });
    QCOMPARE(bytes,
             QByteArray("\r\033[K[1/2] Measure"
                        "\r\033[K[1/2] Measure: 3 results"
                        "\r\033[K[1/2] Measure: Négative\n"
                        "\r\033[K[2/2] Save"
                        "\r\033[K"));
}

void TstDiagnosticProgress::aLongLine_isCutAtTheTerminalsWidth()
{
    const QByteArray bytes = written(true, 20, [](Progress &progress) {
        progress.setTotal(1);
        progress.begin(QStringLiteral("Measure the whole kitchen"));
    });
    QCOMPARE(bytes, QByteArray("\r\033[K[1/1] Measure the …\r\033[K"));
}

QTEST_GUILESS_MAIN(TstDiagnosticProgress)
#include "tst_diagnostic_progress.moc"
