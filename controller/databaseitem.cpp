// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include "databaseitem.h"

#include <QFileInfo>
#include <QMetaMethod>

#include <atomic>

#include <QsLog.h>

namespace {

std::atomic<quint64> currentTitlesVersion{0};

} // namespace

DatabaseItem::DatabaseItem(const QString &home, QObject *parent)
    : QObject(parent)
    , m_home(home)
{ }

DatabaseItem::~DatabaseItem()
{
    noteTitleChange();
}

quint64 DatabaseItem::titlesVersion()
{
    return currentTitlesVersion;
}

void DatabaseItem::noteTitleChange() const
{
    static const QMetaMethod signal = QMetaMethod::fromSignal(&DatabaseItem::titleChanged);
    // A new item, whose first title this is, is in no list yet: a list listens to what it holds.
    if (!m_title.isNull() || isSignalConnected(signal))
        ++currentTitlesVersion;
}

void DatabaseItem::setActivated(bool activated)
{
    if (m_activated == activated)
        return;
    m_activated = activated;
    emit activatedChanged();
}

void DatabaseItem::setImage(const QString &image)
{
    QString url = image;
    if (!image.isEmpty() && !image.contains(QLatin1String("file:"))
        && !image.contains(QLatin1String("qrc:"))) {
        url = m_home + QLatin1String("database/") + m_type + QLatin1Char('/') + image;
        QLOG_DEBUG() << "PATH 1: " << url;
        if (QFileInfo(url).isFile()) {
            QLOG_DEBUG() << "PATH 2: " << url;
            url.prepend(QLatin1String("file:"));
            QLOG_DEBUG() << "PATH 3: " << url;
        } else {
            url.clear();
        }
    }
    if (m_image == url)
        return;
    m_image = url;
    emit imageChanged();
}

void DatabaseItem::setTitle(const QString &title)
{
    if (m_title == title)
        return;
    noteTitleChange();
    m_title = title;
    emit titleChanged();
}

void DatabaseItem::setType(const QString &type)
{
    if (m_type == type)
        return;
    m_type = type;
    emit typeChanged();
}

void DatabaseItem::setOriginal(bool original)
{
    if (m_original == original)
        return;
    m_original = original;
    emit originalChanged();
}
