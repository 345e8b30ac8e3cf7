// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include <QDir>
#include <QDirIterator>
#include <QFileInfo>
#include <QProcess>
#include <QRegularExpression>
#include <QSet>
#include <QStandardPaths>
#include <QTest>

#include <ctime>

#include "config.h"
#include "database.h"
#include "databaseitem.h"
#include "databaseitemlistmodel.h"
#include "halvarcontroller.h"
#include "logrecorder.h"
#include "measure.h"
#include "measurelistmodel.h"
#include "shock.h"
#include "shocklistmodel.h"
#include "ud.h"
#include "udlistmodel.h"

namespace {

using Accuracy = AccuracyStageEnumClass;
using Decision = DetectionDecisionEnumClass;
using Degradation = DegradationStateEnumClass;
using Statut = UDStatutEnumClass;

const QString source = QStringLiteral(HALVAR_SOURCE_DIR "/simulator/home/");
/// The instrument's own place for it: the diagnostics name their pictures there.
const QString home = QStringLiteral("/data/lambrik/");

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// \p document with its date taken out, empty unless it holds exactly one in the instrument's form.
QByteArray undated(const QByteArray &document)
{
    static const QRegularExpression date(
        QStringLiteral("<Date>\\d\\d-\\d\\d-\\d{4} \\d\\d:\\d\\d:\\d\\d</Date>"));
    const QString text = QString::fromUtf8(document);
    return text.count(date) == 1 ? QString(text).remove(date).toUtf8() : QByteArray();
}

QStringList titlesOf(const DatabaseItemListModel *list)
{
    QStringList titles;
    for (const DatabaseItem *item : list->toList())
        titles.append(item->title());
    return titles;
}

/// The decision of a shot: two sigma away from 1 mg/cm², or none.
Decision::DetectionDecision decisionOf(const Measure &measure)
{
    constexpr double threshold = 1.0;
    // Written with two decimals; their sums are not exact.
    constexpr double tolerance = 1e-9;
    if (measure.concentration() - 2 * measure.sigma() >= threshold - tolerance)
        return Decision::POSITIVE;
    if (measure.concentration() + 2 * measure.sigma() <= threshold + tolerance)
        return Decision::NEGATIVE;
    return Decision::NOT_DETERMINED;
}

/// A controller on the copied home, without its links.
struct Instrument
{
    Instrument()
        : configRead(config.read(home))
        , databaseRead(database.read(home))
        , controller(home, &config, &database)
    { }
    Config config{nullptr};
    Database database{nullptr};
    const bool configRead;
    const bool databaseRead;
    HalvarController controller;
};

} // namespace

/// The sample home that the simulated instrument is shown with.
class TstSampleHome : public QObject
{
    Q_OBJECT

private:
    static void copyHome();
    static void addDiagnostics();

private slots:
    void initTestCase();
    void init() { copyHome(); }

    void configuration_isReadInFull();
    void referenceLists_areReadInFull();
    void everyPictureThatIsNamed_isASmallPng();
    void everyPicture_isNamedByOneItem();
    void unitFile_isWrittenBackAsItIs();
    void diagnosticsOfAllSizes_arePresent();
    void diagnostic_isSavedBackAsItIs_data() { addDiagnostics(); }
    void diagnostic_isSavedBackAsItIs();
    void loadedDiagnostic_addsNothingToTheLists_data() { addDiagnostics(); }
    void loadedDiagnostic_addsNothingToTheLists();
    void units_haveTheStatutOfTheirMeasures_data() { addDiagnostics(); }
    void units_haveTheStatutOfTheirMeasures();
    void measures_arePlausible_data() { addDiagnostics(); }
    void measures_arePlausible();
    void roomThatWasPutAside_isOfferedAgainByADiagnostic();
    void uncalibratedDiagnostic_hasAllThreeChecks();
    void shocks_areWrittenBackAsTheyAre();
    void pictures_areWhatTheScriptDraws();
};

void TstSampleHome::initTestCase()
{
    // It replaces the home of the machine it runs on.
    QVERIFY2(qEnvironmentVariableIsSet("HALVAR_INSTRUMENT"), "runs only inside simulator/instrument");
    // The stored shocks carry this zone's names.
    qputenv("TZ", "Europe/Paris");
    tzset();
}

void TstSampleHome::copyHome()
{
    for (const char *directory : {"config", "database", "files", "shock"})
        QDir(home + QLatin1String(directory)).removeRecursively();
    QDirIterator files(source, QDir::Files, QDirIterator::Subdirectories);
    while (files.hasNext()) {
        const QString path = files.next();
        const QString copy = home + QDir(source).relativeFilePath(path);
        QVERIFY(QDir().mkpath(QFileInfo(copy).path()));
        QFile::remove(copy);
        QVERIFY2(QFile::copy(path, copy), qPrintable(copy));
    }
}

