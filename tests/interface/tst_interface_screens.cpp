// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
//
// Each screen by itself on real library objects, in both orientations and languages, with what is meant
// for it and with what is not.
#include <QFile>
#include <QQmlProperty>
#include <QQuickItem>
#include <QQuickWindow>
#include <QTest>

#include <databaseitemlistmodel.h>
#include <failure.h>
#include <halvar-error.h>
#include <measure.h>
#include <measurelistmodel.h>
#include <ud.h>
#include <udlistmodel.h>

#include "eye.h"
#include "showcase.h"

Q_DECLARE_METATYPE(Strictness)

namespace {

/// A room, a unit of it and a measure of that, named as given.
UD *addUnit(const Showcase &showcase, const QString &room, const QString &text)
{
    auto *unit = new UD;
    unit->setLocal(room);
    unit->setElement(text);
    unit->setSubstrat(text);
    unit->setRevetement(text);
    unit->setObservation(text);
    unit->setIdentifier(7);
    auto *measure = new Measure;
    measure->setConcentration(1.53);
    measure->setSigma(0.21);
    DetectionDecisionEnumClass::DetectionDecision decision = DetectionDecisionEnumClass::POSITIVE;
    measure->setDetectionDecision(decision);
    measure->setLocalisation(LocalisationEnumClass::UP);
    measure->setDegradationState(DegradationStateEnumClass::DEGRADE);
    measure->setConservationState(text);
    measure->setIdNAP(4711);
    unit->measures()->append(measure);
    showcase->uds->append(unit);
    return unit;
}

/// The screens, and what each is opened with.
QVector<QPair<QString, QVariantMap>> screens(Showcase &showcase, const QString &room)
{
    const auto list = [&showcase](const char *name) { return showcase.object(QLatin1String(name)); };
    const QVariant measure =
        QVariant::fromValue<QObject *>(showcase->uds->at(showcase->uds->count() - 1)->measures()->at(0));
    return {{QStringLiteral("AccuracyScreen"), {}},
            {QStringLiteral("CalibrationScreen"), {}},
            {QStringLiteral("DirectScreen"), {}},
            {QStringLiteral("SettingsScreen"), {}},
            {QStringLiteral("DiagnosticsScreen"), {}},
            {QStringLiteral("NewDiagnosticScreen"), {}},
            {QStringLiteral("DiagnosticScreen"), {}},
            {QStringLiteral("RoomsScreen"), {}},
            {QStringLiteral("UnitsScreen"), {{QStringLiteral("room"), room}}},
            {QStringLiteral("UnitScreen"), {{QStringLiteral("row"), showcase->uds->count() - 1}}},
            {QStringLiteral("MeasureScreen"),
             {{QStringLiteral("measure"), measure}, {QStringLiteral("number"), 12}}},
            {QStringLiteral("PickScreen"),
             {{QStringLiteral("title"), QStringLiteral("Local")},
              {QStringLiteral("items"), list("rooms")},
              {QStringLiteral("allowNone"), true},
              {QStringLiteral("current"), room}}},
            {QStringLiteral("ShocksScreen"), {}},
            {QStringLiteral("ServiceScreen"), {}},
            {QStringLiteral("LogScreen"), {}}};
}

/// Opens all screens, one after the other and each from the start, and gives what there is to complain of.
QStringList lookAtAll(Showcase &showcase, const QString &room, Strictness strictness)
{
    QStringList found;
    showcase.settleAtOnce();
    const auto all = screens(showcase, room);
    for (const auto &[name, properties] : all) {
        showcase.open(name, properties);
        showcase.hand->inBothOrientations([&, screen = name](const QString &appearance) {
            const QStringList seen = complaints(showcase.window, strictness);
            for (const QString &complaint : seen)
                found.append(QStringLiteral("%1, %2: %3").arg(screen, appearance, complaint));
        });
        for (const QString &warning : showcase.watch.warnings())
            found.append(QStringLiteral("%1: %2").arg(name, warning));
        showcase.watch.clear();
        showcase.hand->key(Qt::Key_Escape);
        showcase.hand->waitForScreen(QStringLiteral("HomeScreen"));
    }
    return found;
}

// The list is made once: a macro's argument is not.
#define VERIFY_NOTHING_FOUND(found)                                                                          \
    do {                                                                                                     \
        const QStringList list = (found);                                                                    \
        QVERIFY2(list.isEmpty(), qUtf8Printable(QLatin1Char('\n') + list.join(QLatin1Char('\n'))));          \
    } while (false)

} // namespace

