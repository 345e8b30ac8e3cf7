// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
//
// Files that could not be read whole, because they are damaged or because the file system failed, and that
// are replaced later all the same: what they hold must be found somewhere.
#include <QDir>
#include <QDirIterator>
#include <QTest>

#include <cerrno>
#include <memory>

#include "databaseitemlistmodel.h"
#include "halvar-error.h"
#include "logrecorder.h"
#include "trial.h"
#include "udlistmodel.h"

using faultshim::Fault;

namespace {

const QByteArray rooms = "<database_unit><locaux><item type=\"locaux\"><image/><title>Cave</title></item>"
                         "<item type=\"locaux\"><image/><title>Grenier</title></item></locaux>"
                         "<elements/><substrats/><revetements/></database_unit>";
const QByteArray shocks = "<history_shocks><shock>01-02-2023 10:11:12 CET</shock>"
                          "<shock>02-02-2023 10:11:12 CET</shock></history_shocks>";
const QByteArray diagnostic = "<Dossier><Informations><Nom>Maison</Nom></Informations><Uds>"
                              "<Ud><Local>Cave</Local><Zone>A</Zone></Ud><Ud><Local>Grenier</Local></Ud>"
                              "</Uds></Dossier>";

/// Broken off in its last room or shock.
QByteArray damaged(const QByteArray &content)
{
    return content.left(qMax(content.lastIndexOf("nier"), content.lastIndexOf("-2023")));
}

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

class TstUnreadFiles : public QObject
{
    Q_OBJECT

private:
    struct Case
    {
        const char *name;
        QString file;
        QByteArray content;
        QByteArrayList kept; ///< words that must all stand in the file, or else \a content beside it
        std::function<void()> read;
        std::function<void()> replace;
    };

    std::unique_ptr<TestHome> m_home;
    std::unique_ptr<ControllerFixture> m_controller;
    std::vector<Case> m_cases;
    std::unique_ptr<Error> m_error;
    std::unique_ptr<Database> m_database;
    int m_runs = 0;

    HalvarController &controller() const { return *m_controller->controller; }

    void addCases()
    {
        QTest::addColumn<int>("number");
        for (size_t i = 0; i < m_cases.size(); ++i)
            QTest::addRow("%s", m_cases[i].name) << int(i);
    }

    const Case &current() const
    {
        QFETCH(int, number);
        return m_cases[static_cast<size_t>(number)];
    }

    static QStringList filesBeside(const QString &file)
    {
        QStringList files;
        QDirIterator all(QFileInfo(file).path(), QDir::Files | QDir::Hidden);
        while (all.hasNext())
            files.append(all.next());
        return files;
    }

    static void put(const QString &path, const QByteArray &content)
    {
        for (const QString &file : filesBeside(path)) {
            // The diagnostic reasons, without which the reference lists count as not read.
            if (!file.endsWith(QStringLiteral("database_diagnostic.xml")))
                QFile::remove(file);
        }
        QFile file(path);
        if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
            qFatal("Cannot write %s", qPrintable(path));
    }

    /// What is lost of \p content, empty when nothing is.
    static QString lost(const Case &what, const QByteArray &content)
    {
        for (const QString &file : filesBeside(what.file)) {
            if (contentOf(file) == content)
                return QString();
        }
        const QByteArray left = contentOf(what.file);
        for (const QByteArray &word : what.kept) {
            if (!left.contains(word))
                return QStringLiteral("\"%1\" is lost; there are ").arg(QString::fromUtf8(word))
                    + filesBeside(what.file).join(QStringLiteral(", ")) + QStringLiteral(" with ")
                    + QString::fromUtf8(left);
        }
        return QString();
    }

    faultshim::Plan plan(Fault fault, int call, int error) const
    {
        faultshim::Plan plan;
        plan.directories = {QFile::encodeName(QDir::cleanPath(m_home->path())).toStdString()};
        plan.fault = fault;
        plan.call = call;
        plan.error = error;
        return plan;
    }

    /// How many calls \p first makes on a file with \p content.
    int callsOf(const Case &what, const QByteArray &content, const std::function<void()> &first) const
    {
        put(what.file, content);
        return inChild([&] {
                   faultshim::arm(plan(Fault::None, 0, 0));
                   first();
                   return QString::number(faultshim::disarm().size());
               })
            .toInt();
    }

