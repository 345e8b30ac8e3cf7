// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
//
// docs/interface-coverage.md against the meta-objects and the QML sources: all that the library offers to QML
// is used by some screen, or there is a reason why not. And the translations and the syntax of the sources,
// those of the simulated instrument's panel included.
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QLibraryInfo>
#include <QMap>
#include <QMetaMethod>
#include <QMetaProperty>
#include <QProcess>
#include <QRegularExpression>
#include <QSet>
#include <QTemporaryDir>
#include <QTest>

#include <battery.h>
#include <calibration.h>
#include <config.h>
#include <database.h>
#include <databaseitemlistmodel.h>
#include <date.h>
#include <halvar-error.h>
#include <halvarcontroller.h>
#include <measurelistmodel.h>
#include <napclient.h>
#include <pin.h>
#include <proxylocallistmodel.h>
#include <qqmlobjectlistmodel.h>
#include <qqmlsortfilterproxymodel.h>
#include <shocklistmodel.h>
#include <ud.h>
#include <udlistmodel.h>

Q_DECLARE_METATYPE(const QMetaObject *)

namespace {

const QString sources = QStringLiteral(HALVAR_SOURCE_DIR "/interface");
const QString panelSources = QStringLiteral(HALVAR_SOURCE_DIR "/simulator/panel");

QString contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

QStringList qmlFiles(const QString &directory = sources)
{
    QStringList files;
    QDirIterator entries(directory, {QStringLiteral("*.qml")}, QDir::Files, QDirIterator::Subdirectories);
    while (entries.hasNext())
        files.append(entries.next());
    return files;
}

/// The types that qmllint is not told of by Qt: those of this library, and those that Qt's own module files
/// leave out.
QString typesOf(const QString &module, const QStringList &names)
{
    QString text = QStringLiteral("import QtQuick.tooling 1.2\nModule {\n");
    for (const QString &name : names)
        text += QStringLiteral("Component { name: \"%2\"; prototype: \"QObject\"; exports: [\"%1/%2 0.0\"]; "
                               "exportMetaObjectRevisions: [0] }\n")
                    .arg(module, name);
    return text + QStringLiteral("}\n");
}

void writeFile(const QString &path, const QString &content)
{
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(content.toUtf8());
}

/// A row of the page: where a member is used, or why it is not.
struct Row
{
    QString file; ///< empty when it is not
    QString code;
    QString reason;
};

using Rows = QMap<QString, Row>; // by "property name", "signal name", "operation name"

QMap<QString, Rows> readPage()
{
    QMap<QString, Rows> page;
    QString section;
    static const QRegularExpression row(QStringLiteral("^\\| (\\w+) \\| `(\\w+)` \\| (.+) \\|$"));
    static const QRegularExpression use(QStringLiteral("^`(\\w+\\.qml)`: `(.+)`$"));
    const QStringList lines =
        contentOf(QStringLiteral(HALVAR_SOURCE_DIR "/docs/interface-coverage.md")).split(QLatin1Char('\n'));
    for (const QString &line : lines) {
        if (line.startsWith(QLatin1String("## ")))
            section = line.mid(3);
        const QRegularExpressionMatch cells = row.match(line);
        if (!cells.hasMatch())
            continue;
        const QString kind = cells.captured(1);
        const bool operation = kind == QLatin1String("slot") || kind == QLatin1String("invokable");
        Row &entry = page[section][(operation ? QStringLiteral("operation") : kind) + QLatin1Char(' ')
                                   + cells.captured(2)];
        const QRegularExpressionMatch place = use.match(cells.captured(3));
        if (place.hasMatch()) {
            entry.file = place.captured(1);
            entry.code = place.captured(2);
        } else {
            entry.reason = cells.captured(3);
        }
    }
    return page;
}

/// The members that a page on \p meta has to tell of, given what it tells of the properties.
QSet<QString> membersOf(const QMetaObject &meta, const Rows &rows)
{
    QSet<QString> members;
    QSet<QByteArray> usedSignals;
    for (int i = meta.propertyOffset(); i < meta.propertyCount(); ++i) {
        const QMetaProperty property = meta.property(i);
        const QString key = QStringLiteral("property ") + QLatin1String(property.name());
        members.insert(key);
        if (property.hasNotifySignal() && !rows.value(key).file.isEmpty())
            usedSignals.insert(property.notifySignal().name());
    }
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
        const QMetaMethod method = meta.method(i);
        if (method.access() != QMetaMethod::Public)
            continue;
        const bool isSignal = method.methodType() == QMetaMethod::Signal;
        if (isSignal && usedSignals.contains(method.name()))
            continue;
        members.insert((isSignal ? QStringLiteral("signal ") : QStringLiteral("operation "))
                       + QLatin1String(method.name()));
    }
    return members;
}

} // namespace

