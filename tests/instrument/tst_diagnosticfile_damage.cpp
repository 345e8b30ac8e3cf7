// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
//
// Diagnostic files that are damaged or strange, places that take no file, and the removal of files.
#include <QTest>
#include <QTextCodec>

#include <csignal>
#include <memory>

#include <sys/resource.h>

#include "diagnostictest.h"
#include "logrecorder.h"

namespace {

/// Small, with every element of the format once.
const QByteArray whole =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<Dossier><Informations>"
    "<Date>01-02-2026 10:00:00</Date><Nom>Maison</Nom><Localisation>Église</Localisation>"
    "</Informations>\n<Justesses><Justesse Id=\"7\" Statut=\"VED\"><Resultat>Confirmée"
    "</Resultat></Justesse></Justesses>\n<Uds><Ud Id=\"1\"><Local Image=\"\">Cuisine"
    "</Local><Zone>B</Zone><Element Image=\"\">Mur</Element><Substrat Image=\"\">Bois"
    "</Substrat><Revetement Image=\"\">Vernis</Revetement><Statut>Positive</Statut>"
    "<Observation>Écaille</Observation><Mesures><Mesure Id=\"5\"><Concentration>12.5"
    "</Concentration><Sigma>1.25</Sigma><Resultat>Positive</Resultat><Localisation>Haut"
    "</Localisation><NatureDegradation>Dégradé</NatureDegradation><EtatConservation>Usure"
    "</EtatConservation></Mesure></Mesures></Ud></Uds>\n<DegradationBatiment>"
    "<Effondrement>vrai</Effondrement><Coulures>vrai</Coulures><Humidite>vrai</Humidite>"
    "</DegradationBatiment><LocauxNonVisites/></Dossier>\n";

/// A process whose files may not grow beyond \p bytes, for the life of this object: a full disk.
class FullDisk
{
public:
    explicit FullDisk(rlim_t bytes)
        : m_handler(std::signal(SIGXFSZ, SIG_IGN))
    {
        getrlimit(RLIMIT_FSIZE, &m_before);
        rlimit small = m_before;
        small.rlim_cur = bytes;
        setrlimit(RLIMIT_FSIZE, &small);
    }
    ~FullDisk()
    {
        setrlimit(RLIMIT_FSIZE, &m_before);
        std::signal(SIGXFSZ, m_handler);
    }

private:
    Q_DISABLE_COPY(FullDisk)
    void (*m_handler)(int);
    rlimit m_before = {};
};

} // namespace

class TstDiagnosticFileDamage : public DiagnosticTest
{
    Q_OBJECT

private:
    const QString m_path = QStringLiteral("loaded");
    QStringList errors(const LogRecorder &log) const { return log.lines(QStringLiteral("ERROR")); }
    /// What the whole document leaves in a blank controller.
    QStringList wholeState()
    {
        m->load(whole);
        const QStringList state = m->state();
        m->clear();
        return state;
    }
    QString notSaved(const QString &name, const char *reason) const
    {
        return QStringLiteral("[Halvar Controller]: File \"%1\" not saved: \"%2\"")
            .arg(m->path(name), QLatin1String(reason));
    }

private slots:
    // --- damage