class TstInterfaceScreens : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { Showcase::fillHome(); }
    void everyScreen_isRightInBothOrientations_data();
    void everyScreen_isRightInBothOrientations();
    void expiredSourceShockAndError_leaveEveryScreenUsable();
    void smallScreen_isFitted_data();
    void smallScreen_isFitted();
    void pageOfAFewControls_isSeenWhole_data();
    void pageOfAFewControls_isSeenWhole();
    void emptyReferenceLists_areSaidToBeEmpty();
    void missingPicture_isReplacedByASign();
};

void TstInterfaceScreens::everyScreen_isRightInBothOrientations_data()
{
    QTest::addColumn<QString>("language");
    QTest::addColumn<QString>("room");
    QTest::addColumn<QString>("text");
    QTest::addColumn<Strictness>("strictness");
    QTest::newRow("French") << "fr_FR"
                            << "Cuisine"
                            << "Mur" << Strictness::Everything;
    QTest::newRow("English") << "en_GB"
                             << "Cuisine"
                             << "Mur" << Strictness::Everything;
    const QString word = QStringLiteral("Encadrement ");
    QTest::newRow("500 characters") << "fr_FR" << word.repeated(42).left(500) << word.repeated(42).left(500)
                                    << Strictness::LongTexts;
    QTest::newRow("500 characters without a blank")
        << "fr_FR" << QString(500, QLatin1Char('W')) << QString(500, QLatin1Char('W'))
        << Strictness::LongTexts;
    QTest::newRow("from right to left") << "fr_FR" << QString::fromUtf8("غرفة المعيشة الكبيرة")
                                        << QString::fromUtf8("جدار أبيض") << Strictness::LongTexts;
    QTest::newRow("emoji") << "fr_FR" << QString::fromUtf8("🏠 Séjour 👨‍👩‍👧‍👦")
                           << QString::fromUtf8("🧱🎨") << Strictness::LongTexts;
    QTest::newRow("markup") << "fr_FR"
                            << "<b>Cuisine</b><br><img src='x.png'>"
                            << "<h1>Mur</h1>" << Strictness::LongTexts;
}

void TstInterfaceScreens::everyScreen_isRightInBothOrientations()
try {
    QFETCH(QString, language);
    QFETCH(QString, room);
    QFETCH(QString, text);
    QFETCH(Strictness, strictness);

    Showcase showcase{QLocale(language)};
    showcase.unlock();
    if (showcase.database.m_LocalItemsListModel->findImageFromTitle(room).isEmpty())
        showcase.database.m_LocalItemsListModel->add(room, QString(), QStringLiteral("locaux"), 0);
    showcase->setFileName(text);
    showcase->setLocalization(text);
    addUnit(showcase, room, text);
    const auto measure = [&showcase, &text] {
        auto *direct = new Measure;
        direct->setConcentration(12.345);
        direct->setSigma(0.4);
        direct->setConservationState(text);
        showcase->directMeasures->append(direct);
    };
    measure();
    VERIFY_NOTHING_FOUND(lookAtAll(showcase, room, strictness));
    // Nothing of this is to be found by other tests.
    QFile::remove(showcase.home() + QStringLiteral("files/") + text + QStringLiteral(".xml"));
} catch (const Failure &failure) {
    QFAIL(qUtf8Printable(failure.text));
}

