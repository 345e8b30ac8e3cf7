// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include "qmlaccess.h"

#include <QMetaEnum>
#include <QMetaMethod>
#include <QMetaProperty>

#include <array>

#include "failure.h"

namespace qml {

namespace {

constexpr int maximumArguments = 4;

QString nameOf(const QObject *object, const char *member)
{
    return QStringLiteral("%1.%2").arg(QLatin1String(object->metaObject()->className()),
                                       QLatin1String(member));
}

QMetaProperty property(const QObject *object, const char *name)
{
    const QMetaObject *meta = object->metaObject();
    const int index = meta->indexOfProperty(name);
    if (index < 0)
        throw Failure{QStringLiteral("%1 is no property of the library").arg(nameOf(object, name))};
    return meta->property(index);
}

/// Whether \p method can be called with \p arguments; those are then converted to what it takes.
bool fits(const QMetaMethod &method, const char *name, QVariantList &arguments)
{
    if (method.name() != name || method.access() != QMetaMethod::Public
        || method.methodType() == QMetaMethod::Signal || method.parameterCount() != arguments.size())
        return false;
    QVariantList converted = arguments;
    for (int i = 0; i < converted.size(); ++i) {
        const int type = method.parameterType(i);
        if (converted.at(i).userType() != type && !converted[i].convert(type))
            return false;
    }
    arguments = converted;
    return true;
}

QVariant invoke(QObject *object, const QMetaMethod &method, const QVariantList &arguments)
{
    std::array<QGenericArgument, maximumArguments> given;
    for (int i = 0; i < arguments.size(); ++i)
        given.at(size_t(i)) = QGenericArgument(arguments.at(i).typeName(), arguments.at(i).constData());
    if (method.returnType() == QMetaType::Void) {
        if (!method.invoke(object, Qt::DirectConnection, given[0], given[1], given[2], given[3]))
            throw Failure{
                QStringLiteral("%1 cannot be called").arg(nameOf(object, method.name().constData()))};
        return {};
    }
    QVariant result(method.returnType(), nullptr);
    const QGenericReturnArgument returned(method.typeName(), result.data());
    if (!method.invoke(object, Qt::DirectConnection, returned, given[0], given[1], given[2], given[3]))
        throw Failure{QStringLiteral("%1 cannot be called").arg(nameOf(object, method.name().constData()))};
    return result;
}

} // namespace

QVariant read(const QObject *object, const char *name)
{
    return property(object, name).read(object);
}

void write(QObject *object, const char *name, const QVariant &value)
{
    if (!property(object, name).write(object, value))
        throw Failure{QStringLiteral("%1 does not take \"%2\"").arg(nameOf(object, name), value.toString())};
}

QVariant call(QObject *object, const char *name, const QVariantList &arguments)
{
    const QMetaObject *meta = object->metaObject();
    for (int i = 0; i < meta->methodCount() && arguments.size() <= maximumArguments; ++i) {
        QVariantList converted = arguments;
        if (fits(meta->method(i), name, converted))
            return invoke(object, meta->method(i), converted);
    }
    throw Failure{QStringLiteral("%1 with %2 arguments is no operation of the library")
                      .arg(nameOf(object, name))
                      .arg(arguments.size())};
}

int readInt(const QObject *object, const char *name)
{
    return read(object, name).toInt();
}

bool readBool(const QObject *object, const char *name)
{
    return read(object, name).toBool();
}

QString readText(const QObject *object, const char *name)
{
    return read(object, name).toString();
}

QString readKey(const QObject *object, const char *name)
{
    const QMetaEnum enumeration = property(object, name).enumerator();
    const int value = readInt(object, name);
    const char *key = enumeration.isValid() ? enumeration.valueToKey(value) : nullptr;
    return key ? QString::fromLatin1(key) : QString::number(value);
}

QObject *readObject(const QObject *object, const char *name)
{
    return read(object, name).value<QObject *>();
}

QObject *item(QObject *list, int row)
{
    return call(list, "get", {row}).value<QObject *>();
}

int count(const QObject *list)
{
    return readInt(list, "count");
}

} // namespace qml
