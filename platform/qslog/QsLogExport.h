// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef QSLOGEXPORT_H
#define QSLOGEXPORT_H

#include <QtGlobal>

#if defined(QSLOG_BUILD)
#define QSLOG_EXPORT Q_DECL_EXPORT
#else
#define QSLOG_EXPORT Q_DECL_IMPORT
#endif

#endif // QSLOGEXPORT_H
