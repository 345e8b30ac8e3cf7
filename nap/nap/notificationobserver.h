// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef HALVAR_NAP_NOTIFICATIONOBSERVER_H
#define HALVAR_NAP_NOTIFICATIONOBSERVER_H

#include <tessel/tessel.h>

#include "export.h"
#include "records.h"

namespace com {
namespace halvar {
namespace nap {

/// What the analysis service calls back. Publish it, then register its description with the service.
class HALVAR_NAP_EXPORT NotificationObserver : public tessel::Service
{
public:
    NotificationObserver();

    static const char *get_factory_class_name();
    /// Makes the interface known to the middleware; before the first observer is made.
    static void load_stub();

    /// Called on the middleware's dispatch thread. Here: ERR_NOT_IMPLEMENTED.
    virtual int onMessage(const NotificationMessage &message);

    int call(const tessel::Tuple &request, tessel::Tuple &reply) override;

    /// What a service does with an observer that it has bound: \return the observer's result, or a negative
    /// status when it cannot be reached.
    static int sendMessage(tessel::Service &observer, const NotificationMessage &message);

protected:
    ~NotificationObserver() override;
};

} // namespace nap
} // namespace halvar
} // namespace com

#endif // HALVAR_NAP_NOTIFICATIONOBSERVER_H
