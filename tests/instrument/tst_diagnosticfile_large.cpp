// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
//
// Diagnostics far larger than any building gives: time and writes grow with the units, no faster.
#include <QTest>

#include <memory>

#include "diagnostictest.h"
#include "logrecorder.h"

class TstDiagnosticFileLarge : public DiagnosticTest
{
    Q_OBJECT

private slots:
    void diagnostic_isLoadedAndSaved_data()
    {
        QTest::addColumn<int>("units");
        QTest::newRow("10,000 units") << 10000;
        QTest::newRow("100,000 units") << 100000;
    }
    void diagnostic_isLoadedAndSaved()
    {
        QFETCH(int, units);
        const QByteArray whole = DiagnosticFixture::reference("full.xml");
        const int start = whole.indexOf("<Ud ");
        const QByteArray pair = whole.mid(start, whole.indexOf("</Uds>") - start);
        const LogRecorder log(QsLogging::WarnLevel);
        m->load(QByteArray(whole).replace(pair, pair.repeated(units / 2)));
        QCOMPARE((*m)->uds->size(), units);
        QCOMPARE((*m)->uds->at(units - 2)->measures()->size(), 2);
        QCOMPARE(m->database().m_LocalItemsListModel->size(), 1);
        QCOMPARE(m->database().m_ElementItemsListModel->size(), 2);

        const QStringList state = m->state();
        (*m)->saveFile();
        (*m)->initFile();
        (*m)->loadFile(m->path(QStringLiteral("Maison n°1")));
        QCOMPARE(m->state(), state);
        QCOMPARE(log.lines(), QStringList());
    }
};

QTEST_GUILESS_MAIN(TstDiagnosticFileLarge)
#include "tst_diagnosticfile_large.moc"
