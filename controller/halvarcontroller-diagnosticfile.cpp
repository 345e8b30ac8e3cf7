// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
//
// The diagnostic file: one per diagnostic, in home/files/.
#include "halvarcontroller.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <QsLog.h>

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

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// Keeps what stands at \p path beside it, before a save replaces it: what cannot be read here can perhaps be
/// repaired by hand. A copy that is there already is not made again.
/// \return the copy's path, empty when there is none.
QString keepDamaged(const QString &path)
{
    QFile damaged(path);
    if (!damaged.open(QIODevice::ReadOnly))
        return QString();
    const QByteArray content = damaged.readAll();
    const QString first = path + QLatin1String(".damaged");
    QString copy = first;
    for (int number = 1; QFile::exists(copy); ++number) {
        if (contentOf(copy) == content)
            return copy;
        copy = first + QLatin1Char('.') + QString::number(number);
    }
    return halvar::replaceFile(copy, content) ? copy : QString();
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
    const QString replaced = QFileInfo(path).canonicalFilePath();
    if (m_damagedFiles.contains(replaced)) {
        if (keepDamaged(path).isEmpty()) {
            QLOG_ERROR() << "[Halvar Controller]: File" << path
                         << "not saved: the damaged file in its place could not be kept.";
            return;
        }
        m_damagedFiles.remove(replaced);
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
    if (!diagnostic.open(QIODevice::ReadOnly))
        return;
    DiagnosticReader reader(*this, m_database);
    const bool intact = reader.read(&diagnostic);
    diagnostic.close();
    if (!intact) {
        const QString copy = keepDamaged(file);
        if (copy.isEmpty()) {
            m_damagedFiles.insert(QFileInfo(file).canonicalFilePath());
            QLOG_ERROR() << "[Halvar Controller]: File" << file << "damaged:" << reader.error()
                         << "No copy could be kept.";
        } else {
            QLOG_ERROR() << "[Halvar Controller]: File" << file << "damaged:" << reader.error() << "Kept as"
                         << copy;
        }
    }
    QLOG_INFO() << "[Halvar Controller]: File" << file << "loaded.";
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
