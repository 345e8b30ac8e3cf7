// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include "qqmlobjectlistmodel.h"

QQmlObjectListModelBase::QQmlObjectListModelBase(QObject *parent)
    : QAbstractListModel(parent)
{ }

QQmlObjectListModelBase::~QQmlObjectListModelBase() = default;
