// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef TESTHOME_H
#define TESTHOME_H

#include <QMap>
#include <QString>
#include <QTemporaryDir>

/// A home directory of the instrument for one test: empty reference lists, quick times, no diagnostics.
class TestHome
{
public:
    TestHome();
    /// With its final separator, as the library wants it.
    QString path() const { return m_directory.path() + QLatin1Char('/'); }
    QString file(const QString &relativePath) const { return path() + relativePath; }
    /// Sets one value of the unit configuration and writes the file again.
    void setConfig(const QString &key, const QString &value);
    QByteArray read(const QString &relativePath) const;
    void write(const QString &relativePath, const QByteArray &content) const;

private:
    void writeConfig() const;
    QTemporaryDir m_directory;
    QMap<QString, QString> m_config;
};

#endif // TESTHOME_H
