// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include "curves.h"

#include <QXmlStreamWriter>

#include <algorithm>

namespace {

constexpr int width = 760;
constexpr int height = 150;
constexpr int left = 90;
constexpr int top = 30;

QString number(double value)
{
    return QString::number(value, 'g', 6);
}

/// Draws one curve into its part of the picture.
class Panel
{
public:
    Panel(QXmlStreamWriter &xml, const Curve &curve, int offset)
        : m_xml(xml)
        , m_curve(curve)
        , m_offset(offset)
        , m_lastShot(curve.shots.isEmpty() ? 1 : curve.shots.last())
        , m_highest(
              curve.values.isEmpty() ? 1 : *std::max_element(curve.values.begin(), curve.values.end()) * 1.2)
    { }

    void draw(const Fit &line, double warmUp)
    {
        const int bottom = m_offset + top + height;
        text(left, m_offset + 18,
             QStringLiteral("%1: %2 %3 on average, %4 %3 more over the run (%5 allowed)")
                 .arg(m_curve.name, number(line.mean), m_curve.unit, number(line.growth),
                      number(line.allowed)));
        text(4, m_offset + top + 10, number(m_highest));
        text(4, bottom, QStringLiteral("0 %1").arg(m_curve.unit));
        text(left + width - 60, bottom + 14, QStringLiteral("%1 shots").arg(number(m_lastShot)));
        lines({{0, 0}, {m_lastShot, 0}}, QStringLiteral("#888"), 1);
        QVector<QPair<double, double>> points;
        for (int i = 0; i < m_curve.shots.size(); ++i)
            points.append({m_curve.shots.at(i), m_curve.values.at(i)});
        lines(points, QStringLiteral("#1565c0"), 1.5);
        // The fitted line goes through the middle of the points that it was fitted to.
        const double middle = (warmUp + m_lastShot) / 2;
        lines({{warmUp, line.mean + line.perShot * (warmUp - middle)},
               {m_lastShot, line.mean + line.perShot * (m_lastShot - middle)}},
              line.isFlat ? QStringLiteral("#2e7d32") : QStringLiteral("#c62828"), 2);
    }

private:
    void text(int x, int y, const QString &content)
    {
        m_xml.writeStartElement(QStringLiteral("text"));
        m_xml.writeAttribute(QStringLiteral("x"), QString::number(x));
        m_xml.writeAttribute(QStringLiteral("y"), QString::number(y));
        m_xml.writeCharacters(content);
        m_xml.writeEndElement();
    }
    void lines(const QVector<QPair<double, double>> &points, const QString &colour, double thickness)
    {
        QStringList places;
        for (const auto &[shot, value] : points) {
            places.append(QStringLiteral("%1,%2")
                              .arg(left + shot / m_lastShot * width, 0, 'f', 1)
                              .arg(m_offset + top + height - value / m_highest * height, 0, 'f', 1));
        }
        m_xml.writeEmptyElement(QStringLiteral("polyline"));
        m_xml.writeAttribute(QStringLiteral("points"), places.join(QLatin1Char(' ')));
        m_xml.writeAttribute(QStringLiteral("fill"), QStringLiteral("none"));
        m_xml.writeAttribute(QStringLiteral("stroke"), colour);
        m_xml.writeAttribute(QStringLiteral("stroke-width"), number(thickness));
    }

    QXmlStreamWriter &m_xml;
    const Curve &m_curve;
    const int m_offset;
    const double m_lastShot;
    const double m_highest;
};

} // namespace

void Curve::add(double shot, double value)
{
    shots.append(shot);
    values.append(value);
}

Fit fit(const Curve &curve, double warmUp)
{
    double count = 0;
    double shotMean = 0;
    Fit result;
    for (int i = 0; i < curve.shots.size(); ++i) {
        if (curve.shots.at(i) < warmUp)
            continue;
        ++count;
        shotMean += curve.shots.at(i);
        result.mean += curve.values.at(i);
    }
    if (count < 3)
        return result;
    shotMean /= count;
    result.mean /= count;
    double covariance = 0;
    double variance = 0;
    for (int i = 0; i < curve.shots.size(); ++i) {
        if (curve.shots.at(i) < warmUp)
            continue;
        const double distance = curve.shots.at(i) - shotMean;
        covariance += distance * (curve.values.at(i) - result.mean);
        variance += distance * distance;
    }
    if (variance <= 0)
        return result;
    result.perShot = covariance / variance;
    result.growth = result.perShot * (curve.shots.last() - warmUp);
    result.allowed = std::max(curve.relativeAllowance * result.mean, curve.absoluteAllowance);
    result.isFlat = result.growth <= result.allowed;
    return result;
}

QByteArray picture(const QVector<Curve> &curves, double warmUp)
{
    QByteArray bytes;
    QXmlStreamWriter xml(&bytes);
    xml.setAutoFormatting(true);
    constexpr int panel = top + height + 30;
    xml.writeStartDocument();
    xml.writeStartElement(QStringLiteral("svg"));
    xml.writeDefaultNamespace(QStringLiteral("http://www.w3.org/2000/svg"));
    xml.writeAttribute(QStringLiteral("width"), QString::number(left + width + 20));
    xml.writeAttribute(QStringLiteral("height"), QString::number(panel * curves.size()));
    xml.writeAttribute(QStringLiteral("font-family"), QStringLiteral("sans-serif"));
    xml.writeAttribute(QStringLiteral("font-size"), QStringLiteral("12"));
    xml.writeEmptyElement(QStringLiteral("rect"));
    xml.writeAttribute(QStringLiteral("width"), QStringLiteral("100%"));
    xml.writeAttribute(QStringLiteral("height"), QStringLiteral("100%"));
    xml.writeAttribute(QStringLiteral("fill"), QStringLiteral("white"));
    int offset = 0;
    for (const Curve &curve : curves) {
        Panel(xml, curve, offset).draw(fit(curve, warmUp), warmUp);
        offset += panel;
    }
    xml.writeEndDocument();
    return bytes;
}