    void fileCutAtAnyByte_givesWholeValuesOnly_andIsKept()
    {
        const QStringList words{QStringLiteral("Cuisine"), QStringLiteral("Mur"), QStringLiteral("Bois"),
                                QStringLiteral("Vernis"), QString()};
        const int end = whole.indexOf("</Dossier>") + int(qstrlen("</Dossier>"));
        for (int length = 0; length < end; ++length) {
            m->clear();
            LogRecorder log(QsLogging::ErrorLevel);
            m->load(whole.left(length));
            QCOMPARE(errors(log).size(), 1);
            QVERIFY(errors(log).constFirst().startsWith(
                QStringLiteral("[Halvar Controller]: File \"%1\" damaged: \"line ").arg(m->path(m_path))));
            QCOMPARE(m->files(),
                     (QStringList{QStringLiteral("loaded.xml"), QStringLiteral("loaded.xml.damaged")}));
            QVERIFY(m->content(QStringLiteral("loaded.xml.damaged")) == whole.left(length));

            QVERIFY((*m)->fileName().isEmpty() || (*m)->fileName() == QLatin1String("Maison"));
            QVERIFY((*m)->localization().isEmpty() || (*m)->localization() == QStringLiteral("Église"));
            QVERIFY((*m)->uds->size() <= 1);
            for (const UD *unit : *(*m)->uds) {
                QVERIFY(words.contains(unit->local()) && words.contains(unit->element()));
                QVERIFY(words.contains(unit->substrat()) && words.contains(unit->revetement()));
                QVERIFY(unit->observation().isEmpty() || unit->observation() == QStringLiteral("Écaille"));
                for (const Measure *measure : *unit->measures()) {
                    QVERIFY(measure->concentration() == 0.0 || measure->concentration() == 12.5);
                    QVERIFY(measure->sigma() == 0.0 || measure->sigma() == 1.25);
                }
            }
            // No half of a word, and no blank, becomes an entry that the operator is offered from then on.
            for (const DatabaseItemListModel *list :
                 {m->database().m_LocalItemsListModel, m->database().m_ElementItemsListModel,
                  m->database().m_SubstratItemsListModel, m->database().m_RevetementItemsListModel}) {
                for (const DatabaseItem *item : *list)
                    QVERIFY2(!item->title().isEmpty() && words.contains(item->title()),
                             qPrintable(item->title()));
            }
        }
    }

    void copyOfADamagedFile_isNotCopiedAgain()
    {
        m->load(whole.left(600));
        const QStringList kept{QStringLiteral("loaded.xml"), QStringLiteral("loaded.xml.damaged")};
        QCOMPARE(m->files(), kept);
        (*m)->initFile();
        LogRecorder log(QsLogging::ErrorLevel);
        const QString copy = m->path(m_path) + QStringLiteral(".damaged");
        (*m)->loadFile(copy);
        QCOMPARE(m->files(), kept);
        QVERIFY(m->content(QStringLiteral("loaded.xml.damaged")) == whole.left(600));
        QCOMPARE(errors(log).size(), 1);
        QVERIFY(errors(log).constFirst().endsWith(QStringLiteral("Kept as \"%1\"").arg(copy)));
    }

    void fileCutBehindItsRoot_isIntact()
    {
        const QStringList state = wholeState();
        LogRecorder log(QsLogging::ErrorLevel);
        m->load(whole.trimmed());
        QCOMPARE(errors(log), QStringList());
        QCOMPARE(m->state(), state);
        QCOMPARE(m->files(), QStringList{QStringLiteral("loaded.xml")});
    }

    void damage_isLoggedWithItsPlace_beforeTheFileCountsAsLoaded()
    {
        LogRecorder log(QsLogging::InfoLevel);
        m->load("<Dossier>\n<Informations>\n<Nom>a</Nom></oops>");
        const QString path = m->path(m_path);
        QCOMPARE(log.lines().size(), 2);
        QVERIFY2(log.lines().constFirst().startsWith(
                     QStringLiteral("ERROR [Halvar Controller]: File \"%1\" damaged: \"line 3, column ")
                         .arg(path)),
                 qPrintable(log.lines().constFirst()));
        QVERIFY2(log.lines().constFirst().endsWith(
                     QStringLiteral(": Opening and ending tag mismatch.\" Kept as \"%1.damaged\"").arg(path)),
                 qPrintable(log.lines().constFirst()));
        QCOMPARE(log.lines().last(),
                 QStringLiteral("INFO [Halvar Controller]: File \"%1\" loaded.").arg(path));
        QCOMPARE((*m)->fileName(), QStringLiteral("a"));
    }

    void keptFiles_areNumbered_andTheSameOneIsKeptOnce()
    {
        m->load("<Dossier><first>");
        m->load("<Dossier><first>");
        m->load("<Dossier><second>");
        m->load("<Dossier><third>");
        m->load("<Dossier><second>");
        QCOMPARE(
            m->files(),
            (QStringList{QStringLiteral("loaded.xml"), QStringLiteral("loaded.xml.damaged"),
                         QStringLiteral("loaded.xml.damaged.1"), QStringLiteral("loaded.xml.damaged.2")}));
        QCOMPARE(m->content(QStringLiteral("loaded.xml.damaged")), QByteArray("<Dossier><first>"));
        QCOMPARE(m->content(QStringLiteral("loaded.xml.damaged.1")), QByteArray("<Dossier><second>"));
        QCOMPARE(m->content(QStringLiteral("loaded.xml.damaged.2")), QByteArray("<Dossier><third>"));
    }

