// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef DIAGNOSTIC_QMLACCESS_H
#define DIAGNOSTIC_QMLACCESS_H

#include <QObject>
#include <QVariant>
#include <QVariantList>

/// Access to the library's objects as QML has it: by the names of the meta-object, and nothing else. So what
/// this program can do, an interface can do.
///
/// A name that the meta-object lacks, or a value that it does not take, throws Failure.
namespace qml {

QVariant read(const QObject *object, const char *property);
/// A property of the type of an enumeration takes the key as well as the number.
void write(QObject *object, const char *property, const QVariant &value);
/// Calls a public slot or invokable operation. Null when it returns nothing.
QVariant call(QObject *object, const char *method, const QVariantList &arguments = {});

int readInt(const QObject *object, const char *property);
bool readBool(const QObject *object, const char *property);
QString readText(const QObject *object, const char *property);
/// The key of the value that a property of the type of an enumeration holds.
QString readKey(const QObject *object, const char *property);
/// Null when the property holds no object.
QObject *readObject(const QObject *object, const char *property);

/// The item of a list model at \p row; null outside it.
QObject *item(QObject *list, int row);
int count(const QObject *list);

} // namespace qml

#endif // DIAGNOSTIC_QMLACCESS_H