class TstInterfaceCoverage : public QObject
{
    Q_OBJECT

private slots:
    void page_tellsOfEveryMember_data();
    void page_tellsOfEveryMember();
    void page_tellsTheTruth();
    void modules_nameTheirFiles();
    void qml_isCleanForQmllint();
    void qml_saysWhereEveryNameComesFrom();
    void translations_areComplete_data();
    void translations_areComplete();
};

void TstInterfaceCoverage::page_tellsOfEveryMember_data()
{
    QTest::addColumn<const QMetaObject *>("meta");
    const QMetaObject *const all[] = {&Battery::staticMetaObject,
                                      &Calibration::staticMetaObject,
                                      &Config::staticMetaObject,
                                      &Database::staticMetaObject,
                                      &DatabaseItem::staticMetaObject,
                                      &DatabaseItemListModel::staticMetaObject,
                                      &Date::staticMetaObject,
                                      &Error::staticMetaObject,
                                      &HalvarController::staticMetaObject,
                                      &Measure::staticMetaObject,
                                      &MeasureListModel::staticMetaObject,
                                      &NAPClient::staticMetaObject,
                                      &PIN::staticMetaObject,
                                      &ProxyLocalListModel::staticMetaObject,
                                      &QQmlObjectListModelBase::staticMetaObject,
                                      &QQmlSortFilterProxyModel::staticMetaObject,
                                      &Shock::staticMetaObject,
                                      &ShockListModel::staticMetaObject,
                                      &UD::staticMetaObject,
                                      &UDListModel::staticMetaObject};
    for (const QMetaObject *meta : all)
        QTest::newRow(meta->className()) << meta;
}

void TstInterfaceCoverage::page_tellsOfEveryMember()
{
    QFETCH(const QMetaObject *, meta);
    const Rows rows = readPage().value(QLatin1String(meta->className()));
    const QSet<QString> told(rows.keyBegin(), rows.keyEnd());
    const QSet<QString> offered = membersOf(*meta, rows);
    const QStringList missing = (offered - told).values();
    const QStringList gone = (told - offered).values();
    QVERIFY2(missing.isEmpty(),
             qUtf8Printable(QStringLiteral("not told of: ") + missing.join(QStringLiteral(", "))));
    QVERIFY2(gone.isEmpty(), qUtf8Printable(QStringLiteral("not there: ") + gone.join(QStringLiteral(", "))));
}

void TstInterfaceCoverage::page_tellsTheTruth()
{
    QMap<QString, QString> codeOf;
    static const QRegularExpression comment(QStringLiteral("//[^\n]*"));
    const QStringList files = qmlFiles();
    for (const QString &path : files)
        codeOf.insert(path.section(QLatin1Char('/'), -1), contentOf(path).remove(comment));
    QVERIFY(codeOf.size() > 30);
    const auto page = readPage();
    QVERIFY(page.size() > 15);
    for (auto section = page.begin(); section != page.end(); ++section) {
        for (auto row = section->begin(); row != section->end(); ++row) {
            const QString what = section.key() + QStringLiteral(", ") + row.key();
            if (row->file.isEmpty()) {
                // A reason is a sentence.
                QVERIFY2(row->reason.count(QLatin1Char(' ')) > 3 && row->reason.endsWith(QLatin1Char('.')),
                         qUtf8Printable(what));
                continue;
            }
            const QString member = row.key().section(QLatin1Char(' '), 1);
            QVERIFY2(row->code.contains(member), qUtf8Printable(what));
            QVERIFY2(codeOf.value(row->file).contains(row->code),
                     qUtf8Printable(QStringLiteral("%1: %2 has no %3").arg(what, row->file, row->code)));
        }
    }
}

void TstInterfaceCoverage::modules_nameTheirFiles()
{
    for (const char *directory : {"/components", "/screens"}) {
        const QString path = sources + QLatin1String(directory);
        const QStringList listed =
            contentOf(path + QStringLiteral("/qmldir")).split(QRegularExpression(QStringLiteral("\\s+")));
        const QStringList files = QDir(path).entryList({QStringLiteral("*.qml")});
        QVERIFY(files.size() > 10);
        for (const QString &file : files)
            QVERIFY2(listed.contains(file), qUtf8Printable(file));
        for (const QString &file : listed.filter(QStringLiteral(".qml")))
            QVERIFY2(files.contains(file), qUtf8Printable(file));
    }
}

void TstInterfaceCoverage::qml_isCleanForQmllint()
{
    QProcess lint;
    lint.setProcessChannelMode(QProcess::MergedChannels);
    lint.start(QStringLiteral(QMLLINT), qmlFiles() + qmlFiles(panelSources));
    QVERIFY(lint.waitForFinished());
    QCOMPARE(lint.readAll(), QByteArray());
    QCOMPARE(lint.exitCode(), 0);
}

