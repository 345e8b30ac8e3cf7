// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
//
// The start of an application on the instrument: halvar-start [HOME]. Without HOME it ends where the plain
// start does; with HOME it makes the controller and all its lists as well, and as many sort/filter proxies as
// the reference interface has.
#include <QFile>
#include <QGuiApplication>
#include <QQmlEngine>

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
