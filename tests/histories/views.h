// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef VIEWS_H
#define VIEWS_H

#include <QAbstractItemModel>
#include <QAbstractItemModelTester>
#include <QQmlEngine>
#include <QString>

#include <functional>
#include <memory>

#include "listguard.h"

namespace histories {

/// What QML shows of a model, kept up by its signals alone: a list view and objects made for the rows; and
/// the model tester, which writes down what is wrong.
class Views
{
public:
    Views(QAbstractItemModel &model, QQmlEngine &engine);

    /// What a view shows otherwise than the model says, or empty. \p isTold is false for rows whose values
    /// changed without a word.
    QString difference(int titleRole, const std::function<bool(int)> &isTold);
    /// What the model testers have complained of since the last time.
    static QString takeComplaints();

private:
    QString difference(QObject &view, const char *objectAt, int titleRole,
                       const std::function<bool(int)> &isTold) const;

    QAbstractItemModel &m_model;
    ListGuard m_guard;
    QAbstractItemModelTester m_tester;
    std::unique_ptr<QObject> m_objects;
    std::unique_ptr<QObject> m_view;
};

} // namespace histories

#endif // VIEWS_H
