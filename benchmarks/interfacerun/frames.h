// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef INTERFACERUN_FRAMES_H
#define INTERFACERUN_FRAMES_H

#include <QElapsedTimer>
#include <QMutex>
#include <QObject>
#include <QVector>

class QQuickWindow;

/// The frames of a window, with the time that each took from the scene's last change to what is shown.
class Frames : public QObject
{
    Q_OBJECT
public:
    explicit Frames(QQuickWindow *window);

    int count() const;
    /// ms of each frame since the last take().
    QVector<double> take();
    /// Runs the event loop until a frame is shown that began after this call; false after \p limitMs.
    bool waitForNext(int limitMs = 5000);

private:
    // The frames may be drawn in another thread.
    mutable QMutex m_mutex;
    QElapsedTimer m_clock;
    qint64 m_begun = -1; ///< ns
    int m_begunCount = 0;
    int m_shownCount = 0; ///< of the newest frame that is shown, its m_begunCount
    QVector<double> m_times;
    QQuickWindow *const m_window;
};

#endif // INTERFACERUN_FRAMES_H
