// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef MIDDLEMAN_H
#define MIDDLEMAN_H

#include <QObject>
#include <QString>
#include <QThread>

#include <functional>

/// Stands between the calling and the serving end of a link and spoils what they say, frame by frame. Both
/// links of the instrument cut their streams alike: four bytes of length, most significant first, then as
/// many bytes.
///
/// It works on a thread of its own, so that a blocked test does not hold it up. Its functions are for the
/// test's thread, and have happened when they return.
class Middleman
{
public:
    /// One end: a port of this machine, or a local socket.
    struct Place
    {
        quint16 port = 0;
        QString socket; ///< used when there is no port
    };
    enum Direction {
        ToServer,
        ToClient,
    };
    enum Fault {
        Nothing,
        Delay, ///< each frame comes late by \c milliseconds
        Silence, ///< the frame is swallowed
        Cut, ///< both ends lose the connection instead
        HalfClose, ///< the frame's receiver sees the end of the stream, and can still speak
        Truncate, ///< half of the frame comes, then the end of the connection
        Stall, ///< half of the frame comes, and nothing ever after
        Duplicate, ///< the frame comes twice
        Swap, ///< the frame comes behind the next one
        Garbage, ///< the frame comes with chance bytes in it
        Noise, ///< chance bytes come instead of it, that respect no frame
        Drip, ///< the frame comes byte by byte, one each \c milliseconds
        Announce, ///< a frame of 2 GB is announced, and begun
    };
    struct Plan
    {
        Fault fault = Nothing;
        Direction direction = ToServer;
        int skipped = 0; ///< frames of that direction that still pass
        int count = -1; ///< frames that are spoiled then; -1: all
        int milliseconds = 0;
    };

    /// \p near is listened on, \p far is where the serving end really is.
    Middleman(const Place &near, const Place &far);
    ~Middleman();
    Middleman(const Middleman &) = delete;
    Middleman &operator=(const Middleman &) = delete;

    /// False when the place is taken.
    bool start();
    /// From now on, until the next plan. Frames held back for a swap are lost with the old one.
    void follow(const Plan &plan);
    /// How many frames the present plan has spoiled.
    int spoiled() const;
    /// Open connections.
    int connections() const;
    /// Ends all connections at once.
    void cut();
    /// Listens no more, or again; connections stay.
    void setListening(bool on);
    /// Says \p bytes to every client, out of turn.
    void sayToClients(const QByteArray &bytes);

    static const char *name(Fault fault);

private:
    class Worker;
    void run(const std::function<void(Worker &)> &task) const;

    QThread m_thread;
    Worker *m_worker; // ends with the thread
};

#endif // MIDDLEMAN_H
