// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
//
// The surface that QML binds to, class by class, as text in tests/api/. A change there is a change of the
// interface: it belongs into the changelog. HALVAR_UPDATE_API=1 in the environment rewrites the files.
#include <QFile>
#include <QMetaMethod>
#include <QMetaProperty>
#include <QTest>

#include "battery.h"
#include "calibration.h"
#include "config.h"
#include "database.h"
#include "databaseitem.h"
#include "databaseitemlistmodel.h"
#include "date.h"
#include "enums.h"
#include "halvar-error.h"
#include "halvarcontroller.h"
#include "measure.h"
#include "measurelistmodel.h"
#include "napclient.h"
#include "pin.h"
#include "proxylocallistmodel.h"
#include "qqmlobjectlistmodel.h"
#include "qqmlsortfilterproxymodel.h"
#include "shock.h"
#include "shocklistmodel.h"
#include "ud.h"
#include "udlistmodel.h"

Q_DECLARE_METATYPE(const QMetaObject *)

namespace {

QByteArray propertyLine(const QMetaProperty &property)
{
    QByteArray line = QByteArray("property ") + property.typeName() + ' ' + property.name();
    if (property.isWritable())
        line += " writable";
    if (property.isConstant())
        line += " constant";
    if (property.hasNotifySignal())
        line += " notify " + property.notifySignal().methodSignature();
    return line + '\n';
}

QByteArray methodLine(const QMetaMethod &method)
{
    static const char *const kinds[] = {"invokable", "signal", "slot", "constructor"};
    static const char *const access[] = {"private ", "protected ", ""};
    QByteArray line = QByteArray(access[method.access()]) + kinds[method.methodType()] + ' '
        + method.typeName() + ' ' + method.methodSignature();
    const QList<QByteArray> names = method.parameterNames();
    if (!names.isEmpty())
        line += " [" + names.join(", ") + ']';
    return line + '\n';
}

/// What \p metaObject itself declares, in declaration order.
QByteArray describe(const QMetaObject &metaObject)
{
    QByteArray text =
        QByteArray("class ") + metaObject.className() + " : " + metaObject.superClass()->className() + '\n';
    for (int i = metaObject.enumeratorOffset(); i < metaObject.enumeratorCount(); ++i) {
        const QMetaEnum enumeration = metaObject.enumerator(i);
        text += QByteArray("enumeration ") + enumeration.name() + '\n';
        for (int key = 0; key < enumeration.keyCount(); ++key)
            text += QByteArray("  ") + enumeration.key(key) + " = "
                + QByteArray::number(enumeration.value(key)) + '\n';
    }
    for (int i = metaObject.propertyOffset(); i < metaObject.propertyCount(); ++i)
        text += propertyLine(metaObject.property(i));
    for (int i = metaObject.methodOffset(); i < metaObject.methodCount(); ++i)
        text += methodLine(metaObject.method(i));
    return text;
}

} // namespace

class TstApi : public QObject
{
    Q_OBJECT

private slots:
    void surface_isAsRecorded_data()
    {
        QTest::addColumn<const QMetaObject *>("metaObject");
        const QMetaObject *const all[] = {
            &AccuracyStageEnumClass::staticMetaObject,
            &AcquisitionModeEnumClass::staticMetaObject,
            &BatteryLevelsEnumClass::staticMetaObject,
            &BranchModeEnumClass::staticMetaObject,
            &CalibrationEnumClass::staticMetaObject,
            &DegradationStateEnumClass::staticMetaObject,
            &DetectionDecisionEnumClass::staticMetaObject,
            &LocalisationEnumClass::staticMetaObject,
            &MeasureModeEnumClass::staticMetaObject,
            &UDStatutEnumClass::staticMetaObject,
            &Battery::staticMetaObject,
            &Calibration::staticMetaObject,
            &Config::staticMetaObject,
            &Database::staticMetaObject,
            &DatabaseItem::staticMetaObject,
            &DatabaseItemListModel::staticMetaObject,
            &Date::staticMetaObject,
            &Error::staticMetaObject,
            &HalvarController::staticMetaObject,
            &Measure::staticMetaObject,
            &NAPClient::staticMetaObject,
            &PIN::staticMetaObject,
            &ProxyLocalListModel::staticMetaObject,
            &QQmlObjectListModelBase::staticMetaObject,
            &QQmlSortFilterProxyModel::staticMetaObject,
            &Shock::staticMetaObject,
            &UD::staticMetaObject,
            &UDListModel::staticMetaObject,
        };
        for (const QMetaObject *metaObject : all)
            QTest::newRow(metaObject->className()) << metaObject;
    }
    void surface_isAsRecorded()
    {
        QFETCH(const QMetaObject *, metaObject);
        const QByteArray found = describe(*metaObject);
        QFile file(QStringLiteral(HALVAR_SOURCE_DIR "/tests/api/%1.txt")
                       .arg(QString::fromLatin1(metaObject->className())));
        if (qEnvironmentVariableIsSet("HALVAR_UPDATE_API")) {
            QVERIFY(file.open(QIODevice::WriteOnly));
            QCOMPARE(file.write(found), qint64(found.size()));
            QSKIP("The record was rewritten, nothing was compared.");
        }
        QVERIFY2(file.open(QIODevice::ReadOnly), qPrintable(file.fileName()));
        const QList<QByteArray> recordedLines = file.readAll().split('\n');
        const QList<QByteArray> foundLines = found.split('\n');
        for (int i = 0; i < qMin(recordedLines.size(), foundLines.size()); ++i)
            QCOMPARE(foundLines[i], recordedLines[i]);
        QCOMPARE(foundLines.size(), recordedLines.size());
    }
};

QTEST_APPLESS_MAIN(TstApi)
#include "tst_api.moc"