void TstSampleHome::addDiagnostics()
{
    QTest::addColumn<QString>("path");
    const QFileInfoList files = QDir(source + QLatin1String("files")).entryInfoList(QDir::Files);
    QVERIFY(!files.isEmpty());
    for (const QFileInfo &file : files) {
        QTest::newRow(qPrintable(file.completeBaseName()))
            << QString(home + QLatin1String("files/") + file.fileName());
    }
}

void TstSampleHome::configuration_isReadInFull()
{
    Config config;
    const LogRecorder log;
    QVERIFY(config.read(home));
    QCOMPARE(config.VersionXMLFile(), QStringLiteral("1.0"));
    QCOMPARE(config.VersionLambrik(), QStringLiteral("4.0.9"));
    QCOMPARE(config.VersionAppSAV(), QStringLiteral("2.1.0"));
    QCOMPARE(config.VersionMarten(), QStringLiteral("3.2.1"));
    QCOMPARE(config.getSN_Analyzer(), QStringLiteral("SIM-0001"));
    QCOMPARE(config.getWifiPassword(), QStringLiteral("instrument-simule"));
    QCOMPARE(config.Nbr_Energy_Adj_Test(), 3);
    QCOMPARE(config.DateEndSource(), QDate(2049, 12, 31));
    QCOMPARE(config.Password(), 12345);
    QCOMPARE(config.getN_ASN(), QStringLiteral("SIM-ASN-000001"));
    QCOMPARE(config.getN_VISA(), QStringLiteral("SIM-VISA-000001"));
    QCOMPARE(config.Beep_Time(), 1);
    QCOMPARE(config.Led_Light_Off(), 20);
    QCOMPARE(config.Type_End_Measure(), QStringLiteral("gachette"));
    QCOMPARE(config.Time_Before_Open_Shutter(), 300);
    QCOMPARE(config.Time_Measure(), 3);
    QCOMPARE(config.Nbr_Measure(), 3);
    QCOMPARE(config.getWaiting_For_Go(), 2);
    QCOMPARE(config.Nist_InformationValue(), 1.04f);
    QCOMPARE(config.Nist_InformationPrecision(), 0.15f);
    QCOMPARE(config.Maxtime_Error_Status(), 10);
    QCOMPARE(config.Remaining_Time_Before_EndSource(), 6);
    QVERIFY(log.lines(QStringLiteral("TRACE")).filter(QStringLiteral("not taken into account")).isEmpty());
}

void TstSampleHome::referenceLists_areReadInFull()
{
    Database database;
    QVERIFY(database.read(home));
    const struct
    {
        const DatabaseItemListModel *list;
        const char *type;
        int count;
    } lists[] = {
        {database.m_LocalItemsListModel, "locaux", 30},
        {database.m_ElementItemsListModel, "elements", 25},
        {database.m_SubstratItemsListModel, "substrats", 12},
        {database.m_RevetementItemsListModel, "revetements", 12},
        {database.m_NonVisiteItemsListModel, "non_visite", 6},
        {database.m_NonMesureItemsListModel, "non_mesure", 7},
        {database.m_EtatUsageItemsListModel, "etat_usage", 5},
        {database.m_EtatDegradeItemsListModel, "etat_degrade", 7},
    };
    for (const auto &expected : lists) {
        const QStringList titles = titlesOf(expected.list);
        QVERIFY2(titles.count() == expected.count, expected.type);
        QVERIFY2(!titles.contains(QString()), expected.type);
        QVERIFY2(QSet<QString>(titles.begin(), titles.end()).count() == titles.count(), expected.type);
        for (const DatabaseItem *item : expected.list->toList()) {
            QCOMPARE(item->type(), QLatin1String(expected.type));
            QVERIFY2(item->original(), qPrintable(item->title()));
        }
    }
}

void TstSampleHome::everyPictureThatIsNamed_isASmallPng()
{
    Database database;
    QVERIFY(database.read(home));
    for (const DatabaseItemListModel *list :
         {database.m_LocalItemsListModel, database.m_ElementItemsListModel, database.m_SubstratItemsListModel,
          database.m_RevetementItemsListModel}) {
        for (const DatabaseItem *item : list->toList()) {
            // Empty where the file is missing.
            QVERIFY2(item->image().startsWith(QLatin1String("file:") + home), qPrintable(item->title()));
            const QByteArray picture = contentOf(item->image().mid(5));
            // Signature, then the first chunk: its kind, width 48, height 48.
            QVERIFY2(picture.startsWith(QByteArray("\x89PNG\r\n\x1a\n", 8)), qPrintable(item->image()));
            QCOMPARE(picture.mid(12, 12), QByteArray("IHDR\0\0\0\x30\0\0\0\x30", 12));
            QVERIFY2(picture.size() < 1000, qPrintable(item->image()));
        }
    }
}