    void keptFile_outlivesTheNextSave()
    {
        const QByteArray damaged = whole.left(whole.indexOf("<Sigma>"));
        m->load(damaged, QStringLiteral("Maison"));
        (*m)->saveFile();
        QCOMPARE(m->content(QStringLiteral("Maison.xml.damaged")), damaged);
        QVERIFY(m->content(QStringLiteral("Maison.xml")).contains("Cuisine"));
    }

    void damagedFileThatCouldNotBeKept_isNotReplacedBeforeItIs()
    {
        const QByteArray damaged = whole.left(whole.indexOf("<Zone>"));
        m->home.write(QStringLiteral("files/Maison.xml"), damaged);
        LogRecorder log(QsLogging::ErrorLevel);
        {
            const FullDisk full(0);
            (*m)->loadFile(m->path(QStringLiteral("Maison")));
            (*m)->saveFile();
        }
        const QString path = m->path(QStringLiteral("Maison"));
        QVERIFY2(errors(log).value(0).endsWith(QStringLiteral("No copy could be kept.")),
                 qPrintable(errors(log).join(QLatin1Char('\n'))));
        QCOMPARE(errors(log).last(),
                 QStringLiteral("[Halvar Controller]: File \"%1\" not saved: the damaged file in its place "
                                "could not be kept.")
                     .arg(path));
        QCOMPARE(m->files(), QStringList{QStringLiteral("Maison.xml")});
        QCOMPARE(m->content(QStringLiteral("Maison.xml")), damaged);
        // There is room again.
        log.clear();
        (*m)->saveFile();
        QCOMPARE(errors(log), QStringList());
        QCOMPARE(m->content(QStringLiteral("Maison.xml.damaged")), damaged);
        QVERIFY(m->content(QStringLiteral("Maison.xml")).endsWith("</Dossier>\n"));
    }

    // --- strange documents

