// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef HALVAR_NAP_EXPORT_H
#define HALVAR_NAP_EXPORT_H

#include <QtGlobal>

#if defined(HALVAR_NAP_BUILD)
#define HALVAR_NAP_EXPORT Q_DECL_EXPORT
#else
#define HALVAR_NAP_EXPORT Q_DECL_IMPORT
#endif

#endif // HALVAR_NAP_EXPORT_H