void TstInterfaceCoverage::qml_saysWhereEveryNameComesFrom()
{
    // The modules, under their names.
    QTemporaryDir modules;
    for (const char *name : {"components", "style"}) {
        QString module = QLatin1String(name);
        module.replace(0, 1, module.at(0).toUpper());
        QVERIFY(QFile::link(sources + QLatin1Char('/') + QLatin1String(name),
                            modules.filePath(QStringLiteral("Halvar") + module)));
    }
    const QString proxies = modules.filePath(QStringLiteral("SortFilterProxyModel/"));
    writeFile(proxies + QStringLiteral("qmldir"),
              QStringLiteral("module SortFilterProxyModel\nplugin none\ntypeinfo plugins.qmltypes\n"));
    writeFile(proxies + QStringLiteral("plugins.qmltypes"),
              typesOf(QStringLiteral("SortFilterProxyModel"), {QStringLiteral("SortFilterProxyModel")}));
    const QString base = modules.filePath(QStringLiteral("base.qmltypes"));
    writeFile(base,
              typesOf(QStringLiteral("QtQml"),
                      {QStringLiteral("Component"), QStringLiteral("Connections"), QStringLiteral("QtObject"),
                       QStringLiteral("Timer")}));

    // What the start-up hands to every screen.
    QSet<QString> given{QStringLiteral("Easing")};
    static const QRegularExpression handed(QStringLiteral("\\{QStringLiteral\\(\"(\\w+)\"\\),"));
    auto names = handed.globalMatch(contentOf(sources + QStringLiteral("/interface.cpp")));
    while (names.hasNext())
        given.insert(names.next().captured(1));
    QVERIFY(given.contains(QStringLiteral("controller")));

    QStringList found;
    int known = 0;
    static const QRegularExpression place(QStringLiteral("unqualified access at (\\d+):(\\d+)"));
    static const QRegularExpression word(QStringLiteral("\\w+"));
    const QStringList files = qmlFiles();
    for (const QString &path : files) {
        QProcess lint;
        lint.setProcessChannelMode(QProcess::MergedChannels);
        lint.start(QStringLiteral(QMLLINT),
                   {QStringLiteral("-U"), QStringLiteral("-i"), base, QStringLiteral("-I"),
                    QLibraryInfo::location(QLibraryInfo::Qml2ImportsPath), QStringLiteral("-I"),
                    modules.path(), path});
        QVERIFY(lint.waitForFinished());
        const QString told = QString::fromUtf8(lint.readAll());
        // Of a file with a type that it does not know, it tells nothing more.
        QVERIFY2(!told.contains(QLatin1String("was not found")), qUtf8Printable(path + told));
        const QStringList lines = contentOf(path).split(QLatin1Char('\n'));
        auto places = place.globalMatch(told);
        while (places.hasNext()) {
            const QRegularExpressionMatch at = places.next();
            const QString line = lines.value(at.captured(1).toInt() - 1);
            const QString name = word.match(line, at.captured(2).toInt() - 1).captured();
            // The expression of a proxy is on the roles of its rows.
            if (given.contains(name) || name.endsWith(QLatin1String("EnumClass"))
                || line.contains(QLatin1String("filterExpression:")))
                ++known;
            else
                found.append(QStringLiteral("%1:%2: %3").arg(path, at.captured(1), name));
        }
    }
    QVERIFY2(found.isEmpty(), qUtf8Printable(found.join(QLatin1Char('\n'))));
    QVERIFY(known > 100);
}

void TstInterfaceCoverage::translations_areComplete_data()
{
    QTest::addColumn<QString>("directory");
    QTest::addColumn<QStringList>("options");
    QTest::newRow("halvar_en.ts") << sources << QStringList();
    QTest::newRow("halvar_fr.ts") << sources << QStringList{QStringLiteral("-pluralonly")};
    QTest::newRow("panel_en.ts") << panelSources << QStringList();
}

void TstInterfaceCoverage::translations_areComplete()
{
    QFETCH(QString, directory);
    QFETCH(QStringList, options);
    const QString name = QString::fromLatin1(QTest::currentDataTag());
    QTemporaryDir temporary;
    const QString copy = temporary.filePath(name);
    QVERIFY(QFile::copy(directory + QStringLiteral("/i18n/") + name, copy));
    // Texts that are new or gone since the file was made would show.
    options += {QStringLiteral("-extensions"),  QStringLiteral("qml,cpp,h"),
                QStringLiteral("-no-obsolete"), QStringLiteral("-locations"),
                QStringLiteral("none"),         directory,
                QStringLiteral("-ts"),          copy};
    QCOMPARE(QProcess::execute(QStringLiteral(LUPDATE), QStringList{QStringLiteral("-silent")} + options), 0);
    const QString updated = contentOf(copy);
    QVERIFY2(!updated.contains(QLatin1String("type=\"unfinished\"")), qUtf8Printable(updated));
    QCOMPARE(updated, contentOf(directory + QStringLiteral("/i18n/") + name));
}

QTEST_MAIN(TstInterfaceCoverage)
#include "tst_interface_coverage.moc"
