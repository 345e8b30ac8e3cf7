// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include "database.h"

#include <QFile>

#include <QsLog.h>

#include "bytesink.h"
#include "damagedfile.h"
#include "filereplace.h"
#include "xmltext.h"

namespace {

constexpr int sectionsPerFile = 4;
constexpr qint64 itemSize = 560; // bytes that an item takes in its list, without its texts

QString boolText(bool value)
{
    return value ? QStringLiteral("true") : QStringLiteral("false");
}

/// The bare name that setImage() turned into \p url. Not through QUrl: a '#' or '%' in a name is a plain
/// character there.
QString pictureName(const QString &url)
{
    const int slash = url.lastIndexOf(QLatin1Char('/'));
    return url.mid((slash >= 0 ? slash : url.indexOf(QLatin1Char(':'))) + 1);
}

} // namespace

Database::Database(QObject *parent)
    : QObject(parent)
    , m_LocalItemsListModel(new DatabaseItemListModel)
    , m_ElementItemsListModel(new DatabaseItemListModel)
    , m_SubstratItemsListModel(new DatabaseItemListModel)
    , m_RevetementItemsListModel(new DatabaseItemListModel)
    , m_NonVisiteItemsListModel(new DatabaseItemListModel)
    , m_NonMesureItemsListModel(new DatabaseItemListModel)
    , m_EtatUsageItemsListModel(new DatabaseItemListModel)
    , m_EtatDegradeItemsListModel(new DatabaseItemListModel)
{
    m_XmlStreamWriter.setAutoFormatting(true);
    watch(m_LocalItemsListModel);
    watch(m_ElementItemsListModel);
    watch(m_SubstratItemsListModel);
    watch(m_RevetementItemsListModel);
}

Database::~Database()
{
    // The lists have no parent, so that QML meets them as what they are: lists of their own.
    delete m_LocalItemsListModel;
    delete m_ElementItemsListModel;
    delete m_SubstratItemsListModel;
    delete m_RevetementItemsListModel;
    delete m_NonVisiteItemsListModel;
    delete m_NonMesureItemsListModel;
    delete m_EtatUsageItemsListModel;
    delete m_EtatDegradeItemsListModel;
}

void Database::watch(const DatabaseItemListModel *list)
{
    const auto changed = [this] { ++m_revision; };
    connect(list, &QAbstractItemModel::rowsInserted, this, changed);
    connect(list, &QAbstractItemModel::rowsRemoved, this, changed);
    connect(list, &QAbstractItemModel::rowsMoved, this, changed);
    connect(list, &QAbstractItemModel::dataChanged, this, changed);
}

bool Database::read(const QString &home)
{
    m_home = home;
    m_writtenRevision = 0;
    const bool unitRead =
        readFile(QStringLiteral("database/database_unit.xml"), QStringLiteral("database_unit"));
    m_unread = !unitRead && !halvar::isNoFile(unitPath());
    return unitRead
        && readFile(QStringLiteral("database/database_diagnostic.xml"),
                    QStringLiteral("database_diagnostic"));
}

bool Database::readFile(const QString &name, const QString &root)
{
    QFile file(m_home + name);
    // The XML reader brings the ends of lines into one form itself. The device must not: it would take
    // bytes out of a UTF-16 document.
    if (!file.open(QIODevice::ReadOnly)) {
        QLOG_DEBUG() << "[Halvar Controller]: Une erreur s'est produite lors de l'ouverture du fichier!";
        return false;
    }
    m_sCurrentItemType.clear();
    m_databaseItemsListModel = nullptr;
    m_XmlStreamReader.setDevice(&file);
    if (m_XmlStreamReader.readNextStartElement() && m_XmlStreamReader.name() == root) {
        QLOG_DEBUG() << QStringLiteral("[Halvar Controller]: Reading %1.").arg(root).toUtf8().constData();
        for (int i = 0; i < sectionsPerFile && m_XmlStreamReader.readNextStartElement(); ++i)
            readItems();
    }
    const bool succeeded = !m_XmlStreamReader.hasError();
    m_XmlStreamReader.clear();
    return succeeded;
}

void Database::readItems()
{
    if (!m_XmlStreamReader.isStartElement())
        return;
    const struct
    {
        QString name;
        DatabaseItemListModel *list;
    } sections[] = {
        {QStringLiteral("locaux"), m_LocalItemsListModel},
        {QStringLiteral("elements"), m_ElementItemsListModel},
        {QStringLiteral("substrats"), m_SubstratItemsListModel},
        {QStringLiteral("revetements"), m_RevetementItemsListModel},
        {QStringLiteral("non_visite"), m_NonVisiteItemsListModel},
        {QStringLiteral("non_mesure"), m_NonMesureItemsListModel},
        {QStringLiteral("etat_usage"), m_EtatUsageItemsListModel},
        {QStringLiteral("etat_degrade"), m_EtatDegradeItemsListModel},
    };
    // The items of a section that is none of ours belong to the section before it.
    for (const auto &section : sections) {
        if (m_XmlStreamReader.name() == section.name) {
            m_sCurrentItemType = section.name;
            m_databaseItemsListModel = section.list;
        }
    }
    if (!m_databaseItemsListModel) {
        m_XmlStreamReader.skipCurrentElement();
        return;
    }
    m_databaseItemsListModel->setHome(m_home);
    while (m_XmlStreamReader.readNextStartElement()) {
        if (m_XmlStreamReader.name() == QLatin1String("item"))
            readItem();
        else
            m_XmlStreamReader.skipCurrentElement();
    }
}

