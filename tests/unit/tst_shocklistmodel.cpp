// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include <QAbstractItemModelTester>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>
#include <QTextCodec>

#include <csignal>
#include <ctime>
#include <memory>

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <rapidcheck.h>

#include "listguard.h"
#include "logrecorder.h"
#include "shocklistmodel.h"

namespace {

const QString format = QStringLiteral("dd-MM-yyyy HH:mm:ss t");

QDateTime moment(int day, int hour, int minute)
{
    return QDateTime(QDate(2026, 3, day), QTime(hour, minute, 9));
}

/// The instrument's time zone, for the life of this object.
class TimeZone
{
public:
    explicit TimeZone(const QByteArray &name)
        : m_before(qgetenv("TZ"))
    {
        set(name);
    }
    ~TimeZone() { set(m_before); }

private:
    Q_DISABLE_COPY(TimeZone)
    static void set(const QByteArray &name)
    {
        qputenv("TZ", name);
        tzset();
    }
    const QByteArray m_before;
};

} // namespace

class TstShockListModel : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<TimeZone> m_zone;
    std::unique_ptr<QTemporaryDir> m_directory;

    QString home() const { return m_directory->path() + QLatin1Char('/'); }
    QString path() const { return home() + QStringLiteral("shock/shock.xml"); }
    void put(const QByteArray &bytes) const
    {
        QFile file(path());
        if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
            qFatal("Cannot write %s", qPrintable(path()));
    }
    QByteArray file() const
    {
        QFile in(path());
        return in.open(QIODevice::ReadOnly) ? in.readAll() : QByteArray("(cannot be read)");
    }
    /// The moments that a history of these bytes gives, as text; "-" for an invalid one.
    QStringList momentsIn(const QByteArray &bytes) const
    {
        put(bytes);
        const ShockListModel list(home());
        QStringList result;
        for (const Shock *shock : list)
            result.append(shock->dateTime().isValid() ? shock->dateTime().toString(format)
                                                      : QStringLiteral("-"));
        return result;
    }
    static QByteArray reference()
    {
        QFile file(QStringLiteral(HALVAR_SOURCE_DIR "/tests/data/shock/three-shocks.xml"));
        if (!file.open(QIODevice::ReadOnly))
            qFatal("Cannot read %s", qPrintable(file.fileName()));
        return file.readAll();
    }

