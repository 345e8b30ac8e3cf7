// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
//
// The diagnostic file: one per diagnostic, in home/files/.
#include "halvarcontroller.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>

#include <QsLog.h>

#include "damagedfile.h"
#include "database.h"
#include "diagnosticreader.h"
#include "diagnosticwriter.h"
#include "filereplace.h"
#include "measure.h"
#include "udlistmodel.h"

namespace {

/// Why a diagnostic cannot have this name, null when it can: it must stay inside files/, and the file system
/// would end it at a null character.
const char *refusalOf(const QString &name)
{
    if (name.contains(QLatin1Char('/')))
        return "the name must not contain a slash.";
    if (name.contains(QChar(0)))
        return "the name must not contain a null character.";
    return nullptr;
}

/// The names that a file may be known by: its own, and the one given where its links cannot be followed.
QStringList namesOf(const QString &path)
{
    const QFileInfo file(path);
    QStringList names{QDir::cleanPath(file.absoluteFilePath())};
    const QString canonical = file.canonicalFilePath();
    if (!canonical.isEmpty() && canonical != names.first())
        names.append(canonical);
    return names;
}

} // namespace

void HalvarController::saveFile()
{
    if (m_fileName.isEmpty())
        return;
    const QString base = m_home + QLatin1String("/files/") + m_fileName;
    const QString path = base + QLatin1String(".xml");
    if (const char *const refusal = refusalOf(m_fileName)) {
        QLOG_ERROR() << "[Halvar Controller]: File" << path << "not saved:" << refusal;
        return;
    }
    const QStringList names = namesOf(path);
    const auto isDamaged = [this](const QString &name) { return m_damagedFiles.contains(name); };
    if (std::any_of(names.cbegin(), names.cend(), isDamaged)) {
        if (!halvar::keepBeforeReplacing(path)) {
            halvar::logNotKept(path);
            return;
        }
        for (const QString &name : names)
            m_damagedFiles.remove(name);
    }
    halvar::ReplaceFailure failure;
    const QByteArray document = DiagnosticWriter(*this, m_database).document();
    const bool saved = halvar::replaceFile(path, document, &failure, base + QLatin1String(".tmp"));
    if (failure)
        halvar::logReplaceFailure(path, failure);
    if (!saved)
        return;
    QLOG_INFO() << "[Halvar Controller]: File" << path << "saved.";
}

void HalvarController::loadFile(QString file)
{
    QFile diagnostic(file);
    // The XML reader brings the ends of lines into one form itself. The device must not: it would take
    // bytes out of a UTF-16 document.
    if (!diagnostic.open(QIODevice::ReadOnly)) {
        markDamaged(file);
        return;
    }
    DiagnosticReader reader(*this, m_database);
    const bool intact = reader.read(&diagnostic);
    const QString damage = diagnostic.error() == QFile::NoError ? reader.error() : diagnostic.errorString();
    diagnostic.close();
    if (!intact) {
        const QString copy = halvar::keepDamaged(file);
        if (copy.isEmpty()) {
            markDamaged(file);
            QLOG_ERROR() << "[Halvar Controller]: File" << file << "damaged:" << damage
                         << "No copy could be kept.";
        } else {
            QLOG_ERROR() << "[Halvar Controller]: File" << file << "damaged:" << damage << "Kept as" << copy;
        }
    }
    QLOG_INFO() << "[Halvar Controller]: File" << file << "loaded.";
}

void HalvarController::markDamaged(const QString &path)
{
    const QStringList names = namesOf(path);
    for (const QString &name : names)
        m_damagedFiles.insert(name);
}

void HalvarController::initFile()
{
    setFileName(QString());
    setLocalization(QString());
    coulures = false;
    emit couluresChanged();
    effondrement = false;
    emit effondrementChanged();
    humidite = false;
    emit humiditeChanged();
    setAccuracyStage(AccuracyStageEnumClass::ACCURACY_INIT);
    accuracyInit->reset();
    accuracyInterrupt->reset();
    accuracyFinal->reset();
    uds->clear();
}

void HalvarController::removeFile(QString file)
{
    if (QFile::exists(file))
        QFile::remove(file);
}

void HalvarController::removeFiles(const QString &directory, bool removeDirectory)
{
    // An empty path would be the directory that the interface happens to run in.
    if (directory.isEmpty())
        return;
    QDir files(directory);
    const QStringList names =
        files.entryList(QDir::Files | QDir::Hidden | QDir::NoDotAndDotDot, QDir::Unsorted);
    for (const QString &name : names)
        files.remove(name);
    if (removeDirectory)
        QDir().rmdir(directory);
}

void HalvarController::removeMeasureFiles()
{
    removeFiles(QStringLiteral("/data/marten/data/measure"), false);
    removeFiles(QStringLiteral("/data/marten/data"), false);
    removeFiles(QStringLiteral("/data/lambrik/files"), false);
    removeFiles(QStringLiteral("/data/lambrik/shock"), false);
    removeFiles(QStringLiteral("/data/lambrik/logs"), false);
}