void TstInterfaceScreens::expiredSourceShockAndError_leaveEveryScreenUsable()
try {
    Showcase::fillHome();
    Showcase::setConfig(QStringLiteral("DateEndSource"), QStringLiteral("01/03/2024"));
    Showcase showcase;
    showcase.unlock();
    showcase->error->setShock(true);
    showcase->error->setErrorMessage(QStringLiteral("Problème de Haute Tension - Erreur S5"));
    addUnit(showcase, QStringLiteral("Cuisine"), QStringLiteral("Mur"));
    QStringList found = lookAtAll(showcase, QStringLiteral("Cuisine"), Strictness::Everything);
    VERIFY_NOTHING_FOUND(found);
    Showcase::fillHome();
} catch (const Failure &failure) {
    QFAIL(qUtf8Printable(failure.text));
}

void TstInterfaceScreens::smallScreen_isFitted_data()
{
    QTest::addColumn<QSizeF>("desktop");
    QTest::addColumn<bool>("landscape");
    QTest::addColumn<QSize>("window");
    QTest::newRow("the instrument's own") << QSizeF(480, 800) << false << QSize(480, 800);
    QTest::newRow("the instrument's own, turned") << QSizeF(800, 480) << true << QSize(800, 480);
    QTest::newRow("large desktop") << QSizeF(1920, 1040) << false << QSize(480, 800);
    QTest::newRow("laptop") << QSizeF(1366, 728) << false << QSize(480, 648);
    QTest::newRow("laptop, turned") << QSizeF(1366, 728) << true << QSize(800, 480);
    QTest::newRow("old laptop") << QSizeF(1024, 560) << false << QSize(800, 480);
}

void TstInterfaceScreens::smallScreen_isFitted()
try {
    QFETCH(QSizeF, desktop);
    QFETCH(bool, landscape);
    QFETCH(QSize, window);
    Showcase showcase(QLocale(QStringLiteral("fr_FR")),
                      {{QStringLiteral("desktop"), desktop}, {QStringLiteral("landscape"), landscape}});
    QCOMPARE(showcase.window->size(), window);
    showcase.settleAtOnce();
    showcase->waitingForGo();
    showcase.hand->waitForScreen(QStringLiteral("PinScreen"));
    QCOMPARE(complaints(showcase.window), QStringList());
    showcase.unlock();
    addUnit(showcase, QStringLiteral("Cuisine"), QStringLiteral("Mur"));
    QStringList found;
    const auto all = screens(showcase, QStringLiteral("Cuisine"));
    for (const auto &[name, properties] : all) {
        showcase.open(name, properties);
        const QStringList seen = complaints(showcase.window);
        for (const QString &complaint : seen)
            found.append(QStringLiteral("%1: %2").arg(name, complaint));
        showcase.hand->key(Qt::Key_Escape);
        showcase.hand->waitForScreen(QStringLiteral("HomeScreen"));
    }
    VERIFY_NOTHING_FOUND(found + showcase.watch.warnings());
} catch (const Failure &failure) {
    QFAIL(qUtf8Printable(failure.text));
}

void TstInterfaceScreens::pageOfAFewControls_isSeenWhole_data()
{
    QTest::addColumn<QString>("language");
    QTest::newRow("French") << "fr_FR";
    QTest::newRow("English") << "en_GB";
}

void TstInterfaceScreens::pageOfAFewControls_isSeenWhole()
try {
    QFETCH(QString, language);
    Showcase showcase{QLocale(language)};
    showcase.unlock();
    showcase.settleAtOnce();
    addUnit(showcase, QStringLiteral("Cuisine"), QStringLiteral("Mur"));
    QStringList found;
    const auto all = screens(showcase, QStringLiteral("Cuisine"));
    for (const auto &[name, properties] : all) {
        if (!QStringList{QStringLiteral("CalibrationScreen"), QStringLiteral("SettingsScreen"),
                         QStringLiteral("NewDiagnosticScreen"), QStringLiteral("DiagnosticScreen"),
                         QStringLiteral("MeasureScreen")}
                 .contains(name))
            continue;
        showcase.open(name, properties);
        showcase.hand->inBothOrientations([&, screen = name](const QString &appearance) {
            const QList<QQuickItem *> items = visibleItems(showcase.window->contentItem());
            int sheets = 0;
            for (const QQuickItem *item : items) {
                if (!item->inherits("QQuickFlickable"))
                    continue;
                ++sheets;
                const double hidden = item->property("contentHeight").toDouble() - item->height();
                if (hidden > 0)
                    found.append(
                        QStringLiteral("%1, %2: %3 px are hidden").arg(screen, appearance).arg(hidden));
            }
            if (sheets == 0)
                found.append(QStringLiteral("%1, %2: there is no sheet").arg(screen, appearance));
        });
        showcase.hand->key(Qt::Key_Escape);
        showcase.hand->waitForScreen(QStringLiteral("HomeScreen"));
    }
    VERIFY_NOTHING_FOUND(found);
} catch (const Failure &failure) {
    QFAIL(qUtf8Printable(failure.text));
}

