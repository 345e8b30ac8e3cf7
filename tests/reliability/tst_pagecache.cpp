// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
//
// Every operation that replaces a file, on a disk that forgets at a power cut what was not synchronised.
#include <QDir>
#include <QTest>

#include <fcntl.h>

#include <algorithm>
#include <memory>

#include "pagecache.h"
#include "trial.h"

using faultshim::Event;
using faultshim::Kind;

namespace {

std::string diskPath(const QString &path)
{
    return QFile::encodeName(QDir::cleanPath(path)).toStdString();
}

pagecache::Disk diskOf(const Trial &trial)
{
    pagecache::Disk disk;
    for (auto file = trial.files().cbegin(); file != trial.files().cend(); ++file)
        disk[diskPath(file.key())] = file.value().toStdString();
    return disk;
}

/// What is wrong with the states that a power cut may leave, empty when nothing is.
QString verdict(const Trial &trial, const Operation &operation, const std::vector<Event> &calls)
{
    const pagecache::Disk before = diskOf(trial);
    const std::string file = diskPath(operation.file);
    const std::string temporary = diskPath(operation.temporary);
    for (const pagecache::State &state : pagecache::statesAfterPowerCut(before, calls)) {
        pagecache::Disk others = state.disk;
        const auto found = others.find(file);
        const QByteArray left =
            found == others.end() ? QByteArray() : withoutTimes(QByteArray::fromStdString(found->second));
        const QString moment = QStringLiteral("after %1 of %2 calls: ").arg(state.calls).arg(calls.size());
        if (left != trial.oldContent() && left != trial.newContent())
            return moment + QStringLiteral("neither the old nor the new file");
        if (state.calls == int(calls.size()) && left != trial.newContent())
            return moment + QStringLiteral("the old file comes back");
        pagecache::Disk rest = before;
        for (pagecache::Disk *disk : {&others, &rest}) {
            disk->erase(file);
            disk->erase(temporary);
        }
        if (others != rest)
            return moment + QStringLiteral("other files changed");
    }
    return QString();
}

bool isDirectorySync(const Event &event)
{
    return event.kind == Kind::Sync && QFileInfo(QString::fromStdString(event.path)).isDir();
}

bool isFileSync(const Event &event)
{
    return event.kind == Kind::Sync && !isDirectorySync(event);
}

} // namespace

class TstPageCache : public QObject
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
        for (size_t i = 0; i < m_operations.size(); ++i) {
            const QByteArray name = m_operations[i]->name.toUtf8();
            QTest::addRow("%s", name.constData()) << int(i) << int(Trial::Exists);
            QTest::addRow("%s, for the first time", name.constData()) << int(i) << int(Trial::Missing);
        }
    }
    Operation &operation() const
    {
        QFETCH(int, operation);
        return *m_operations[static_cast<size_t>(operation)];
    }
    std::unique_ptr<Trial> trial() const
    {
        QFETCH(int, before);
        return std::make_unique<Trial>(
            operation(), QStringList{QDir::cleanPath(m_home->path()), QStringLiteral("/data/lambrik")},
            Trial::Before(before));
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
        m_operations.clear();
        m_controller.reset();
    }

    void lostPageCache_leavesTheOldOrTheNewFile_data() { addOperations(); }
    void lostPageCache_leavesTheOldOrTheNewFile()
    {
        const std::unique_ptr<Trial> trial = this->trial();
        QVERIFY2(trial->problem().isEmpty(), qUtf8Printable(trial->problem()));
        const QString complaint = verdict(*trial, operation(), trial->calls());
        QVERIFY2(complaint.isEmpty(), qUtf8Printable(complaint));
    }

    // The same calls with one mistake each: the model would see it.

    void missingFileSync_isSeen_data() { addOperations(); }
    void missingFileSync_isSeen()
    {
        const std::unique_ptr<Trial> trial = this->trial();
        std::vector<Event> calls = trial->calls();
        calls.erase(std::remove_if(calls.begin(), calls.end(), isFileSync), calls.end());
        QVERIFY(calls.size() < trial->calls().size());
        QVERIFY(
            verdict(*trial, operation(), calls).contains(QStringLiteral("neither the old nor the new file")));
    }

    void fileSyncAfterTheRename_isSeen_data() { addOperations(); }
    void fileSyncAfterTheRename_isSeen()
    {
        const std::unique_ptr<Trial> trial = this->trial();
        std::vector<Event> calls = trial->calls();
        const auto sync = std::find_if(calls.begin(), calls.end(), isFileSync);
        const auto close =
            std::find_if(sync, calls.end(), [](const Event &event) { return event.kind == Kind::Close; });
        const auto rename =
            std::find_if(close, calls.end(), [](const Event &event) { return event.kind == Kind::Rename; });
        QVERIFY(rename != calls.end());
        std::rotate(sync, rename, rename + 1);
        QVERIFY(
            verdict(*trial, operation(), calls).contains(QStringLiteral("neither the old nor the new file")));
    }

    void missingDirectorySync_isSeen_data() { addOperations(); }
    void missingDirectorySync_isSeen()
    {
        const std::unique_ptr<Trial> trial = this->trial();
        std::vector<Event> calls = trial->calls();
        calls.erase(std::remove_if(calls.begin(), calls.end(), isDirectorySync), calls.end());
        QVERIFY(calls.size() < trial->calls().size());
        QVERIFY(verdict(*trial, operation(), calls).contains(QStringLiteral("the old file comes back")));
    }

    void writingInPlace_isSeen_data() { addOperations(); }
    void writingInPlace_isSeen()
    {
        const std::unique_ptr<Trial> trial = this->trial();
        std::vector<Event> calls;
        for (Event event : trial->calls()) {
            if (event.kind == Kind::Rename || event.kind == Kind::Unlink)
                continue;
            if (event.path == diskPath(operation().temporary))
                event.path = diskPath(operation().file);
            if (event.kind == Kind::Open && (event.flags & O_CREAT))
                event.flags |= O_TRUNC;
            calls.push_back(event);
        }
        QVERIFY(
            verdict(*trial, operation(), calls).contains(QStringLiteral("neither the old nor the new file")));
    }
};

QTEST_GUILESS_MAIN(TstPageCache)
#include "tst_pagecache.moc"