private slots:
    void init()
    {
        m_zone = std::make_unique<TimeZone>("Europe/Paris");
        m_directory = std::make_unique<QTemporaryDir>();
        QVERIFY(QDir(m_directory->path()).mkdir(QStringLiteral("shock")));
    }

    void cleanup() { m_zone.reset(); }

    void roles_areThoseOfAShock()
    {
        const ShockListModel list(home());
        const QHash<int, QByteArray> expected{{256, "qtObject"}, {257, "objectName"}, {258, "dateTime"}};
        QCOMPARE(list.roleNames(), expected);
    }

    void missingFile_givesAnEmptyListWithoutAMessage()
    {
        LogRecorder log;
        const ShockListModel list(home());
        QVERIFY(list.isEmpty());
        QCOMPARE(log.lines(), QStringList());
        QVERIFY(!QFile::exists(path()));
    }

    void firstShock_createsTheFile()
    {
        ShockListModel list(home());
        list.append(new Shock(moment(1, 14, 5)));
        list.write();
        QCOMPARE(file(),
                 QByteArray("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<history_shocks>\n"
                            "    <shock>01-03-2026 14:05:09 CET</shock>\n</history_shocks>\n"));
    }

    void threeShocks_areWrittenOldestFirst()
    {
        ShockListModel list(home());
        ListGuard guard(&list);
        const QAbstractItemModelTester tester(&guard, QAbstractItemModelTester::FailureReportingMode::QtTest);
        list.append(new Shock(moment(1, 14, 5)));
        list.append(new Shock(moment(28, 23, 59)));
        list.append(new Shock(QDateTime(QDate(2026, 7, 14), QTime(0, 0, 0))));
        list.write();
        QCOMPARE(file(), reference());
    }

    void history_isReadBackInOrder()
    {
        put(reference());
        const ShockListModel list(home());
        QCOMPARE(list.size(), 3);
        QCOMPARE(list.at(0)->dateTime(), moment(1, 14, 5));
        QCOMPARE(list.at(0)->dateTime().timeSpec(), Qt::LocalTime);
        QCOMPARE(list.at(2)->dateTime(), QDateTime(QDate(2026, 7, 14), QTime(0, 0, 0)));
        QCOMPARE(list.at(0)->parent(), &list);
    }

    void emptyHistory_isWrittenAsItsRoot()
    {
        ShockListModel list(home());
        list.write();
        QCOMPARE(file(), QByteArray("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<history_shocks/>\n"));
    }

    void readAgain_appends()
    {
        put(reference());
        ShockListModel list(home());
        list.read();
        QCOMPARE(list.size(), 6);
    }

    void document_givesItsShocks_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QString>("moments");
        const QByteArray a = "<shock>01-03-2026 14:05:09 CET</shock>";
        const QByteArray b = "<shock>02-03-2026 15:06:10 CET</shock>";
        const auto history = [](const QByteArray &content) {
            return "<history_shocks>" + content + "</history_shocks>";
        };
        const QString first = QStringLiteral("01-03-2026 14:05:09 CET");
        const QString both = first + QStringLiteral(",02-03-2026 15:06:10 CET");
        const QString invalid = QStringLiteral("-");
        QTest::newRow("empty file") << QByteArray() << QString();
        QTest::newRow("no XML") << QByteArray("shock") << QString();
        QTest::newRow("other root") << "<history>" + a + "</history>" << QString();
        QTest::newRow("root in capitals") << "<HISTORY_SHOCKS>" + a + "</HISTORY_SHOCKS>" << QString();
        QTest::newRow("two shocks") << history(a + b) << both;
        QTest::newRow("unknown elements around")
            << history("<x><shock>no</shock></x>" + a + "<y/>" + b + "<z/>") << both;
        QTest::newRow("byte order mark") << "\xEF\xBB\xBF" + history(a) << first;
        QTest::newRow("CR LF") << history("\r\n" + a + "\r\n") << first;
        QTest::newRow("UTF-16 with CR LF")
            << QTextCodec::codecForName("UTF-16")->fromUnicode(QString::fromLatin1(history("\r\n" + a)))
            << first;
        QTest::newRow("CDATA") << history("<shock><![CDATA[01-03-2026 14:05:09 CET]]></shock>") << first;
        QTest::newRow("blanks around") << history("<shock>\n 01-03-2026 14:05:09 CET \n</shock>") << first;
        QTest::newRow("no text") << history("<shock/>") << invalid;
        QTest::newRow("other text, then a shock")
            << history("<shock>yesterday</shock>" + a) << invalid + QLatin1Char(',') + first;
        QTest::newRow("no such day") << history("<shock>31-02-2026 14:05:09 CET</shock>") << invalid;
        QTest::newRow("no such hour") << history("<shock>01-03-2026 24:05:09 CET</shock>") << invalid;
        QTest::newRow("year first") << history("<shock>2026-03-01 14:05:09 CET</shock>") << invalid;
        QTest::newRow("text behind the zone")
            << history("<shock>01-03-2026 14:05:09 CET x</shock>") << invalid;
        QTest::newRow("other signs between the numbers")
            << history("<shock>01/03/2026 14:05:09 CET</shock>") << invalid;
        QTest::newRow("letter in a number") << history("<shock>01-03-2026 14:O5:09 CET</shock>") << invalid;
        QTest::newRow("no blank before the zone")
            << history("<shock>01-03-2026 14:05:09-CET</shock>") << invalid;
        QTest::newRow("cut in the seconds") << history("<shock>01-03-2026 14:05:0</shock>") << invalid;
        QTest::newRow("damaged after the first") << "<history_shocks>" + a + b.left(20) << first;
        QTest::newRow("wrong end") << "<history_shocks>" + a + "</oops>" << first;
    }
    void document_givesItsShocks()
    {
        QFETCH(QByteArray, bytes);
        QTEST(momentsIn(bytes).join(QLatin1Char(',')), "moments");
    }

    void fileCutAtAnyByte_givesWholeShocksOnly()
    {
        const QByteArray whole = reference();
        const QStringList all = momentsIn(whole);
        for (int length = 0; length < whole.size(); ++length) {
            const QStringList found = momentsIn(whole.left(length));
            QCOMPARE(found, all.mid(0, found.size()));
        }
    }

    void timeZone_neverInvalidatesAMoment_data()
    {
        QTest::addColumn<QByteArray>("zone");
        QTest::addColumn<QByteArray>("stored");
        QTest::addColumn<QString>("read");
        const auto row = [](const char *name, const char *zone, const char *stored, const char *read) {
            QTest::newRow(name) << QByteArray(zone) << QByteArray(stored) << QString::fromLatin1(read);
        };
        row("local winter", "Europe/Paris", "01-01-2026 10:00:00 CET", "01-01-2026 10:00:00 CET");
        row("local summer", "Europe/Paris", "01-07-2026 10:00:00 CEST", "01-07-2026 10:00:00 CEST");
        row("UTC, instrument set to UTC", "UTC", "01-01-2026 10:00:00 UTC", "01-01-2026 10:00:00 UTC");
        row("UTC, instrument since moved", "Europe/Paris", "01-01-2026 10:00:00 UTC",
            "01-01-2026 10:00:00 UTC");
        row("Paris, instrument since reset to UTC", "UTC", "01-01-2026 10:00:00 CET",
            "01-01-2026 10:00:00 CET");
        row("first of the two hours in autumn", "Europe/Paris", "25-10-2026 02:30:00 CEST",
            "25-10-2026 02:30:00 CEST");
        row("second of the two hours in autumn", "Europe/Paris", "25-10-2026 02:30:00 CET",
            "25-10-2026 02:30:00 CET");
        row("unknown zone", "Europe/Paris", "01-07-2026 10:00:00 XYZ", "01-07-2026 10:00:00 CEST");
        row("unknown zone in the hour that spring skips", "Europe/Paris", "29-03-2026 02:30:00 XYZ",
            "29-03-2026 02:30:00 UTC");
        row("no zone", "Europe/Paris", "01-07-2026 10:00:00", "01-07-2026 10:00:00 CEST");
        row("wrong season", "Europe/Paris", "01-07-2026 10:00:00 CET", "01-07-2026 10:00:00 CEST");
    }
    void timeZone_neverInvalidatesAMoment()
    {
        QFETCH(QByteArray, zone);
        QFETCH(QByteArray, stored);
        const TimeZone timeZone(zone);
        QTEST(momentsIn("<history_shocks><shock>" + stored + "</shock></history_shocks>")
                  .join(QLatin1Char(',')),
              "read");
    }

    void bothAutumnHours_staySecondsApart()
    {
        put("<history_shocks><shock>25-10-2026 02:30:00 CEST</shock>"
            "<shock>25-10-2026 02:30:00 CET</shock></history_shocks>");
        const ShockListModel list(home());
        QCOMPARE(list.at(0)->dateTime().secsTo(list.at(1)->dateTime()), qint64(3600));
    }

    void writtenMoments_areReadBack_inAnyZone()
    {
        for (const char *zone : {"Europe/Paris", "America/New_York"}) {
            const TimeZone timeZone(zone);
            QVERIFY(rc::check(zone, [this] {
                QFile::remove(path());
                ShockListModel list(home());
                const auto seconds = *rc::gen::container<std::vector<int>>(rc::gen::inRange(0, 2000000000));
                for (int second : seconds)
                    list.append(new Shock(QDateTime::fromSecsSinceEpoch(second)));
                list.write();
                const ShockListModel again(home());
                RC_ASSERT(again.size() == list.size());
                for (int i = 0; i < list.size(); ++i)
                    RC_ASSERT(again.at(i)->dateTime() == list.at(i)->dateTime());
            }));
        }
    }

    void invalidMoment_isWrittenAsAnEmptyElement()
    {
        put("<history_shocks><shock>yesterday</shock></history_shocks>");
        ShockListModel list(home());
        list.write();
        QVERIFY(file().contains("    <shock></shock>\n"));
    }

    void otherRoot_isReplacedByAProperFile()
    {
        put("<history><shock>01-03-2026 14:05:09 CET</shock></history>");
        ShockListModel list(home());
        list.append(new Shock(moment(2, 15, 6)));
        list.write();
        QCOMPARE(file(),
                 QByteArray("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<history_shocks>\n"
                            "    <shock>02-03-2026 15:06:09 CET</shock>\n</history_shocks>\n"));
    }

    void shockDeletedBySomebodyElse_isNotWritten()
    {
        put(reference());
        ShockListModel list(home());
        delete list.first();
        list.write();
        QCOMPARE(file().count("<shock>"), 2);
        QVERIFY(!file().contains("01-03-2026"));
    }

    void missingDirectory_isSilent()
    {
        QVERIFY(QDir(m_directory->path()).rmdir(QStringLiteral("shock")));
        LogRecorder log;
        ShockListModel list(home());
        list.append(new Shock(moment(1, 14, 5)));
        list.write();
        QCOMPARE(log.lines(), QStringList());
        QCOMPARE(list.size(), 1);
    }

    void protectedFile_isLeftAlone()
    {
        put(reference());
        QVERIFY(QFile::setPermissions(path(), QFile::ReadOwner));
        // Permissions bind everybody but the superuser, so the file is written as somebody else.
        constexpr uid_t nobody = 65534;
        if (geteuid() == 0) {
            for (const QString &entry : {m_directory->path(), home() + QStringLiteral("shock"), path()})
                QCOMPARE(chown(QFile::encodeName(entry).constData(), nobody, nobody), 0);
        }
        const pid_t child = fork();
        QVERIFY(child >= 0);
        if (child == 0) {
            if (geteuid() == 0 && setuid(nobody) != 0)
                _exit(1);
            LogRecorder log;
            ShockListModel list(home());
            list.append(new Shock(moment(1, 14, 5)));
            list.write();
            _exit(list.size() == 4 && log.lines().isEmpty() ? 0 : 2);
        }
        int status = -1;
        QCOMPARE(waitpid(child, &status, 0), child);
        QCOMPARE(status, 0);
        QCOMPARE(file(), reference());
    }

    void fullDisk_leavesTheOldFile_andIsTold()
    {
        put(reference());
        ShockListModel list(home());
        list.append(new Shock(moment(1, 14, 5)));
        rlimit before = {};
        QCOMPARE(getrlimit(RLIMIT_FSIZE, &before), 0);
        rlimit small = before;
        small.rlim_cur = 100;
        const auto previousHandler = std::signal(SIGXFSZ, SIG_IGN);
        QCOMPARE(setrlimit(RLIMIT_FSIZE, &small), 0);
        LogRecorder log;
        list.write();
        const QStringList lines = log.lines();
        setrlimit(RLIMIT_FSIZE, &before);
        std::signal(SIGXFSZ, previousHandler);
        QCOMPARE(
            lines,
            QStringList{QStringLiteral("ERROR [Halvar Controller]: File \"%1\" not saved: \"File too large\"")
                            .arg(path())});
        QCOMPARE(file(), reference());
        QCOMPARE(QDir(home() + QStringLiteral("shock")).entryList(QDir::Files),
                 QStringList{QStringLiteral("shock.xml")});
    }
};

QTEST_GUILESS_MAIN(TstShockListModel)
#include "tst_shocklistmodel.moc"
