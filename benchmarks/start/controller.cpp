// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
//
// The start of an application on the instrument: halvar-start [HOME | --proxies]. Without HOME it ends where
// the plain start does; with HOME it makes the controller and all its lists as well, and as many sort/filter
// proxies as the reference interface has. With --proxies it makes as many of Qt's own, on empty lists,
// instead.
#include <QFile>
#include <QGuiApplication>
#include <QQmlEngine>
#include <QSortFilterProxyModel>
#include <QStringListModel>

#include <array>
#include <cstring>
#include <memory>
#include <vector>

#include <unistd.h>

#include "config.h"
#include "database.h"
#include "halvarcontroller.h"
#include "measurelistmodel.h"
#include "qqmlsortfilterproxymodel.h"
#include "ready.h"
#include "udlistmodel.h"

namespace {
useconds_t slept = 0;
constexpr useconds_t linesWait = 500000;
} // namespace

// The line of the beeper takes half a second to appear. That wait is no work: it is left out, and counted, so
// that no other is left out with it.
extern "C" int usleep(useconds_t microseconds)
{
    slept += microseconds;
    return 0;
}

int main(int argc, char **argv)
{
    const QGuiApplication application(argc, argv);
    const QQmlEngine engine;
    if (argc < 2)
        ready();
    if (std::strcmp(argv[1], "--proxies") == 0) {
        constexpr int proxyCount = 5; // one of them is the controller's own
        std::array<QStringListModel, proxyCount> lists;
        std::array<QSortFilterProxyModel, proxyCount> proxies;
        for (std::size_t i = 0; i < proxyCount; ++i)
            proxies[i].setSourceModel(&lists[i]);
        ready();
    }
    const Config config(nullptr);
    Database database(nullptr);
    const HalvarController controller(QFile::decodeName(argv[1]), &config, &database);
    std::vector<std::unique_ptr<QQmlSortFilterProxyModel>> proxies;
    for (QAbstractItemModel *list : std::initializer_list<QAbstractItemModel *>{
             controller.uds, controller.directMeasures, database.m_LocalItemsListModel,
             database.m_ElementItemsListModel}) {
        proxies.push_back(std::make_unique<QQmlSortFilterProxyModel>());
        proxies.back()->setSourceModel(list);
    }
    if (slept != linesWait)
        ::_exit(3);
    ready();
}
