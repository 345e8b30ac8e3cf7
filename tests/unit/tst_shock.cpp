// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include <QMetaProperty>
#include <QTest>

#include "shock.h"

class TstShock : public QObject
{
    Q_OBJECT

private:
    const QDateTime m_moment{QDate(2026, 3, 1), QTime(14, 5, 9)};

private slots:
    void shock_keepsItsMomentAndItsParent()
    {
        QObject parent;
        const auto *shock = new Shock(m_moment, &parent);
        QCOMPARE(shock->dateTime(), m_moment);
        QCOMPARE(shock->parent(), &parent);
    }

    void dateTime_isTheOnlyProperty_constantAndWithoutSignal()
    {
        const QMetaObject &metaObject = Shock::staticMetaObject;
        QCOMPARE(metaObject.propertyCount() - metaObject.propertyOffset(), 1);
        const QMetaProperty property = metaObject.property(metaObject.propertyOffset());
        QCOMPARE(property.name(), "dateTime");
        QCOMPARE(property.userType(), int(QMetaType::QDateTime));
        QVERIFY(property.isReadable());
        QVERIFY(!property.isWritable());
        QVERIFY(property.isConstant());
        QVERIFY(!property.hasNotifySignal());
        QCOMPARE(metaObject.methodCount(), metaObject.methodOffset());
    }

    void setDateTime_replacesTheMoment()
    {
        Shock shock{QDateTime()};
        shock.setDateTime(m_moment);
        QCOMPARE(shock.property("dateTime").toDateTime(), m_moment);
    }
};

QTEST_APPLESS_MAIN(TstShock)
#include "tst_shock.moc"
