// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef TESSEL_EXPORT_H
#define TESSEL_EXPORT_H

#include <QtGlobal>

#if defined(TESSEL_BUILD)
#define TESSEL_EXPORT Q_DECL_EXPORT
#else
#define TESSEL_EXPORT Q_DECL_IMPORT
#endif

#endif // TESSEL_EXPORT_H
