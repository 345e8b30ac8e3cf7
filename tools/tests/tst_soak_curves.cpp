// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include "curves.h"

#include <QTest>
#include <QXmlStreamReader>

namespace {

Curve curve(const QVector<double> &values, double relativeAllowance, double absoluteAllowance = 0)
{
    Curve made{QStringLiteral("memory"), QStringLiteral("kB"), relativeAllowance, absoluteAllowance, {}, {}};
    for (int i = 0; i < values.size(); ++i)
        made.add((i + 1) * 100, values.at(i));
    return made;
}

} // namespace

class TstSoakCurves : public QObject
{
    Q_OBJECT
private slots:
    void line_goesThroughItsPoints();
    void warmUp_isLeftOut();
    void growthBeyondTheAllowance_isNotFlat();
    void falling_isFlat();
    void tooFewPoints_areNotFlat();
    void picture_drawsEachCurveAndItsLine();
};

void TstSoakCurves::line_goesThroughItsPoints()
{
    const Fit line = fit(curve({10, 12, 14, 16}, 1), 0);
    QCOMPARE(line.perShot, 0.02);
    QCOMPARE(line.mean, 13.0);
    QCOMPARE(line.growth, 8.0);
    QCOMPARE(line.allowed, 13.0);
    QVERIFY(line.isFlat);
}

void TstSoakCurves::warmUp_isLeftOut()
{
    const Curve made = curve({1, 50, 100, 100, 100, 100}, 0.01);
    QVERIFY(!fit(made, 0).isFlat);
    const Fit line = fit(made, 300);
    QCOMPARE(line.mean, 100.0);
    QCOMPARE(line.growth, 0.0);
    QVERIFY(line.isFlat);
}

void TstSoakCurves::growthBeyondTheAllowance_isNotFlat()
{
    const QVector<double> values{100, 101, 102, 103};
    QVERIFY(!fit(curve(values, 0.02), 100).isFlat);
    QVERIFY(fit(curve(values, 0.03), 100).isFlat);
    // The larger of the two allowances counts.
    QVERIFY(fit(curve(values, 0.02, 3), 100).isFlat);
    QVERIFY(!fit(curve(values, 0, 2.9), 100).isFlat);
}

void TstSoakCurves::falling_isFlat()
{
    QVERIFY(fit(curve({100, 90, 80}, 0), 0).isFlat);
}

void TstSoakCurves::tooFewPoints_areNotFlat()
{
    QVERIFY(!fit(curve({100, 100}, 1), 0).isFlat);
    QVERIFY(!fit(curve({100, 100, 100, 100}, 1), 300).isFlat);
    QVERIFY(!fit(curve({}, 1), 0).isFlat);
}

void TstSoakCurves::picture_drawsEachCurveAndItsLine()
{
    QXmlStreamReader xml(picture({curve({10, 12, 14}, 1), curve({5, 5, 5}, 1)}, 0));
    QStringList colours;
    while (!xml.atEnd()) {
        if (xml.readNext() == QXmlStreamReader::StartElement && xml.name() == QLatin1String("polyline"))
            colours.append(xml.attributes().value(QLatin1String("stroke")).toString());
    }
    QVERIFY2(!xml.hasError(), qPrintable(xml.errorString()));
    const QStringList panel{QStringLiteral("#888"), QStringLiteral("#1565c0"), QStringLiteral("#2e7d32")};
    QCOMPARE(colours, panel + panel);
}

QTEST_APPLESS_MAIN(TstSoakCurves)
#include "tst_soak_curves.moc"
