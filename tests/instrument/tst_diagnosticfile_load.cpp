// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
//
// Loading a diagnostic: what each element becomes, and what it leaves in the reference lists.
#include <QTest>

#include <memory>

#include "diagnostictest.h"
#include "logrecorder.h"
#include "signallog.h"

using Decision = DetectionDecisionEnumClass;
using Degradation = DegradationStateEnumClass;
using Localisation = LocalisationEnumClass;
using Stage = AccuracyStageEnumClass;
using Statut = UDStatutEnumClass;

namespace {

QByteArray document(const QByteArray &content)
{
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<Dossier>" + content + "</Dossier>";
}

QByteArray unit(const QByteArray &content)
{
    return document("<Uds><Ud Id=\"1\">" + content + "</Ud></Uds>");
}

QByteArray measure(const QByteArray &content)
{
    return unit("<Mesures><Mesure Id=\"5\">" + content + "</Mesure></Mesures>");
}

} // namespace

class TstDiagnosticFileLoad : public DiagnosticTest
{
    Q_OBJECT

private slots:
    void loading_isLogged()
    {
        const QString path = m->path(QStringLiteral("loaded"));
        m->home.write(QStringLiteral("files/loaded.xml"),
                      document("<Informations><Date>01-02-2026 10:00:00</Date><Nom>N</Nom>"
                               "<Localisation>L</Localisation></Informations>"
                               "<Justesses><Justesse Id=\"1\" Statut=\"RST\"><Resultat>Confirmée</Resultat>"
                               "</Justesse></Justesses>"
                               "<Uds><Ud Id=\"1\"><Local Image=\"qrc:/l\">l</Local><Zone>C</Zone>"
                               "<Element Image=\"qrc:/e\">e</Element><Substrat Image=\"\">s</Substrat>"
                               "<Revetement Image=\"\">r</Revetement><Statut></Statut>"
                               "<Observation>o</Observation><Mesures><Mesure Id=\"1\">"
                               "<Resultat>x</Resultat><Localisation>Bas</Localisation>"
                               "<NatureDegradation>Dégradé</NatureDegradation></Mesure></Mesures></Ud></Uds>"
                               "<DegradationBatiment/><LocauxNonVisites/>"));
        LogRecorder log;
        (*m)->loadFile(path);
        QCOMPARE(log.lines(),
                 (QStringList{
                     QStringLiteral("DEBUG Dossier OK :"),
                     QStringLiteral("DEBUG Informations OK :"),
                     QStringLiteral("DEBUG Date: \"01-02-2026 10:00:00\""),
                     QStringLiteral("DEBUG Nom: \"N\""),
                     QStringLiteral("DEBUG Localisation: \"L\""),
                     QStringLiteral("DEBUG Justesses OK :"),
                     QStringLiteral("DEBUG Resultat: \"Confirmée\""),
                     QStringLiteral("DEBUG [Halvar Controller][Measure]: New detectionDecision sent."),
                     QStringLiteral("DEBUG [Halvar Controller]: setAccuracyStage()"),
                     QStringLiteral("INFO [Halvar Controller]: Setting ACCURACY FINAL"),
                     QStringLiteral("DEBUG Uds OK :"),
                     QStringLiteral("DEBUG UD OK:"),
                     QStringLiteral("DEBUG Local image path: \"qrc:/l\""),
                     QStringLiteral("DEBUG Local: \"l\""),
                     QStringLiteral("DEBUG Local loaded on the fly!"),
                     QStringLiteral("DEBUG Zone: \"C\""),
                     QStringLiteral("DEBUG Local element path: \"qrc:/e\""),
                     QStringLiteral("DEBUG Element: \"e\""),
                     QStringLiteral("DEBUG Element loaded on the fly!"),
                     QStringLiteral("DEBUG Local substrat path: \"\""),
                     QStringLiteral("DEBUG Substrat: \"s\""),
                     QStringLiteral("DEBUG Substrat loaded on the fly!"),
                     QStringLiteral("DEBUG Local revetement path: \"\""),
                     QStringLiteral("DEBUG Revetement: \"r\""),
                     QStringLiteral("DEBUG Revetement loaded on the fly!"),
                     QStringLiteral("DEBUG Statut: \"\""),
                     QStringLiteral("DEBUG Observation: \"o\""),
                     QStringLiteral("DEBUG Mesures OK:"),
                     QStringLiteral("DEBUG Mesure OK:"),
                     QStringLiteral("DEBUG Resultat: \"x\""),
                     QStringLiteral("DEBUG Localisation: \"Bas\""),
                     QStringLiteral("DEBUG NatureDegradation: \"Dégradé\""),
                     QStringLiteral("INFO [Halvar Controller]: File \"%1\" loaded.").arg(path),
                 }));
    }