void TstSampleHome::everyPicture_isNamedByOneItem()
{
    Database database;
    QVERIFY(database.read(home));
    QStringList named;
    for (const DatabaseItemListModel *list :
         {database.m_LocalItemsListModel, database.m_ElementItemsListModel, database.m_SubstratItemsListModel,
          database.m_RevetementItemsListModel}) {
        for (const DatabaseItem *item : list->toList())
            named.append(item->image().mid(5));
    }
    QStringList present;
    QSet<QByteArray> contents;
    QDirIterator files(home + QLatin1String("database"), {QStringLiteral("*.png")}, QDir::Files,
                       QDirIterator::Subdirectories);
    while (files.hasNext()) {
        present.append(files.next());
        contents.insert(contentOf(present.last()));
        static const QRegularExpression plain(QStringLiteral("\\A[a-z0-9-]+\\.png\\z"));
        QVERIFY2(plain.match(files.fileName()).hasMatch(), qPrintable(files.fileName()));
    }
    named.sort();
    present.sort();
    QCOMPARE(present, named);
    // Nobody could tell two items of the same picture apart.
    QCOMPARE(contents.count(), present.count());
}

void TstSampleHome::unitFile_isWrittenBackAsItIs()
{
    const QString path = home + QLatin1String("database/database_unit.xml");
    const QByteArray before = contentOf(path);
    Database database;
    QVERIFY(database.read(home));
    QVERIFY(QFile::remove(path));
    QVERIFY(database.write());
    QCOMPARE(contentOf(path), before);
}

void TstSampleHome::diagnosticsOfAllSizes_arePresent()
{
    Instrument instrument;
    QVERIFY(instrument.configRead);
    QVERIFY(instrument.databaseRead);
    QMap<QString, int> units;
    const QFileInfoList files = QDir(home + QLatin1String("files")).entryInfoList(QDir::Files);
    for (const QFileInfo &file : files) {
        instrument.controller.initFile();
        instrument.controller.loadFile(file.filePath());
        units.insert(file.completeBaseName(), instrument.controller.uds->count());
    }
    const QMap<QString, int> expected{{QStringLiteral("Appartement-3e-gauche"), 25},
                                      {QStringLiteral("Cave-7"), 2},
                                      {QStringLiteral("Loge-sans-calibrage"), 6},
                                      {QStringLiteral("Maison-rue-des-Lilas"), 150},
                                      {QStringLiteral("Studio-en-cours"), 8}};
    QCOMPARE(units, expected);
}

void TstSampleHome::diagnostic_isSavedBackAsItIs()
{
    QFETCH(QString, path);
    const QByteArray before = contentOf(path);
    Instrument instrument;
    instrument.controller.initFile();
    const LogRecorder log;
    instrument.controller.loadFile(path);
    QCOMPARE(instrument.controller.fileName(), QFileInfo(path).completeBaseName());
    QVERIFY(!instrument.controller.localization().isEmpty());
    QVERIFY(QFile::remove(path));
    instrument.controller.saveFile();

    QVERIFY(!undated(before).isEmpty());
    QCOMPARE(undated(contentOf(path)), undated(before));
    for (const char *level : {"WARN", "ERROR", "FATAL"})
        QCOMPARE(log.lines(QLatin1String(level)), QStringList());
    QVERIFY(log.lines().filter(QStringLiteral("ignored")).isEmpty());
}

void TstSampleHome::loadedDiagnostic_addsNothingToTheLists()
{
    QFETCH(QString, path);
    Instrument instrument;
    instrument.controller.initFile();
    const LogRecorder log;
    instrument.controller.loadFile(path);
    QVERIFY(log.lines().filter(QStringLiteral("loaded on the fly!")).isEmpty());
    QCOMPARE(instrument.database.m_LocalItemsListModel->count(), 30);
    QCOMPARE(instrument.database.m_ElementItemsListModel->count(), 25);
    QCOMPARE(instrument.database.m_SubstratItemsListModel->count(), 12);
    QCOMPARE(instrument.database.m_RevetementItemsListModel->count(), 12);
}

void TstSampleHome::units_haveTheStatutOfTheirMeasures()
{
    QFETCH(QString, path);
    Instrument instrument;
    const QStringList reasons = titlesOf(instrument.database.m_NonMesureItemsListModel);
    instrument.controller.initFile();
    instrument.controller.loadFile(path);
    QVERIFY(!instrument.controller.uds->isEmpty());
    for (UD *unit : instrument.controller.uds->toList()) {
        const Statut::UDStatut stored = unit->statut();
        if (stored == Statut::SKIPPED) {
            QVERIFY(unit->measures()->isEmpty());
            QVERIFY2(reasons.contains(unit->observation()), qPrintable(unit->observation()));
            continue;
        }
        unit->setStatut(Statut::RAW);
        unit->updateStatut(instrument.config.Nbr_Measure());
        QCOMPARE(unit->statut(), stored);
    }
}

