// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef METATEXT_H
#define METATEXT_H

#include <QMetaMethod>
#include <QMetaProperty>
#include <QStringList>

/// What a class itself offers to QML, in the order of its declaration and one line each:
/// "property int nbDigits NOTIFY nbDigitsChanged", "signal nbDigitsChanged(int nbDigits)", "slot void
/// enable()", "invokable bool checkDigit(int index)".
inline QStringList metaText(const QMetaObject &meta)
{
    QStringList lines;
    for (int i = meta.propertyOffset(); i < meta.propertyCount(); ++i) {
        const QMetaProperty property = meta.property(i);
        QString line = QStringLiteral("property %1 %2")
                           .arg(QLatin1String(property.typeName()), QLatin1String(property.name()));
        if (property.isWritable())
            line += QLatin1String(" WRITE");
        if (property.isConstant())
            line += QLatin1String(" CONSTANT");
        if (property.hasNotifySignal())
            line += QLatin1String(" NOTIFY ") + QLatin1String(property.notifySignal().name());
        lines.append(line);
    }
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
        const QMetaMethod method = meta.method(i);
        QStringList parameters;
        const QList<QByteArray> names = method.parameterNames();
        const QList<QByteArray> types = method.parameterTypes();
        for (int p = 0; p < types.size(); ++p)
            parameters.append(
                (QString::fromLatin1(types.at(p)) + QLatin1Char(' ') + QString::fromLatin1(names.at(p)))
                    .trimmed());
        QString line;
        if (method.access() == QMetaMethod::Private)
            line += QLatin1String("private ");
        switch (method.methodType()) {
        case QMetaMethod::Signal:
            line += QLatin1String("signal ");
            break;
        case QMetaMethod::Slot:
            line += QLatin1String("slot ") + QLatin1String(method.typeName()) + QLatin1Char(' ');
            break;
        default:
            line += QLatin1String("invokable ") + QLatin1String(method.typeName()) + QLatin1Char(' ');
        }
        lines.append(line + QLatin1String(method.name()) + QLatin1Char('(')
                     + parameters.join(QLatin1String(", ")) + QLatin1Char(')'));
    }
    return lines;
}

/// The lines of a raw literal, without the blanks around each and without empty ones.
inline QStringList linesOf(const char *text)
{
    QStringList lines;
    for (const QString &line : QString::fromUtf8(text).split(QLatin1Char('\n'), Qt::SkipEmptyParts)) {
        if (!line.trimmed().isEmpty())
            lines.append(line.trimmed());
    }
    return lines;
}

#endif // METATEXT_H
