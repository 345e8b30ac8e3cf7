// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include "nap/notificationobserver.h"

namespace com {
namespace halvar {
namespace nap {

namespace {
const QByteArray OnMessage = QByteArrayLiteral("com.halvar.nap.NotificationObserver.onMessage");
} // namespace

NotificationObserver::NotificationObserver()
    : tessel::Service("com.halvar.nap.NotificationObserver")
{ }

NotificationObserver::~NotificationObserver() = default;

const char *NotificationObserver::get_factory_class_name()
{
    return "com.halvar.nap.NotificationObserver";
}

void NotificationObserver::load_stub()
{
    tessel::init();
}

int NotificationObserver::onMessage(const NotificationMessage &)
{
    return tessel::ERR_NOT_IMPLEMENTED;
}

int NotificationObserver::call(const tessel::Tuple &request, tessel::Tuple &)
{
    if (request.class_name() != OnMessage)
        return tessel::ERR_NOT_IMPLEMENTED;
    return onMessage(NotificationMessage(request.get("message").toTuple()));
}

int NotificationObserver::sendMessage(tessel::Service &observer, const NotificationMessage &message)
{
    tessel::Tuple request(OnMessage.constData());
    request.set("message", tessel::Value(message));
    tessel::Tuple reply;
    return observer.call(request, reply);
}

} // namespace nap
} // namespace halvar
} // namespace com
