// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include "views.h"

#include <QQmlComponent>
#include <QQmlContext>
#include <QQuickItem>

#include <utility>

namespace histories {

namespace {

QString complaints;
QtMessageHandler otherMessages = nullptr;

void handle(QtMsgType type, const QMessageLogContext &context, const QString &text)
{
    if (qstrcmp(context.category, "qt.modeltest") == 0)
        complaints += text + QLatin1Char('\n');
    else if (otherMessages)
        otherMessages(type, context, text);
}

std::unique_ptr<QObject> create(QQmlEngine &engine, const QByteArray &text, QAbstractItemModel &model)
{
    QQmlComponent component(&engine);
    component.setData(text, QUrl(QStringLiteral("views.qml")));
    auto context = std::make_unique<QQmlContext>(&engine);
    context->setContextProperty(QStringLiteral("rows"), &model);
    std::unique_ptr<QObject> object(component.create(context.get()));
    if (!object)
        qFatal("%s", qPrintable(component.errorString()));
    context.release()->setParent(object.get());
    return object;
}

} // namespace

Views::Views(QAbstractItemModel &model, QQmlEngine &engine)
    : m_model(model)
    , m_guard(&model)
    , m_tester(&m_guard, QAbstractItemModelTester::FailureReportingMode::Warning)
    , m_objects(create(engine,
                       "import QtQml 2.15\nimport QtQml.Models 2.15\n"
                       "Instantiator { model: rows\n"
                       "  delegate: QtObject { property var title: model.title; property int row: index } }",
                       model))
    , m_view(create(engine,
                    "import QtQuick 2.15\n"
                    "ListView { width: 10; height: 2000; model: rows\n"
                    "  delegate: Item { width: 10; height: 5\n"
                    "    property var title: model.title; property int row: index } }",
                    model))
{
    if (!otherMessages)
        otherMessages = qInstallMessageHandler(handle);
}

QString Views::difference(int titleRole, const std::function<bool(int)> &isTold)
{
    QMetaObject::invokeMethod(m_view.get(), "forceLayout");
    const QString objects = difference(*m_objects, "objectAt", titleRole, isTold);
    return objects.isEmpty() ? difference(*m_view, "itemAtIndex", titleRole, isTold) : objects;
}

QString Views::difference(QObject &view, const char *objectAt, int titleRole,
                          const std::function<bool(int)> &isTold) const
{
    const QString who = QString::fromLatin1(view.metaObject()->className());
    const int count = view.property("count").toInt();
    if (count != m_model.rowCount())
        return QStringLiteral("%1 shows %2 rows of %3").arg(who).arg(count).arg(m_model.rowCount());
    for (int row = 0; row < count; ++row) {
        QObject *shown = nullptr;
        if (view.inherits("QQuickItem")) {
            QQuickItem *item = nullptr;
            QMetaObject::invokeMethod(&view, objectAt, Q_RETURN_ARG(QQuickItem *, item), Q_ARG(int, row));
            shown = item;
        } else {
            QMetaObject::invokeMethod(&view, objectAt, Q_RETURN_ARG(QObject *, shown), Q_ARG(int, row));
        }
        if (!shown)
            return QStringLiteral("%1 shows nothing at %2").arg(who).arg(row);
        if (shown->property("row").toInt() != row)
            return QStringLiteral("%1 takes row %2 for %3")
                .arg(who)
                .arg(row)
                .arg(shown->property("row").toInt());
        const QString title = m_model.index(row, 0).data(titleRole).toString();
        if (isTold(row) && shown->property("title").toString() != title)
            return QStringLiteral("%1 shows \"%2\" at %3, which is \"%4\"")
                .arg(who, shown->property("title").toString())
                .arg(row)
                .arg(title);
    }
    return QString();
}

QString Views::takeComplaints()
{
    return std::exchange(complaints, QString());
}

} // namespace histories