    void document_isReadInAnyForm_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        const QString text = QString::fromUtf8(whole);
        QString crlf = text;
        crlf.replace(QLatin1Char('\n'), QLatin1String("\r\n"));
        const auto utf16 = [](QString document) {
            document.replace(QLatin1String("UTF-8"), QLatin1String("UTF-16"));
            return QTextCodec::codecForName("UTF-16")->fromUnicode(document);
        };
        QTest::newRow("CR LF") << crlf.toUtf8();
        QTest::newRow("byte order mark") << "\xEF\xBB\xBF" + whole;
        QTest::newRow("UTF-16") << utf16(text);
        QTest::newRow("UTF-16 with CR LF") << utf16(crlf);
        QTest::newRow("CDATA") << QByteArray(whole).replace("Cuisine", "<![CDATA[Cuisine]]>");
        QTest::newRow("comments") << QByteArray(whole).replace("sine", "<!-- Mur -->sine");
        QTest::newRow("processing instructions") << QByteArray(whole).replace("sine", "<?mur Mur?>sine");
        QTest::newRow("entities") << QByteArray(whole)
                                         .replace("<Dossier>",
                                                  "<!DOCTYPE Dossier [<!ENTITY m \"Mur\">]><Dossier>")
                                         .replace(">Mur<", ">&m;<");
        QTest::newRow("elements inside texts") << QByteArray(whole).replace("Cuisine", "Cui<b>no</b>sine");
        for (const char *element :
             {"Dossier", "Informations", "Justesses", "Justesse Id=\"7\" Statut=\"VED\"", "Uds",
              "Ud Id=\"1\"", "Mesures", "Mesure Id=\"5\"", "DegradationBatiment"}) {
            const QByteArray start = QByteArray("<") + element + '>';
            QTest::addRow("unknown element in %s", element)
                << QByteArray(whole).replace(start, start + "<x><Nom>no</Nom><y>no</y></x>");
        }
        QTest::newRow("unvisited rooms")
            << QByteArray(whole).replace("<LocauxNonVisites/>",
                                         "<LocauxNonVisites><Informations><Nom>no</Nom></Informations>"
                                         "</LocauxNonVisites>");
    }
    void document_isReadInAnyForm()
    {
        QFETCH(QByteArray, bytes);
        const QStringList state = wholeState();
        LogRecorder log(QsLogging::ErrorLevel);
        m->load(bytes);
        QCOMPARE(m->state(), state);
        // Unknown elements are reported at the top, where whole parts of a diagnostic would be missed.
        const bool atTheTop = bytes.contains("<Dossier><x>");
        QCOMPARE(errors(log),
                 atTheTop ? (QStringList{QStringLiteral("[Halvar Controller]: XML file \"x\" malformated"),
                                         QStringLiteral("[Halvar Controller]: XML file \"Nom\" malformated"),
                                         QStringLiteral("[Halvar Controller]: XML file \"y\" malformated")})
                          : QStringList());
    }

    void otherRoot_isReported_andWhatItHoldsIsRead()
    {
        const QStringList state = wholeState();
        LogRecorder log(QsLogging::ErrorLevel);
        m->load(QByteArray(whole).replace("Dossier>", "Rapport>"));
        QCOMPARE(errors(log),
                 QStringList{QStringLiteral("[Halvar Controller]: XML file \"Rapport\" malformated")});
        QCOMPARE(m->state(), state);
    }

    void entityBomb_isDamage()
    {
        QByteArray bomb = "<!DOCTYPE Dossier [<!ENTITY e0 \"aaaaaaaaaa\">";
        for (int i = 1; i < 10; ++i) {
            const QByteArray before = "&e" + QByteArray::number(i - 1) + ';';
            bomb += "<!ENTITY e" + QByteArray::number(i) + " \"" + before.repeated(10) + "\">";
        }
        bomb += "]><Dossier><Informations><Localisation>Paris</Localisation><Nom>&e9;</Nom></Informations>"
                "</Dossier>";
        LogRecorder log(QsLogging::ErrorLevel);
        m->load(bomb);
        QCOMPARE(errors(log).size(), 1);
        QCOMPARE((*m)->localization(), QStringLiteral("Paris"));
        QCOMPARE((*m)->fileName(), QString());
    }

    void deepNesting_costsNoStack()
    {
        constexpr int depth = 200000;
        const QByteArray nest = QByteArray("<d>").repeated(depth) + QByteArray("</d>").repeated(depth);
        m->load("<Dossier><Uds>" + nest + "<Ud>" + nest + "<Local>" + nest
                + "Cave</Local></Ud></Uds></Dossier>");
        QCOMPARE((*m)->uds->size(), 1);
        QCOMPARE((*m)->uds->first()->local(), QStringLiteral("Cave"));
    }

    void textThatXmlCannotHold_leavesTheFileReadable()
    {
        (*m)->setFileName(QStringLiteral("a"));
        (*m)->setLocalization(QStringLiteral("x\x01") + QChar(0xD800) + QLatin1Char('y'));
        (*m)->uds->add(-1);
        (*m)->uds->first()->setZone('\0');
        (*m)->uds->first()->setObservation(QString(QChar(0xDC00)));
        (*m)->saveFile();
        (*m)->initFile();
        LogRecorder log(QsLogging::ErrorLevel);
        (*m)->loadFile(m->path(QStringLiteral("a")));
        QCOMPARE(errors(log), QStringList());
        QCOMPARE((*m)->localization(), QStringLiteral("x\uFFFD\uFFFDy"));
        QCOMPARE((*m)->uds->size(), 1);
    }

    void lineEndsAndTabs_areReadBack()
    {
        const QString text = QStringLiteral("\r a\r\nb\nc\rd\t\r\r ");
        (*m)->setFileName(QStringLiteral("a"));
        (*m)->setLocalization(text);
        (*m)->uds->add(-1);
        (*m)->uds->first()->setLocal(text);
        (*m)->uds->first()->setZone('\r');
        (*m)->uds->first()->setObservation(text);
        (*m)->uds->first()->measures()->append(new Measure);
        (*m)->uds->first()->measures()->first()->setConservationState(text);
        (*m)->saveFile();
        const QStringList before = m->state();
        (*m)->initFile();
        (*m)->loadFile(m->path(QStringLiteral("a")));
        QCOMPARE(m->state(), before);
    }

    /// Whatever a keyboard, a clipboard or a stick brings: the other characters of the file come back.
    void anyCharacter_leavesTheFileReadable()
    {
        constexpr int rows = 256;
        QStringList expected;
        for (int row = 0; row < rows; ++row) {
            QString text;
            QString kept;
            for (int code = row * rows; code < (row + 1) * rows; ++code) {
                const QChar character(code);
                const bool isLost = (code < 0x20 && code != '\t' && code != '\n' && code != '\r')
                    || character.isSurrogate() || code >= 0xFFFE;
                text.append(character);
                kept.append(isLost ? QChar(QChar::ReplacementCharacter) : character);
            }
            (*m)->uds->add(-1);
            (*m)->uds->last()->setObservation(text);
            expected.append(kept);
        }
        (*m)->setFileName(QStringLiteral("a"));
        (*m)->saveFile();
        (*m)->initFile();
        LogRecorder log(QsLogging::ErrorLevel);
        (*m)->loadFile(m->path(QStringLiteral("a")));
        QCOMPARE(errors(log), QStringList());
        QStringList found;
        for (const UD *unit : *(*m)->uds)
            found.append(unit->observation());
        QCOMPARE(found, expected);
    }

    // --- places that take no file

    void nameThatLeavesTheDirectory_isRefused_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("reason");
        const QString slash = QStringLiteral("not saved: the name must not contain a slash.");
        QTest::newRow("upwards") << QStringLiteral("../database/database_unit") << slash;
        QTest::newRow("downwards") << QStringLiteral("sub/a") << slash;
        QTest::newRow("absolute") << QStringLiteral("/tmp/a") << slash;
        QTest::newRow("slash at the end") << QStringLiteral("a/") << slash;
        QTest::newRow("null character")
            << QStringLiteral("a") + QChar::Null + QStringLiteral("b")
            << QStringLiteral("not saved: the name must not contain a null character.");
    }
    void nameThatLeavesTheDirectory_isRefused()
    {
        QFETCH(QString, name);
        QFETCH(QString, reason);
        QVERIFY(QDir(m->home.path()).mkpath(QStringLiteral("files/sub")));
        const QByteArray before = m->home.read(QStringLiteral("database/database_unit.xml"));
        (*m)->setFileName(name);
        LogRecorder log;
        (*m)->saveFile();
        QCOMPARE(log.lines().size(), 1);
        QVERIFY(log.lines().constFirst().startsWith(QStringLiteral("ERROR [Halvar Controller]: File ")));
        QVERIFY(log.lines().constFirst().endsWith(reason));
        QCOMPARE(m->files(), QStringList{QStringLiteral("sub")});
        QVERIFY(QDir(m->home.file(QStringLiteral("files/sub"))).isEmpty());
        QCOMPARE(m->home.read(QStringLiteral("database/database_unit.xml")), before);
    }

    void namesOfDots_stayInTheDirectory()
    {
        for (const char *name : {".", "..", "...", "-rf *", "é\n"}) {
            (*m)->setFileName(QString::fromUtf8(name));
            (*m)->saveFile();
            QVERIFY2(m->files().contains(QString::fromUtf8(name) + QStringLiteral(".xml")), name);
        }
    }

    void missingDirectory_isReported()
    {
        QVERIFY(QDir(m->home.file(QStringLiteral("files"))).removeRecursively());
        (*m)->setFileName(QStringLiteral("a"));
        LogRecorder log;
        (*m)->saveFile();
        QCOMPARE(log.lines(),
                 QStringList{QStringLiteral("ERROR ")
                             + notSaved(QStringLiteral("a"), "No such file or directory")});
    }

    void nameThatIsTooLong_isReported()
    {
        const QString name(300, QLatin1Char('a'));
        (*m)->setFileName(name);
        LogRecorder log;
        (*m)->saveFile();
        QCOMPARE(errors(log), QStringList{notSaved(name, "File name too long")});
        QCOMPARE(m->files(), QStringList());
    }

    void directoryInPlaceOfTheTemporaryFile_leavesTheOldFile()
    {
        m->load(whole, QStringLiteral("Maison"));
        QVERIFY(QDir(m->home.path()).mkpath(QStringLiteral("files/Maison.tmp")));
        LogRecorder log;
        (*m)->saveFile();
        QCOMPARE(errors(log), QStringList{notSaved(QStringLiteral("Maison"), "Is a directory")});
        QCOMPARE(m->content(QStringLiteral("Maison.xml")), whole);
    }

    void fullDisk_leavesTheOldFile()
    {
        m->load(whole, QStringLiteral("Maison"));
        (*m)->uds->first()->setObservation(QString(2000, QLatin1Char('x')));
        LogRecorder log;
        {
            const FullDisk full(1000);
            (*m)->saveFile();
        }
        QCOMPARE(
            log.lines(),
            QStringList{QStringLiteral("ERROR ") + notSaved(QStringLiteral("Maison"), "File too large")});
        QCOMPARE(m->content(QStringLiteral("Maison.xml")), whole);
        QCOMPARE(m->files(), QStringList{QStringLiteral("Maison.xml")});
    }

    // --- removal

    void removeFile_removesThatFile()
    {
        m->home.write(QStringLiteral("files/a.xml"), "a");
        m->home.write(QStringLiteral("files/b.xml"), "b");
        LogRecorder log;
        (*m)->removeFile(m->path(QStringLiteral("a")));
        (*m)->removeFile(m->path(QStringLiteral("a")));
        (*m)->removeFile(m->home.file(QStringLiteral("files")));
        QCOMPARE(m->files(), QStringList{QStringLiteral("b.xml")});
        QCOMPARE(log.lines(), QStringList());
    }

    void removeFiles_takesPlainFiles_andTheEmptyDirectoryWhenAsked()
    {
        const QString directory = m->home.file(QStringLiteral("files/run"));
        const auto fill = [&] {
            QDir(m->home.path()).mkpath(QStringLiteral("files/run"));
            for (const char *name : {"a.dat", "b.dat", ".hidden"})
                m->home.write(QStringLiteral("files/run/") + QLatin1String(name), "x");
        };
        LogRecorder log;
        fill();
        (*m)->removeFiles(directory, false);
        QVERIFY(QDir(directory).isEmpty(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot));
        QVERIFY(QDir(directory).exists());
        fill();
        (*m)->removeFiles(directory, true);
        QVERIFY(!QDir(directory).exists());
        fill();
        QVERIFY(QDir(directory).mkpath(QStringLiteral("kept/deep")));
        (*m)->removeFiles(directory, true);
        QVERIFY(QDir(directory).exists(QStringLiteral("kept/deep")));
        (*m)->removeFiles(m->home.file(QStringLiteral("none")), true);
        QCOMPARE(log.lines(), QStringList());
    }

    void removeFilesOfNoDirectory_removesNothing()
    {
        const QString before = QDir::currentPath();
        m->home.write(QStringLiteral("files/a.xml"), "a");
        QVERIFY(QDir::setCurrent(m->home.file(QStringLiteral("files"))));
        (*m)->removeFiles(QString(), true);
        QVERIFY(QDir::setCurrent(before));
        QCOMPARE(m->files(), QStringList{QStringLiteral("a.xml")});
    }

    void removeMeasureFiles_emptiesTheFiveDirectories()
    {
        const QStringList directories{
            QStringLiteral("/data/marten/data/measure"), QStringLiteral("/data/marten/data"),
            QStringLiteral("/data/lambrik/files"), QStringLiteral("/data/lambrik/shock"),
            QStringLiteral("/data/lambrik/logs")};
        const auto put = [](const QString &path) {
            QFile file(path);
            return file.open(QIODevice::WriteOnly) && file.write("x") == 1;
        };
        for (const QString &directory : directories) {
            QVERIFY(QDir().mkpath(directory));
            QVERIFY(put(directory + QStringLiteral("/a")));
        }
        QVERIFY(put(QStringLiteral("/data/lambrik/kept")));
        (*m)->removeMeasureFiles();
        for (const QString &directory : directories) {
            QVERIFY(QDir(directory).exists());
            QVERIFY(QDir(directory).entryList(QDir::Files | QDir::Hidden).isEmpty());
        }
        QVERIFY(QFile::remove(QStringLiteral("/data/lambrik/kept")));
    }
};

QTEST_GUILESS_MAIN(TstDiagnosticFileDamage)
#include "tst_diagnosticfile_damage.moc"
