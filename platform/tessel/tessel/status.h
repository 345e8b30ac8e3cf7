// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef TESSEL_STATUS_H
#define TESSEL_STATUS_H

namespace tessel {

/// Result of a call: 0 or more is success, negative a failure. An operation may add values of its own.
enum Status : int {
    OK = 0,
    ERR_NO_SUCH_SERVICE = -1000001, ///< nobody of that interface and name at the address
    ERR_REFUSED = -1000002, ///< no connection: nothing listens there, or too many connections
    ERR_TIMED_OUT = -1000003, ///< no answer within the time limit
    ERR_PEER_GONE = -1000004, ///< the other process ended, or is another one by now
    ERR_MALFORMED = -1000005, ///< a message that is not one
    ERR_TOO_LARGE = -1000006, ///< a message above the limits of size or nesting
    ERR_NOT_IMPLEMENTED = -1000014 ///< the service has no such operation
};

} // namespace tessel

#endif // TESSEL_STATUS_H
