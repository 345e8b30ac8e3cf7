// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef HALVAR_MEASURELISTMODEL_H
#define HALVAR_MEASURELISTMODEL_H

#include <nap/records.h>

#include "halvar-export.h"
#include "measure.h"
#include "qqmlobjectlistmodel.h"

/// The measures of a unit (oldest first) or the direct measures (newest first).
class HALVAR_EXPORT MeasureListModel : public QQmlObjectListModel<Measure>
{
    Q_OBJECT

public:
    explicit MeasureListModel(QObject *parent = nullptr);

    /// A result without a decision begins a shot: a blank measure is put at the front, and so it is when the
    /// list is empty. Any other result is taken over by the first measure.
    void lastFrontMeasure(const com::halvar::nap::DetectionResult &result);
    /// The same at the back.
    void lastBackMeasure(const com::halvar::nap::DetectionResult &result);

    /// Settles the first or the last measure at the end of its shot; nothing on an empty list.
    void finalizeFirstMeasure();
    void finalizeLastMeasure();
};

#endif // HALVAR_MEASURELISTMODEL_H
