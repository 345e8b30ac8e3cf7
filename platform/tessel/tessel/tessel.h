// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef TESSEL_TESSEL_H
#define TESSEL_TESSEL_H

#include "astring.h"
#include "autoref.h"
#include "description.h"
#include "export.h"
#include "service.h"
#include "servicemanager.h"
#include "status.h"
#include "symbol.h"
#include "timedate.h"
#include "timeperiod.h"
#include "tuple.h"
#include "types.h"
#include "value.h"

namespace tessel {

/// Prepares the middleware. Once per process before the first bind or listen; further calls do nothing.
TESSEL_EXPORT void init();

/// Time limit of a call to another process, in ms: 5000 unless set. Applies to calls that start afterwards.
TESSEL_EXPORT void set_call_time_limit(int milliseconds);
TESSEL_EXPORT int call_time_limit();

} // namespace tessel

#endif // TESSEL_TESSEL_H
