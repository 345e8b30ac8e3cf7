// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef TOUR_HAND_H
#define TOUR_HAND_H

#include <QDir>
#include <QPoint>
#include <QSize>
#include <QString>
#include <QStringList>

#include <functional>
#include <initializer_list>

class QQuickItem;
class QQuickWindow;

/// The operator's hand and eye at a window: real mouse and key events, things found by what they say,
/// pictures.
///
/// What is not there, or does not come in time, throws Failure with a text that names it.
class Hand
{
public:
    explicit Hand(QQuickWindow *window)
        : m_window(window)
    { }

    /// The visible control that is called or says \p label; null when there is none.
    ///
    /// A label is an object name, or the words of a button, a row of a list or a field.
    QQuickItem *see(const QString &label) const;
    /// The one in front when there are several.
    QQuickItem *find(const QString &label, int limit = patience) const;

    /// Taps a control; scrolls to it first when it lies outside a list or sheet.
    void tap(const QString &label);
    void tap(QQuickItem *item);
    /// Touches the visible item of this object name, which need not be a control.
    void touch(const QString &objectName);
    /// Taps a field and types into it. What it held is replaced.
    void fill(const QString &label, const QString &text);
    void type(const QString &text);
    void key(Qt::Key key);

    /// Runs the event loop until \p condition holds.
    void waitFor(const std::function<bool()> &condition, const QString &what, int limit = patience) const;
    /// Until the screen of this name is shown and takes input.
    void waitForScreen(const QString &name) const;
    void pause(int milliseconds) const;
    /// The name of the screen that is shown, by its file.
    QString screen() const;

    /// Runs \p look in portrait and landscape, by day and by night; the window is afterwards as before.
    void inEveryAppearance(const std::function<void(const QString &appearance)> &look);
    /// The same by day only: where things lie does not depend on the colours.
    void inBothOrientations(const std::function<void(const QString &appearance)> &look);

    QQuickWindow *window() const { return m_window; }

    static constexpr int patience = 8000; ///< ms

private:
    void inAppearances(std::initializer_list<bool> nights, const std::function<void(const QString &)> &look);
    void reveal(QQuickItem *item) const;
    QPoint pointOf(const QQuickItem *item) const;

    QQuickWindow *const m_window;
};

/// The things of a window that can be seen: visible, with a size, and on the top of its stack of screens.
QList<QQuickItem *> visibleItems(const QQuickItem *root);
/// The words of a control, empty for what is none.
QString wordsOf(const QQuickItem *item);
bool isControl(const QQuickItem *item);

#endif // TOUR_HAND_H
