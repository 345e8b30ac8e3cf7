// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef PANELBENCH_H
#define PANELBENCH_H

#include <QJsonDocument>
#include <QQuickItem>
#include <QQuickWindow>
#include <QTest>

#include <algorithm>

#include <failure.h>
#include <hand.h>
#include <panelwindow.h>
#include <simulator.h>

#include "qmlwatch.h"

#define VERIFY_NOTHING_FOUND(list)                                                                           \
    do {                                                                                                     \
        const QStringList found = (list);                                                                    \
        QVERIFY2(found.isEmpty(), qUtf8Printable(found.join(QLatin1Char('\n'))));                            \
    } while (false)

inline QJsonObject object(const char *json)
{
    const QJsonDocument document = QJsonDocument::fromJson(json);
    if (!document.isObject())
        throw Failure{QString::fromUtf8(json)};
    return document.object();
}

/// The simulated instrument in this process, with its panel. Inside a private instrument only.
class PanelBench
{
    const bool m_prepared;

public:
    explicit PanelBench(const QLocale &locale = QLocale(QStringLiteral("fr")))
        : m_prepared(prepareOnce())
        , instrument(places(), nullptr)
    {
        QObject::connect(&instrument, &simulator::Simulator::noticed, &instrument,
                         [this](const QJsonObject &notice) { notices.append(notice); });
        QString error;
        if (!instrument.start(error))
            throw Failure{error};
        panelWindow = std::make_unique<simulator::PanelWindow>(instrument, locale);
        window = panelWindow->open();
        if (!window)
            throw Failure{watch.warnings().join(QLatin1Char('\n'))};
        hand = std::make_unique<Hand>(window);
        hand->waitFor([this] { return window->isExposed(); }, QStringLiteral("the window is to be shown"));
    }

    QJsonObject run(const char *command, QJsonObject members = {})
    {
        members.insert(QStringLiteral("command"), QLatin1String(command));
        const QJsonObject answer = instrument.execute(members);
        if (!answer.value(QLatin1String("ok")).toBool())
            throw Failure{answer.value(QLatin1String("error")).toString()};
        return answer;
    }
    /// A member of the status, "msp.state".
    QJsonValue status(const QString &path)
    {
        QJsonValue value = run("status");
        const QStringList names = path.split(QLatin1Char('.'));
        for (const QString &name : names)
            value = value.toObject().value(name);
        return value;
    }
    /// Whether a notice came that holds \p members.
    bool noticed(const QJsonObject &members) const
    {
        return std::any_of(notices.begin(), notices.end(), [&](const QJsonObject &notice) {
            for (auto member = members.begin(); member != members.end(); ++member) {
                if (notice.value(member.key()) != member.value())
                    return false;
            }
            return true;
        });
    }
    /// The visible thing of this object name.
    QQuickItem *item(const QString &name) const
    {
        const QList<QQuickItem *> items = visibleItems(window->contentItem());
        for (QQuickItem *candidate : items) {
            if (candidate->objectName() == name)
                return candidate;
        }
        throw Failure{QStringLiteral("there is no %1").arg(name)};
    }
    QString text(const QString &name) const { return item(name)->property("text").toString(); }
    QAbstractItemModel *traffic() const { return panelWindow->panel().traffic(); }
    /// A line of the traffic, the link in front.
    QString line(int row) const
    {
        const QModelIndex index = traffic()->index(row, 0);
        return index.data(simulator::Traffic::LinkRole).toString() + QLatin1Char(' ')
            + index.data(simulator::Traffic::TextRole).toString();
    }
    bool passed(const QString &text) const
    {
        for (int row = 0; row < traffic()->rowCount(); ++row) {
            if (line(row) == text)
                return true;
        }
        return false;
    }
    QPoint middleOf(const QString &name) const
    {
        const QQuickItem *found = item(name);
        return found->mapToScene(QPointF(found->width() / 2, found->height() / 2)).toPoint();
    }
    void resize(const QSize &size) const
    {
        window->resize(size);
        hand->waitFor([&] { return window->contentItem()->size().toSize() == size; },
                      QStringLiteral("the window is to get its size"));
        hand->pause(60);
    }

    QmlWatch watch; ///< first in, last out: tearing down is to be silent as well
    QVector<QJsonObject> notices;
    simulator::Simulator instrument;
    std::unique_ptr<simulator::PanelWindow> panelWindow;
    QQuickWindow *window = nullptr;
    std::unique_ptr<Hand> hand;

private:
    /// What is said once to whoever uses the style, before anything is watched.
    static bool prepareOnce()
    {
        static const bool isDone = [] {
            simulator::PanelWindow::prepare();
            return true;
        }();
        return isDone;
    }
    static simulator::Simulator::Places places()
    {
        simulator::Simulator::Places places;
        places.commands = qEnvironmentVariable("HALVAR_INSTRUMENT_COMMANDS");
        return places;
    }
};

#endif // PANELBENCH_H
