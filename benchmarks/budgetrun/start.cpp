// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
//
// The controller with its lists, and the reference interface's proxies, made at the start of an application.
#include <QQmlEngine>

#include <memory>
#include <optional>
#include <vector>

#include <unistd.h>

#include "config.h"
#include "corepath.h"
#include "database.h"
#include "halvarcontroller.h"
#include "measurelistmodel.h"
#include "qqmlsortfilterproxymodel.h"
#include "udlistmodel.h"

// The half second in which the line of the beeper appears is slept, no work, and only takes time here.
extern "C" int usleep(useconds_t)
{
    return 0;
}

namespace {

// Once, without a rehearsal: an application starts once.
void start()
{
    const QQmlEngine engine;
    std::optional<Counting> counting(std::in_place);
    const Config config(nullptr);
    Database database(nullptr);
    const HalvarController controller(QStringLiteral(HALVAR_SOURCE_DIR "/simulator/home/"), &config,
                                      &database);
    std::vector<std::unique_ptr<QQmlSortFilterProxyModel>> proxies;
    for (QAbstractItemModel *list : std::initializer_list<QAbstractItemModel *>{
             controller.uds, controller.directMeasures, database.m_LocalItemsListModel,
             database.m_ElementItemsListModel}) {
        proxies.push_back(std::make_unique<QQmlSortFilterProxyModel>());
        proxies.back()->setSourceModel(list);
        expect(proxies.back()->rowCount() == list->rowCount(), "the proxy misses rows");
    }
    counting.reset();
}

const bool registered = corePath("start", "controller, lists and four proxies made", start);

} // namespace