void TstInterfaceScreens::emptyReferenceLists_areSaidToBeEmpty()
try {
    Showcase showcase;
    showcase.unlock();
    for (DatabaseItemListModel *list :
         {showcase.database.m_LocalItemsListModel, showcase.database.m_ElementItemsListModel,
          showcase.database.m_SubstratItemsListModel, showcase.database.m_RevetementItemsListModel,
          showcase.database.m_EtatUsageItemsListModel, showcase.database.m_EtatDegradeItemsListModel,
          showcase.database.m_NonVisiteItemsListModel, showcase.database.m_NonMesureItemsListModel})
        list->clear();
    addUnit(showcase, QString(), QString());
    VERIFY_NOTHING_FOUND(lookAtAll(showcase, QString(), Strictness::Everything));

    showcase.open(QStringLiteral("PickScreen"),
                  {{QStringLiteral("items"), showcase.object(QStringLiteral("rooms"))}});
    QVERIFY(isSaid(showcase.window, QStringLiteral("Cette liste est vide.")));
    showcase.hand->fill(QStringLiteral("search"), QStringLiteral("Grange"));
    QTRY_VERIFY(isSaid(showcase.window, QStringLiteral("Rien ne correspond à « Grange ».")));
    QVERIFY(showcase.hand->see(QStringLiteral("Ajouter « Grange »")));
    showcase.hand->key(Qt::Key_Escape);
    showcase.hand->waitForScreen(QStringLiteral("HomeScreen"));

    // A unit can be left out all the same.
    showcase.open(QStringLiteral("UnitScreen"), {{QStringLiteral("row"), 0}});
    showcase.hand->tap(QStringLiteral("skip"));
    showcase.hand->tap(QStringLiteral("yes"));
    showcase.hand->waitForScreen(QStringLiteral("PickScreen"));
    showcase.hand->tap(QStringLiteral("none"));
    showcase.hand->waitForScreen(QStringLiteral("UnitScreen"));
    QCOMPARE(showcase->uds->at(0)->statut(), UDStatutEnumClass::SKIPPED);
} catch (const Failure &failure) {
    QFAIL(qUtf8Printable(failure.text));
}

void TstInterfaceScreens::missingPicture_isReplacedByASign()
try {
    Showcase showcase;
    showcase.unlock();
    // As a diagnostic from another instrument brings it.
    showcase.database.m_LocalItemsListModel->add(
        QStringLiteral("Aaa"), QStringLiteral("file:/nowhere/aaa.png"), QStringLiteral("locaux"), 0);
    showcase.open(QStringLiteral("PickScreen"),
                  {{QStringLiteral("items"), showcase.object(QStringLiteral("rooms"))}});
    QTRY_VERIFY(!showcase.watch.warnings().isEmpty());
    QVERIFY2(showcase.watch.warnings().join(QString()).contains(QLatin1String("aaa.png")),
             qUtf8Printable(showcase.watch.warnings().join(QLatin1Char('\n'))));
    const QQuickItem *row = showcase.hand->find(QStringLiteral("Aaa"));
    int signs = 0;
    const QList<QQuickItem *> items = visibleItems(row);
    for (const QQuickItem *item : items)
        signs += item->property("name").toString() == QLatin1String("picture") ? 1 : 0;
    QCOMPARE(signs, 1);
    VERIFY_NOTHING_FOUND(complaints(showcase.window));
} catch (const Failure &failure) {
    QFAIL(qUtf8Printable(failure.text));
}

QTEST_MAIN(TstInterfaceScreens)
#include "tst_interface_screens.moc"