    /// Runs \p first under a fault at each of its calls, then \p second without one. \return the first loss.
    QString eachCall(const Case &what, const QByteArray &content, Fault fault, int error,
                     const std::function<void()> &first, const std::function<void()> &second)
    {
        const int calls = callsOf(what, content, first);
        if (calls < 3) // open, read, close
            return QStringLiteral("only %1 calls seen").arg(calls);
        for (int call = 1; call <= calls; ++call) {
            put(what.file, content);
            ++m_runs;
            QString complaint = inChild([&] {
                faultshim::arm(plan(fault, call, error));
                first();
                faultshim::disarm();
                second();
                return lost(what, content);
            });
            if (fault == Fault::Kill) {
                if (complaint != QStringLiteral("killed by signal 9"))
                    return QStringLiteral("not killed at call %1: ").arg(call) + complaint;
                complaint = lost(what, content);
                // The instrument starts again, and replaces the file without a further fault.
                if (complaint.isEmpty()) {
                    complaint = inChild([&] {
                        first();
                        second();
                        return lost(what, content);
                    });
                }
            }
            if (!complaint.isEmpty())
                return QStringLiteral("call %1 of %2: ").arg(call).arg(calls) + complaint;
        }
        return QString();
    }

private slots:
    void initTestCase()
    {
        QVERIFY2(qEnvironmentVariableIsSet("HALVAR_INSTRUMENT"),
                 "Run through simulator/instrument: this test runs shell commands.");
        m_home = std::make_unique<TestHome>();
        m_controller = std::make_unique<ControllerFixture>(*m_home);
        const QString house = m_home->path() + QStringLiteral("/files/Maison.xml");
        m_cases = {
            {"diagnostic",
             house,
             diagnostic,
             {"Cave", "Grenier"},
             [this, house] {
                 controller().initFile();
                 controller().loadFile(house);
             },
             [this] {
                 controller().setFileName(QStringLiteral("Maison"));
                 controller().saveFile();
             }},
            {"shock history",
             m_home->file(QStringLiteral("shock/shock.xml")),
             shocks,
             {"01-02-2023", "02-02-2023"},
             [this] { m_error = std::make_unique<Error>(m_home->path()); },
             [this] { m_error->setShock(true); }},
            {"reference database",
             m_home->file(QStringLiteral("database/database_unit.xml")),
             rooms,
             {"Cave", "Grenier"},
             [this] {
                 m_database = std::make_unique<Database>();
                 m_database->read(m_home->path());
             },
             [this] { m_database->write(); }},
        };
    }
    void cleanupTestCase()
    {
        qInfo("%d runs, each with one fault", m_runs);
        m_controller.reset();
    }

    void fileThatCouldNotBeRead_isNotLostWhenItIsReplaced_data() { addCases(); }
    void fileThatCouldNotBeRead_isNotLostWhenItIsReplaced()
    {
        const Case &what = current();
        for (const int error : {EIO, EMFILE, EINTR}) {
            for (const Fault fault : {Fault::FailOnce, Fault::FailFromHere}) {
                if (error == EINTR && fault == Fault::FailFromHere)
                    continue; // no signal comes for ever
                const QString complaint = eachCall(what, what.content, fault, error, what.read, what.replace);
                QVERIFY2(complaint.isEmpty(),
                         qUtf8Printable(qt_error_string(error) + QStringLiteral(", ") + complaint));
            }
        }
    }

    void damagedFile_isNotLostByErrorsWhileItIsReplaced_data() { addCases(); }
    void damagedFile_isNotLostByErrorsWhileItIsReplaced()
    {
        const Case &what = current();
        const auto both = [&] {
            what.read();
            what.replace();
        };
        for (const int error : {EIO, ENOSPC, EMFILE}) {
            for (const Fault fault : {Fault::FailOnce, Fault::FailFromHere}) {
                const QString complaint =
                    eachCall(what, damaged(what.content), fault, error, both, what.replace);
                QVERIFY2(complaint.isEmpty(),
                         qUtf8Printable(qt_error_string(error) + QStringLiteral(", ") + complaint));
            }
        }
    }

    void damagedFile_isNotLostByAPowerCutWhileItIsReplaced_data() { addCases(); }
    void damagedFile_isNotLostByAPowerCutWhileItIsReplaced()
    {
        const Case &what = current();
        const auto both = [&] {
            what.read();
            what.replace();
        };
        const QString complaint = eachCall(what, damaged(what.content), Fault::Kill, 0, both, [] {});
        QVERIFY2(complaint.isEmpty(), qUtf8Printable(complaint));
    }

    void damagedFile_isKeptOnce_data() { addCases(); }
    void damagedFile_isKeptOnce()
    {
        const Case &what = current();
        put(what.file, damaged(what.content));
        for (int i = 0; i < 3; ++i) {
            what.read();
            what.replace();
            what.replace();
        }
        QCOMPARE(contentOf(what.file + QStringLiteral(".damaged")), damaged(what.content));
        QVERIFY(!QFile::exists(what.file + QStringLiteral(".damaged.1")));
        QVERIFY(!QFile::exists(what.file + QStringLiteral(".damaged.tmp")));
    }
};

QTEST_GUILESS_MAIN(TstUnreadFiles)
#include "tst_unreadfiles.moc"
