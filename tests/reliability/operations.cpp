// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include "operations.h"

#include <QFile>
#include <QTemporaryDir>

#include "databaseitemlistmodel.h"
#include "halvar-error.h"
#include "logrecorder.h"
#include "measure.h"
#include "measurelistmodel.h"
#include "shocklistmodel.h"
#include "ud.h"
#include "udlistmodel.h"

namespace {

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// The measures of a diagnostic of 40 units; each run adds one more.
class SaveDiagnostic : public Operation
{
public:
    SaveDiagnostic(ControllerFixture &controller, const TestHome &home)
        : Operation(QStringLiteral("diagnostic"), home.path() + QStringLiteral("/files/Maison.xml"),
                    home.path() + QStringLiteral("/files/Maison.tmp"))
        , m_controller(controller)
    { }

    QString begin() override
    {
        m_controller->initFile();
        if (!QFile::exists(file)) {
            m_controller->setFileName(QStringLiteral("Maison"));
            for (int i = 0; i < 40; ++i)
                addUnit(i);
            return QString();
        }
        LogRecorder log;
        m_controller->loadFile(file);
        if (!log.lines(QStringLiteral("ERROR")).isEmpty())
            return log.lines(QStringLiteral("ERROR")).join(QLatin1Char('\n'));
        if (m_controller->uds->count() != 40)
            return QStringLiteral("%1 units").arg(m_controller->uds->count());
        return QString();
    }

    void run() override
    {
        MeasureListModel *measures = m_controller->uds->at(7)->measures();
        auto *measure = new Measure;
        measure->setIdNAP(measures->count() + 1);
        measures->append(measure);
        m_controller->saveFile();
    }

    int errorLines(bool) const override { return 1; }

private:
    void addUnit(int number)
    {
        auto *unit = new UD;
        unit->setLocal(QStringLiteral("Pièce %1").arg(number));
        unit->setRevetement(QStringLiteral("Peinture"));
        m_controller->uds->append(unit);
    }

    ControllerFixture &m_controller;
};

class RecordShock : public Operation
{
public:
    explicit RecordShock(const TestHome &home)
        : Operation(QStringLiteral("shock history"), home.file(QStringLiteral("shock/shock.xml")),
                    home.file(QStringLiteral("shock/shock.xml.tmp")))
        , m_home(home)
    { }

    QString begin() override
    {
        m_error = std::make_unique<Error>(m_home.path());
        const int expected = contentOf(file).count("<shock>");
        const int found = ShockListModel(m_home.path(), nullptr).count();
        if (found != expected || (expected && m_error->lastShock().isEmpty()))
            return QStringLiteral("%1 shocks of %2").arg(found).arg(expected);
        return QString();
    }
    void run() override { m_error->setShock(true); }
    // An open that fails counts as a file that cannot be written, of which nothing is said.
    int errorLines(bool opened) const override { return opened ? 1 : 0; }

private:
    const TestHome &m_home;
    std::unique_ptr<Error> m_error;
};

class WriteDatabase : public Operation
{
public:
    explicit WriteDatabase(const TestHome &home)
        : Operation(QStringLiteral("reference database"),
                    home.file(QStringLiteral("database/database_unit.xml")),
                    home.file(QStringLiteral("database/database_unit.xml.tmp")))
        , m_home(home)
    { }

    QString begin() override
    {
        m_database = std::make_unique<Database>();
        if (!m_database->read(m_home.path()) && QFile::exists(file))
            return QStringLiteral("not read");
        const int expected = contentOf(file).count("<title");
        const int found =
            m_database->m_LocalItemsListModel->count() + m_database->m_RevetementItemsListModel->count();
        return found == expected ? QString() : QStringLiteral("%1 items of %2").arg(found).arg(expected);
    }
    void run() override
    {
        DatabaseItemListModel *rooms = m_database->m_LocalItemsListModel;
        rooms->add(QStringLiteral("Pièce %1").arg(rooms->count()), QString());
        m_database->write();
    }
    int errorLines(bool opened) const override { return opened ? 1 : 0; }

private:
    const TestHome &m_home;
    std::unique_ptr<Database> m_database;
};

/// Loads a diagnostic that names a room which the reference database does not know.
class ImportRoom : public Operation
{
public:
    ImportRoom(ControllerFixture &controller, const TestHome &home)
        : Operation(QStringLiteral("room of a loaded diagnostic"),
                    home.file(QStringLiteral("database/database_unit.xml")),
                    home.file(QStringLiteral("database/database_unit.xml.tmp")))
        , m_controller(controller)
        , m_home(home)
    { }

    QString begin() override
    {
        const Database &database = m_controller.database;
        for (DatabaseItemListModel *list :
             {database.m_LocalItemsListModel, database.m_ElementItemsListModel,
              database.m_SubstratItemsListModel, database.m_RevetementItemsListModel})
            list->clear();
        const bool read = m_controller.database.read(m_home.path());
        return read || !QFile::exists(file) ? QString() : QStringLiteral("not read");
    }
    void run() override
    {
        QTemporaryDir elsewhere;
        QFile diagnostic(elsewhere.filePath(QStringLiteral("import.xml")));
        if (!diagnostic.open(QIODevice::WriteOnly))
            qFatal("Cannot write %s", qPrintable(diagnostic.fileName()));
        diagnostic.write(
            QStringLiteral("<Dossier><Uds><Ud><Local>Cave %1</Local><Revetement>Chaux</Revetement>"
                           "</Ud></Uds></Dossier>")
                .arg(m_controller.database.m_LocalItemsListModel->count())
                .toUtf8());
        diagnostic.close();
        m_controller->initFile();
        m_controller->loadFile(diagnostic.fileName());
    }
    int errorLines(bool opened) const override { return opened ? 1 : 0; }

private:
    ControllerFixture &m_controller;
    const TestHome &m_home;
};

/// The MSP answers with another version each time.
class WriteInformation : public Operation
{
public:
    explicit WriteInformation(ControllerFixture &controller)
        : Operation(QStringLiteral("information file"), QStringLiteral("/data/lambrik/info.txt"),
                    QStringLiteral("/data/lambrik/info.txt.tmp"))
        , m_controller(controller)
    { }

    QString begin() override
    {
        m_version = 0;
        if (!QFile::exists(file))
            return QString();
        const QList<QByteArray> lines = contentOf(file).split('\n');
        if (lines.size() != 7 || !lines.at(6).isEmpty() || !lines.at(3).startsWith("MSP Firmware version\t"))
            return QStringLiteral("not six lines");
        m_version = lines.at(3).mid(lines.at(3).indexOf('\t') + 1).toInt();
        return QString();
    }
    void run() override
    {
        MSPInfo info;
        info.fwVersion = QString::number(++m_version);
        info.MSPVersion = QStringLiteral("1.0");
        m_controller->msp_info_reply(info);
    }
    int errorLines(bool) const override { return 0; }

private:
    ControllerFixture &m_controller;
    int m_version = 0;
};

} // namespace

std::vector<std::unique_ptr<Operation>> allOperations(ControllerFixture &controller, const TestHome &home)
{
    std::vector<std::unique_ptr<Operation>> all;
    all.push_back(std::make_unique<SaveDiagnostic>(controller, home));
    all.push_back(std::make_unique<RecordShock>(home));
    all.push_back(std::make_unique<WriteDatabase>(home));
    all.push_back(std::make_unique<ImportRoom>(controller, home));
    all.push_back(std::make_unique<WriteInformation>(controller));
    return all;
}
