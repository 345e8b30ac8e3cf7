// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef MSPEXPORT_H
#define MSPEXPORT_H

#include <QtGlobal>

#if defined(MSP_BUILD)
#define MSP_EXPORT Q_DECL_EXPORT
#else
#define MSP_EXPORT Q_DECL_IMPORT
#endif

#endif // MSPEXPORT_H