    void labels_areReadAsTheirValues_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QString>("line");
        const auto statut = [](const char *text, int value) {
            QTest::addRow("statut %s", text) << unit(QByteArray("<Statut>") + text + "</Statut>")
                                             << QStringLiteral("unit|0||A||||%1|").arg(value);
        };
        const auto shot = [](const char *element, const char *text, int decision, int place, int state) {
            QTest::addRow("%s %s", element, text)
                << measure(QByteArray("<") + element + '>' + text + "</" + element + '>')
                << QStringLiteral("measure|5|0|0|%1|%2|%3|").arg(decision).arg(place).arg(state);
        };
        statut("Positive", Statut::POSITIVE);
        statut("Négative", Statut::NEGATIVE);
        statut("Non Mesurée", Statut::SKIPPED);
        statut("", Statut::RAW);
        statut("positive", Statut::RAW);
        statut("Positive ", Statut::RAW);
        statut("Negative", Statut::RAW);
        const int undetermined = Decision::NOT_DETERMINED;
        const int nowhere = Localisation::NOT_DETERMINED;
        shot("Resultat", "Positive", Decision::POSITIVE, nowhere, 0);
        shot("Resultat", "Négative", Decision::NEGATIVE, nowhere, 0);
        for (const char *other : {"Indéterminée", "Confirmée", "Non Calibrée", "COMPTON_ERROR", "", "0"})
            shot("Resultat", other, undetermined, nowhere, 0);
        shot("Localisation", "Gauche", undetermined, Localisation::LEFT, 0);
        shot("Localisation", "Haut", undetermined, Localisation::UP, 0);
        shot("Localisation", "Centre", undetermined, Localisation::CENTER, 0);
        shot("Localisation", "Bas", undetermined, Localisation::DOWN, 0);
        shot("Localisation", "Droite", undetermined, Localisation::RIGHT, 0);
        shot("Localisation", "", undetermined, nowhere, 0);
        shot("Localisation", "haut", undetermined, nowhere, 0);
        shot("NatureDegradation", "Non Visible", undetermined, nowhere, Degradation::NON_VISIBLE);
        shot("NatureDegradation", "Etat d'Usage", undetermined, nowhere, Degradation::ETAT_USAGE);
        shot("NatureDegradation", "Dégradé", undetermined, nowhere, Degradation::DEGRADE);
        shot("NatureDegradation", "Degrade", undetermined, nowhere, Degradation::NON_DEGRADE);
    }
    void labels_areReadAsTheirValues()
    {
        QFETCH(QByteArray, bytes);
        m->load(bytes);
        QTEST(m->state().last(), "line");
    }

    void accuracy_isReadIntoItsStage_data()
    {
        QTest::addColumn<QByteArray>("accuracy");
        QTest::addColumn<QString>("state");
        QTest::addColumn<int>("stage");
        const QString blank = QStringLiteral("-1|2");
        const auto row = [](const char *name, const char *xml, const QString &a, const QString &b,
                            const QString &c, int stage) {
            QTest::newRow(name) << QByteArray(xml) << a + QLatin1Char(' ') + b + QLatin1Char(' ') + c
                                << stage;
        };
        row("first", "<Justesse Id=\"7\" Statut=\"VED\"><Resultat>Confirmée</Resultat></Justesse>",
            QStringLiteral("7|5"), blank, blank, Stage::ACCURACY_INTERRUPT);
        row("interrupt", "<Justesse Id=\"7\" Statut=\"RST\"><Resultat>Non Confirmée</Resultat></Justesse>",
            blank, QStringLiteral("7|6"), blank, Stage::ACCURACY_FINAL);
        row("last", "<Justesse Id=\"7\" Statut=\"VEF\"><Resultat>Non Calibrée</Resultat></Justesse>", blank,
            blank, QStringLiteral("7|7"), Stage::ACCURACY_FINAL);
        row("other result", "<Justesse Id=\"7\" Statut=\"VED\"><Resultat>Positive</Resultat></Justesse>",
            QStringLiteral("7|2"), blank, blank, Stage::ACCURACY_INTERRUPT);
        row("no result", "<Justesse Id=\"7\" Statut=\"VED\"/>", QStringLiteral("7|2"), blank, blank,
            Stage::ACCURACY_INTERRUPT);
        row("unknown stage", "<Justesse Id=\"7\" Statut=\"ved\"><Resultat>Confirmée</Resultat></Justesse>",
            blank, blank, blank, Stage::ACCURACY_INIT);
        row("no stage", "<Justesse Id=\"7\"><Resultat>Confirmée</Resultat></Justesse>", blank, blank, blank,
            Stage::ACCURACY_INIT);
    }
    void accuracy_isReadIntoItsStage()
    {
        QFETCH(QByteArray, accuracy);
        m->load(document("<Justesses>" + accuracy + "</Justesses>"));
        QStringList found = m->state().mid(1, 3);
        found.replaceInStrings(QStringLiteral("accuracy|"), QString());
        QTEST(found.join(QLatin1Char(' ')), "state");
        QTEST(int((*m)->accuracyStage()), "stage");
    }

    void buildingObservation_isTrueForItsOneWord_andAlwaysAnnounced()
    {
        SignalLog log;
        log.watch(m->operator->(), &HalvarController::effondrementChanged, QStringLiteral("effondrement"));
        log.watch(m->operator->(), &HalvarController::couluresChanged, QStringLiteral("coulures"));
        log.watch(m->operator->(), &HalvarController::humiditeChanged, QStringLiteral("humidite"));
        for (const char *word : {"vrai", "faux", "Vrai", "true", ""}) {
            log.clear();
            const QByteArray text = word;
            m->load(document("<DegradationBatiment><Effondrement>" + text + "</Effondrement><Coulures>" + text
                             + "</Coulures><Humidite>" + text + "</Humidite></DegradationBatiment>"));
            QCOMPARE(log.text(), QStringLiteral("effondrement coulures humidite"));
            QCOMPARE((*m)->effondrement, text == "vrai");
            QCOMPARE((*m)->coulures, text == "vrai");
            QCOMPARE((*m)->humidite, text == "vrai");
        }
    }

    void zone_isTheFirstLatinCharacter_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<char>("zone");
        QTest::newRow("letter") << QByteArray("F") << 'F';
        QTest::newRow("word") << QByteArray("Gauche") << 'G';
        QTest::newRow("accent") << QByteArray("É") << char(0xC9);
        QTest::newRow("none") << QByteArray() << 'A';
        QTest::newRow("not of this alphabet") << QByteArray("Ω") << 'A';
    }
    void zone_isTheFirstLatinCharacter()
    {
        QFETCH(QByteArray, text);
        const LogRecorder log(QsLogging::WarnLevel);
        m->load(unit("<Zone>" + text + "</Zone>"));
        QTEST((*m)->uds->first()->zone(), "zone");
        const QString zone = QString::fromUtf8(text);
        const bool isWarnedOf = !zone.isEmpty() && zone.at(0).unicode() > 0xff;
        QCOMPARE(log.lines().size(), isWarnedOf ? 1 : 0);
    }

    void loadedUnits_areAppendedWhole()
    {
        (*m)->uds->add(-1);
        SignalLog log;
        log.watch((*m)->uds, &QAbstractItemModel::rowsInserted, QStringLiteral("inserted"));
        log.watch((*m)->uds, &QAbstractItemModel::dataChanged, QStringLiteral("data"));
        log.watch((*m)->uds, &UDListModel::countChanged, QStringLiteral("count"));
        m->load(DiagnosticFixture::reference("full.xml"));
        QCOMPARE(log.text(), QStringLiteral("inserted count inserted count"));
        QCOMPARE((*m)->uds->size(), 3);
        QCOMPARE((*m)->uds->last()->parent(), (*m)->uds);
        QCOMPARE((*m)->uds->last()->identifier(), 0);
    }

    void missingFile_changesNothing()
    {
        m->load(DiagnosticFixture::reference("full.xml"));
        const QStringList before = m->state();
        LogRecorder log;
        (*m)->loadFile(m->path(QStringLiteral("none")));
        (*m)->loadFile(m->home.path());
        QCOMPARE(log.lines(), QStringList());
        QCOMPARE(m->state(), before);
    }

    // --- the reference lists

    void unknownTitle_isAddedToItsListOnce()
    {
        const QByteArray room = "<Ud><Local Image=\"qrc:/grenier.png\">Grenier</Local>"
                                "<Element Image=\"\">Poutre</Element><Substrat Image=\"\">Chêne</Substrat>"
                                "<Revetement Image=\"\">Cire</Revetement></Ud>";
        m->load(document("<Uds>" + room + room + "</Uds>"));
        const Database &database = m->database();
        const DatabaseItem *item = database.m_LocalItemsListModel->last();
        QCOMPARE(DiagnosticFixture::titles(database.m_LocalItemsListModel),
                 QStringList{QStringLiteral("Grenier")});
        QCOMPARE(item->image(), QStringLiteral("qrc:/grenier.png"));
        QCOMPARE(item->type(), QStringLiteral("local"));
        QVERIFY(item->activated());
        QVERIFY(!item->original());
        QCOMPARE(database.m_ElementItemsListModel->size(), 1);
        QCOMPARE(database.m_ElementItemsListModel->first()->type(), QStringLiteral("élément"));
        QCOMPARE(database.m_SubstratItemsListModel->first()->type(), QStringLiteral("substrat"));
        QCOMPARE(database.m_RevetementItemsListModel->first()->type(), QStringLiteral("revêtement"));
        const QByteArray unitFile = m->home.read(QStringLiteral("database/database_unit.xml"));
        for (const char *title : {"Grenier", "Poutre", "Chêne", "Cire"})
            QCOMPARE(unitFile.count(title), 1);
    }

    void knownTitle_isActivated()
    {
        DatabaseItemListModel *rooms = m->database().m_LocalItemsListModel;
        rooms->add(QStringLiteral("Cave"), QStringLiteral("qrc:/cave.png"), QStringLiteral("locaux"));
        rooms->first()->setActivated(false);
        m->load(unit("<Local Image=\"qrc:/other.png\">Cave</Local>"));
        QCOMPARE(rooms->size(), 1);
        QVERIFY(rooms->first()->activated());
        QCOMPARE(rooms->first()->image(), QStringLiteral("qrc:/cave.png"));
    }

    void referenceFile_isWrittenFirstAlways_thenWhenItDiffers()
    {
        const auto coated = [](const char *coating) {
            return QByteArray("<Ud><Revetement Image=\"\">") + coating + "</Revetement></Ud>";
        };
        m->database().m_RevetementItemsListModel->add(QStringLiteral("Cire"), QString());
        QVERIFY(m->database().write());
        const QString path = m->home.file(QStringLiteral("database/database_unit.xml"));
        // Each unit comes into the list after its coating was handled: was the file written for it?
        QStringList written;
        QObject context;
        connect((*m)->uds, &QAbstractItemModel::rowsInserted, &context, [&] {
            written.append(QFile::remove(path) ? QStringLiteral("written") : QStringLiteral("-"));
        });
        QVERIFY(QFile::remove(path));
        m->load(document("<Uds>" + coated("Cire") + coated("Cire") + coated("Vernis") + coated("Cire")
                         + "<Ud/>" + coated("Vernis") + "</Uds>"));
        QCOMPARE(written.join(QLatin1Char(' ')), QStringLiteral("written - written - - -"));
        // Another load begins anew.
        written.clear();
        m->load(document("<Uds>" + coated("Cire") + coated("Cire") + "</Uds>"));
        QCOMPARE(written.join(QLatin1Char(' ')), QStringLiteral("written -"));
        QVERIFY(m->database().write());
    }
};

QTEST_GUILESS_MAIN(TstDiagnosticFileLoad)
#include "tst_diagnosticfile_load.moc"