void Database::readItem()
{
    if (!m_XmlStreamReader.isStartElement() || m_XmlStreamReader.name() != QLatin1String("item"))
        return;
    if (!m_XmlStreamReader.account(itemSize))
        return;
    auto *item = new DatabaseItem(m_home, m_databaseItemsListModel);
    const QXmlStreamAttributes attributes = m_XmlStreamReader.attributes();
    for (const QXmlStreamAttribute &attribute : attributes) {
        if (attribute.name() == QLatin1String("type"))
            item->setType(attribute.value().toString());
        else if (attribute.name() == QLatin1String("activated"))
            item->setActivated(attribute.value() == QLatin1String("true"));
        else if (attribute.name() == QLatin1String("original"))
            item->setOriginal(attribute.value() == QLatin1String("true"));
    }
    bool titled = false;
    while (m_XmlStreamReader.readNextStartElement()) {
        const bool isTitle = m_XmlStreamReader.name() == QLatin1String("title");
        if (!isTitle && m_XmlStreamReader.name() != QLatin1String("image")) {
            m_XmlStreamReader.skipCurrentElement();
            continue;
        }
        const QString text = m_XmlStreamReader.readElementText();
        if (m_XmlStreamReader.hasError())
            break;
        if (isTitle) {
            QLOG_DEBUG() << "Title:" << text;
            item->setTitle(text);
            titled = true;
        } else {
            QLOG_DEBUG() << "Image:" << text;
            item->setImage(text);
        }
    }
    if (m_XmlStreamReader.hasError() && !titled) {
        // Cut off by damage before its title: nobody could choose it.
        delete item;
        return;
    }
    m_databaseItemsListModel->append(item);
}

bool Database::write() const
{
    m_reportedFailure.clear();
    return writeUnitFile();
}

bool Database::writeIfChanged() const
{
    return m_writtenRevision == m_revision || writeUnitFile();
}

bool Database::writeUnitFile() const
{
    const QString path = unitPath();
    if (halvar::isWriteProtected(path))
        return false;
    if (m_unread && !halvar::keepBeforeReplacing(path)) {
        const QString reason = QStringLiteral("not kept");
        if (m_reportedFailure != reason)
            halvar::logNotKept(path);
        m_reportedFailure = reason;
        return false;
    }
    m_unread = false;
    halvar::ReplaceFailure failure;
    const bool written = halvar::replaceFile(path, unitDocument(), &failure);
    if (failure) {
        if (failure.opened && failure.reason != m_reportedFailure) {
            m_reportedFailure = failure.reason;
            halvar::logReplaceFailure(path, failure);
        }
        return written;
    }
    m_writtenRevision = m_revision;
    m_reportedFailure.clear();
    return true;
}

QString Database::unitPath() const
{
    return m_home + QLatin1String("database/database_unit.xml");
}

QByteArray Database::unitDocument() const
{
    QByteArray document;
    halvar::ByteSink sink(&document);
    m_XmlStreamWriter.setDevice(&sink);
    m_XmlStreamWriter.writeStartDocument();
    m_XmlStreamWriter.writeStartElement(QStringLiteral("database_unit"));
    writeItems(QStringLiteral("locaux"), m_LocalItemsListModel);
    writeItems(QStringLiteral("elements"), m_ElementItemsListModel);
    writeItems(QStringLiteral("substrats"), m_SubstratItemsListModel);
    writeItems(QStringLiteral("revetements"), m_RevetementItemsListModel);
    m_XmlStreamWriter.writeEndElement();
    m_XmlStreamWriter.setDevice(nullptr);
    halvar::keepCarriageReturns(document);
    return document;
}

void Database::writeItems(const QString &section, const DatabaseItemListModel *items) const
{
    m_XmlStreamWriter.writeStartElement(section);
    for (const DatabaseItem *item : *items) {
        if (item)
            writeItem(item);
    }
    m_XmlStreamWriter.writeEndElement();
}

void Database::writeItem(const DatabaseItem *item) const
{
    m_XmlStreamWriter.writeStartElement(QStringLiteral("item"));
    m_XmlStreamWriter.writeAttribute(QStringLiteral("type"), halvar::xmlText(item->type()));
    m_XmlStreamWriter.writeAttribute(QStringLiteral("original"), boolText(item->original()));
    m_XmlStreamWriter.writeAttribute(QStringLiteral("activated"), boolText(item->activated()));
    m_XmlStreamWriter.writeTextElement(QStringLiteral("image"), halvar::xmlText(pictureName(item->image())));
    m_XmlStreamWriter.writeStartElement(QStringLiteral("title"));
    m_XmlStreamWriter.writeAttribute(QStringLiteral("lang"), QStringLiteral("fr"));
    m_XmlStreamWriter.writeCharacters(halvar::xmlText(item->title()));
    m_XmlStreamWriter.writeEndElement();
    m_XmlStreamWriter.writeEndElement();
}
