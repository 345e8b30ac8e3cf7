// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
//
// Every operation that replaces a file, ended or failed at each of its file-system calls in turn.
#include <QDir>
#include <QTest>

#include <cerrno>
#include <memory>

#include "trial.h"

using faultshim::Fault;

class TstPowerCut : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<TestHome> m_home;
    std::unique_ptr<ControllerFixture> m_controller;
    std::vector<std::unique_ptr<Operation>> m_operations;

    void addOperations() const
    {
        QTest::addColumn<int>("operation");
        QTest::addColumn<int>("before");
        addRows(QString());
        // Its directory lets it be replaced all the same.
        QTest::addRow("protected diagnostic") << 0 << int(Trial::Protected);
    }

    void addRows(const QString &prefix) const
    {
        for (size_t i = 0; i < m_operations.size(); ++i) {
            const QByteArray name = (prefix + m_operations[i]->name).toUtf8();
            QTest::addRow("%s", name.constData()) << int(i) << int(Trial::Exists);
            QTest::addRow("%s, for the first time", name.constData()) << int(i) << int(Trial::Missing);
        }
    }

    std::unique_ptr<Trial> trial() const
    {
        QFETCH(int, operation);
        QFETCH(int, before);
        return std::make_unique<Trial>(
            *m_operations[static_cast<size_t>(operation)],
            QStringList{QDir::cleanPath(m_home->path()), QStringLiteral("/data/lambrik")},
            Trial::Before(before));
    }

    /// Applies \p survives to each call of \p trial. \return the first complaint, with the call's name.
    template <typename Survives>
    QString eachCall(const Trial &trial, Survives survives)
    {
        for (size_t i = 0; i < trial.calls().size(); ++i) {
            const QString complaint = survives(int(i) + 1, trial.calls()[i].kind);
            if (!complaint.isEmpty())
                return QStringLiteral("call %1 of %2, %3: ")
                           .arg(i + 1)
                           .arg(trial.calls().size())
                           .arg(QString::fromStdString(faultshim::describe(trial.calls()[i])))
                    + complaint;
        }
        return QString();
    }

    QString eachCallFails(const Trial &trial, Fault fault, int error)
    {
        return eachCall(trial, [&](int call, faultshim::Kind) {
            faultshim::Plan plan;
            plan.fault = fault;
            plan.call = call;
            plan.error = error;
            return trial.survivesFault(plan);
        });
    }

private slots:
    void initTestCase()
    {
        QVERIFY2(qEnvironmentVariableIsSet("HALVAR_INSTRUMENT"),
                 "Run through simulator/instrument: this test writes /data.");
        m_home = std::make_unique<TestHome>();
        m_controller = std::make_unique<ControllerFixture>(*m_home);
        m_operations = allOperations(*m_controller, *m_home);
    }
    void cleanupTestCase()
    {
        qInfo("%d runs, each with one fault", Trial::runs());
        m_operations.clear();
        m_controller.reset();
    }

    void killedAtAnyCall_leavesTheOldOrTheNewFile_data() { addOperations(); }
    void killedAtAnyCall_leavesTheOldOrTheNewFile()
    {
        const std::unique_ptr<Trial> trial = this->trial();
        QVERIFY2(trial->problem().isEmpty(), qUtf8Printable(trial->problem()));
        QVERIFY(trial->calls().size()
                >= 7); // open, write, sync, close, rename; open and sync of the directory
        const QString complaint = eachCall(*trial, [&](int call, faultshim::Kind kind) {
            const QString half = kind == faultshim::Kind::Write
                ? trial->survivesKill(Fault::KillHalfWritten, call)
                : QString();
            return half.isEmpty() ? trial->survivesKill(Fault::Kill, call) : half;
        });
        QVERIFY2(complaint.isEmpty(), qUtf8Printable(complaint));
    }

    void errorAtAnyCall_losesNothing_data() { addOperations(); }
    void errorAtAnyCall_losesNothing()
    {
        const std::unique_ptr<Trial> trial = this->trial();
        QVERIFY2(trial->problem().isEmpty(), qUtf8Printable(trial->problem()));
        for (const int error : {EIO, ENOSPC, EDQUOT, EROFS, EMFILE, EINTR}) {
            QString complaint = eachCallFails(*trial, Fault::FailOnce, error);
            QVERIFY2(complaint.isEmpty(),
                     qUtf8Printable(qt_error_string(error) + QStringLiteral(": ") + complaint));
            if (error == EINTR)
                continue; // no signal comes for ever
            complaint = eachCallFails(*trial, Fault::FailFromHere, error);
            QVERIFY2(complaint.isEmpty(),
                     qUtf8Printable(qt_error_string(error) + QStringLiteral(" from then on: ") + complaint));
        }
    }

    void shortWrite_isContinuedOrUndone_data() { addOperations(); }
    void shortWrite_isContinuedOrUndone()
    {
        const std::unique_ptr<Trial> trial = this->trial();
        QVERIFY2(trial->problem().isEmpty(), qUtf8Printable(trial->problem()));
        const QString complaint = eachCall(*trial, [&](int call, faultshim::Kind kind) {
            if (kind != faultshim::Kind::Write)
                return QString();
            faultshim::Plan plan;
            plan.call = call;
            plan.error = ENOSPC;
            plan.fault = Fault::ShortWrite;
            const QString continued = trial->survivesFault(plan);
            plan.fault = Fault::ShortWriteThenFail;
            return continued.isEmpty() ? trial->survivesFault(plan) : continued;
        });
        QVERIFY2(complaint.isEmpty(), qUtf8Printable(complaint));
    }

    void directoryThatVanishesAtAnyCall_losesNothing_data() { addOperations(); }
    void directoryThatVanishesAtAnyCall_losesNothing()
    {
        const std::unique_ptr<Trial> trial = this->trial();
        QVERIFY2(trial->problem().isEmpty(), qUtf8Printable(trial->problem()));
        const QString complaint =
            eachCall(*trial, [&](int call, faultshim::Kind) { return trial->survivesVanishing(call); });
        QVERIFY2(complaint.isEmpty(), qUtf8Printable(complaint));
    }
};

QTEST_GUILESS_MAIN(TstPowerCut)
#include "tst_powercut.moc"
