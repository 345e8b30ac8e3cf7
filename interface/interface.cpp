// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include "interface.h"

#include <QFont>
#include <QGuiApplication>
#include <QQmlContext>
#include <QQuickStyle>
#include <QQuickWindow>

#include <QsLog.h>

#include <battery.h>
#include <calibration.h>
#include <config.h>
#include <database.h>
#include <date.h>
#include <enums.h>
#include <halvar-error.h>
#include <halvarcontroller.h>
#include <measurelistmodel.h>
#include <pin.h>
#include <proxylocallistmodel.h>
#include <shocklistmodel.h>
#include <udlistmodel.h>

// Outside any namespace, as the macro wants it.
static void loadResources()
{
    Q_INIT_RESOURCE(interface);
}

namespace {

void toLog(QtMsgType type, const QMessageLogContext &, const QString &message)
{
    switch (type) {
    case QtDebugMsg:
        QLOG_DEBUG() << qUtf8Printable(message);
        break;
    case QtInfoMsg:
        QLOG_INFO() << qUtf8Printable(message);
        break;
    case QtWarningMsg:
        QLOG_WARN() << qUtf8Printable(message);
        break;
    case QtCriticalMsg:
    case QtFatalMsg:
        QLOG_ERROR() << qUtf8Printable(message);
        break;
    }
}

void declareEnumerations()
{
    AccuracyStageEnumClass::declareQML();
    AcquisitionModeEnumClass::declareQML();
    BatteryLevelsEnumClass::declareQML();
    BranchModeEnumClass::declareQML();
    CalibrationEnumClass::declareQML();
    DegradationStateEnumClass::declareQML();
    DetectionDecisionEnumClass::declareQML();
    LocalisationEnumClass::declareQML();
    MeasureModeEnumClass::declareQML();
    UDStatutEnumClass::declareQML();
}

} // namespace

void Interface::prepare()
{
    qInstallMessageHandler(toLog);
    loadResources();
    declareEnumerations();
    // The service page shows the information file as it stands.
    qputenv("QML_XHR_ALLOW_FILE_READ", "1");
    QQuickStyle::setStyle(QStringLiteral(":/halvar/HalvarStyle"));
    QFont font(QStringLiteral("Inter"));
    font.setPixelSize(17);
    QGuiApplication::setFont(font);
}

Interface::Interface(HalvarController &controller, Config &config, Database &database, const QLocale &locale)
    : m_controller(controller)
    , m_config(config)
    , m_database(database)
    , m_files(controller.property("home").toString())
{
    const auto loadTexts = [this](const QLocale &language) {
        return m_translator.load(language, QStringLiteral("halvar"), QStringLiteral("_"),
                                 QStringLiteral(":/halvar/i18n"));
    };
    // Without a translation the texts are French, and their plurals are in a file.
    if (loadTexts(locale) || loadTexts(QLocale(QLocale::French)))
        QCoreApplication::installTranslator(&m_translator);
    // What it says of damaged files is to be in the language of the screens.
    m_files.refresh();
    declareIn(m_engine);
}

void Interface::declareIn(QQmlEngine &engine)
{
    const QVariantList accuracies{QVariant::fromValue<QObject *>(m_controller.accuracyLive),
                                  QVariant::fromValue<QObject *>(m_controller.accuracyInit),
                                  QVariant::fromValue<QObject *>(m_controller.accuracyInterrupt),
                                  QVariant::fromValue<QObject *>(m_controller.accuracyFinal)};
    QQmlContext *context = engine.rootContext();
    context->setContextProperties({
        {QStringLiteral("controller"), QVariant::fromValue<QObject *>(&m_controller)},
        {QStringLiteral("uds"), QVariant::fromValue<QObject *>(m_controller.uds)},
        {QStringLiteral("directMeasures"), QVariant::fromValue<QObject *>(m_controller.directMeasures)},
        {QStringLiteral("pin"), QVariant::fromValue<QObject *>(m_controller.pin)},
        {QStringLiteral("battery"), QVariant::fromValue<QObject *>(m_controller.battery)},
        {QStringLiteral("date"), QVariant::fromValue<QObject *>(m_controller.date)},
        {QStringLiteral("error"), QVariant::fromValue<QObject *>(m_controller.error)},
        {QStringLiteral("calibration"), QVariant::fromValue<QObject *>(m_controller.calibration)},
        {QStringLiteral("accuracyMeasures"), accuracies},
        {QStringLiteral("config"), QVariant::fromValue<QObject *>(&m_config)},
        {QStringLiteral("database"), QVariant::fromValue<QObject *>(&m_database)},
        {QStringLiteral("rooms"), QVariant::fromValue<QObject *>(m_database.m_LocalItemsListModel)},
        {QStringLiteral("elements"), QVariant::fromValue<QObject *>(m_database.m_ElementItemsListModel)},
        {QStringLiteral("substrates"), QVariant::fromValue<QObject *>(m_database.m_SubstratItemsListModel)},
        {QStringLiteral("coatings"), QVariant::fromValue<QObject *>(m_database.m_RevetementItemsListModel)},
        {QStringLiteral("reasonsNotVisited"),
         QVariant::fromValue<QObject *>(m_database.m_NonVisiteItemsListModel)},
        {QStringLiteral("reasonsNotMeasured"),
         QVariant::fromValue<QObject *>(m_database.m_NonMesureItemsListModel)},
        {QStringLiteral("statesOfUse"), QVariant::fromValue<QObject *>(m_database.m_EtatUsageItemsListModel)},
        {QStringLiteral("statesOfDegradation"),
         QVariant::fromValue<QObject *>(m_database.m_EtatDegradeItemsListModel)},
        {QStringLiteral("usedRooms"), QVariant::fromValue<QObject *>(m_controller.uds->localProxyModel())},
        {QStringLiteral("shocks"),
         QVariant::fromValue<QObject *>(m_controller.error->findChild<ShockListModel *>())},
        {QStringLiteral("diagnosticFiles"), QVariant::fromValue<QObject *>(&m_files)},
        {QStringLiteral("logLines"), QVariant::fromValue<QObject *>(&m_log)},
    });
    engine.addImportPath(QStringLiteral("qrc:/halvar"));
}

Interface::~Interface()
{
    QCoreApplication::removeTranslator(&m_translator);
}

QQuickWindow *Interface::load(const QVariantMap &properties)
{
    m_engine.setInitialProperties(properties);
    m_engine.load(QUrl(QStringLiteral("qrc:/halvar/Main.qml")));
    return qobject_cast<QQuickWindow *>(m_engine.rootObjects().value(0));
}