void TstSampleHome::measures_arePlausible()
{
    QFETCH(QString, path);
    Instrument instrument;
    const QStringList worn = titlesOf(instrument.database.m_EtatUsageItemsListModel);
    const QStringList degraded = titlesOf(instrument.database.m_EtatDegradeItemsListModel);
    instrument.controller.initFile();
    instrument.controller.loadFile(path);
    int last = instrument.controller.accuracyInit->idNAP();
    for (const UD *unit : instrument.controller.uds->toList()) {
        for (const Measure *measure : unit->measures()->toList()) {
            // The service numbers what it does, accuracy checks as well, one after the other.
            QVERIFY(measure->idNAP() > last);
            last = measure->idNAP();
            QVERIFY(measure->concentration() >= 0 && measure->concentration() < 20);
            QVERIFY(measure->sigma() > 0 && measure->sigma() < 0.5);
            QCOMPARE(measure->detectionDecision(), decisionOf(*measure));
            const QString state = measure->conservationState();
            if (measure->degradationState() == Degradation::ETAT_USAGE)
                QVERIFY2(worn.contains(state), qPrintable(state));
            else if (measure->degradationState() == Degradation::DEGRADE)
                QVERIFY2(degraded.contains(state), qPrintable(state));
            else
                QCOMPARE(state, QString());
        }
    }
    const Measure *final = instrument.controller.accuracyFinal;
    QVERIFY(final->idNAP() == -1 || final->idNAP() > last);
}

void TstSampleHome::roomThatWasPutAside_isOfferedAgainByADiagnostic()
{
    Instrument instrument;
    const DatabaseItemListModel *rooms = instrument.database.m_LocalItemsListModel;
    const DatabaseItem *boilerRoom = rooms->at(titlesOf(rooms).indexOf(QStringLiteral("Chaufferie")));
    QVERIFY(!boilerRoom->activated());
    instrument.controller.initFile();
    instrument.controller.loadFile(home + QLatin1String("files/Maison-rue-des-Lilas.xml"));
    QVERIFY(boilerRoom->activated());
}

void TstSampleHome::uncalibratedDiagnostic_hasAllThreeChecks()
{
    Instrument instrument;
    HalvarController &controller = instrument.controller;
    controller.initFile();
    controller.loadFile(home + QLatin1String("files/Loge-sans-calibrage.xml"));
    QCOMPARE(controller.accuracyInit->detectionDecision(), Decision::UNCALIBRATED);
    QCOMPARE(controller.accuracyInterrupt->detectionDecision(), Decision::NOT_DETERMINED);
    QCOMPARE(controller.accuracyFinal->detectionDecision(), Decision::NOT_DETERMINED);
    QCOMPARE(controller.accuracyStage(), Accuracy::ACCURACY_FINAL);
}

void TstSampleHome::shocks_areWrittenBackAsTheyAre()
{
    const QString path = home + QLatin1String("shock/shock.xml");
    const QByteArray before = contentOf(path);
    ShockListModel shocks(home, nullptr);
    QCOMPARE(shocks.count(), 3);
    QDateTime previous = QDateTime::fromSecsSinceEpoch(0);
    for (const Shock *shock : shocks.toList()) {
        QVERIFY(shock->dateTime().isValid());
        QVERIFY(shock->dateTime() > previous);
        previous = shock->dateTime();
    }
    QVERIFY(QFile::remove(path));
    shocks.write();
    QCOMPARE(contentOf(path), before);
}

void TstSampleHome::pictures_areWhatTheScriptDraws()
{
    const QString python = QStandardPaths::findExecutable(QStringLiteral("python3"));
    if (python.isEmpty())
        QSKIP("python3 is not installed: the pictures are not compared with what the script draws");
    QProcess script;
    script.setProcessChannelMode(QProcess::MergedChannels);
    script.start(python,
                 {QStringLiteral("-B"), source + QLatin1String("make-pictures"), QStringLiteral("--check")});
    QVERIFY(script.waitForFinished(60000));
    QCOMPARE(QString::fromUtf8(script.readAll()), QString());
    QCOMPARE(script.exitStatus(), QProcess::NormalExit);
    QCOMPARE(script.exitCode(), 0);
}

QTEST_GUILESS_MAIN(TstSampleHome)

#include "tst_samplehome.moc"
