// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef PEER_H
#define PEER_H

/// The other process of the link benchmarks: offers a service of the middleware, a raw TCP echo and a
/// ZeroMQ reply socket on free ports of the loopback, all on one processor, says "SERVICE-PORT ECHO-PORT
/// ZEROMQ-PORT" on standard output, and ends with standard input.
/// \return its exit status
int runPeer(int argc, char **argv);

#endif // PEER_H
