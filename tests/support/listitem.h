// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef LISTITEM_H
#define LISTITEM_H

#include <QObject>
#include <QString>
#include <QVariant>

#include <utility>

/// An item with one property of every kind that a list has to cope with.
class ListItem : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QString title READ title WRITE setTitle NOTIFY titleChanged)
    Q_PROPERTY(int index READ index WRITE setIndex NOTIFY indexChanged) // a delegate's own name
    Q_PROPERTY(int rank READ rank WRITE setRank NOTIFY rankChanged)
    Q_PROPERTY(QString uid READ uid WRITE setUid NOTIFY uidChanged)
    Q_PROPERTY(State state READ state WRITE setState NOTIFY stateChanged)
    Q_PROPERTY(int left READ left WRITE setLeft NOTIFY sidesChanged)
    Q_PROPERTY(int right READ right WRITE setRight NOTIFY sidesChanged)
    Q_PROPERTY(QString fixed READ fixed CONSTANT)
    Q_PROPERTY(QVariant anything READ anything WRITE setAnything NOTIFY anythingChanged)
    Q_PROPERTY(QObject *friendItem READ friendItem WRITE setFriendItem NOTIFY friendItemChanged)

public:
    enum State {
        Idle,
        Busy,
        Done
    };
    Q_ENUM(State)

    /// The roles a list gives to the properties above; index has none.
    enum Role {
        ObjectNameRole = 257,
        TitleRole,
        RankRole = 260,
        UidRole,
        StateRole,
        LeftRole,
        RightRole,
        FixedRole,
        AnythingRole,
        FriendItemRole
    };

    explicit ListItem(const QString &title = QString(), QObject *parent = nullptr)
        : QObject(parent)
        , m_title(title)
    { }

    QString title() const { return m_title; }
    void setTitle(const QString &title)
    {
        if (std::exchange(m_title, title) != title)
            emit titleChanged();
    }
    int index() const { return m_index; }
    void setIndex(int index)
    {
        if (std::exchange(m_index, index) != index)
            emit indexChanged();
    }
    int rank() const { return m_rank; }
    void setRank(int rank)
    {
        if (std::exchange(m_rank, rank) != rank)
            emit rankChanged(rank);
    }
    QString uid() const { return m_uid; }
    void setUid(const QString &uid)
    {
        if (std::exchange(m_uid, uid) != uid)
            emit uidChanged();
    }
    State state() const { return m_state; }
    void setState(State state)
    {
        if (std::exchange(m_state, state) != state)
            emit stateChanged();
    }
    int left() const { return m_left; }
    void setLeft(int left)
    {
        if (std::exchange(m_left, left) != left)
            emit sidesChanged();
    }
    int right() const { return m_right; }
    void setRight(int right)
    {
        if (std::exchange(m_right, right) != right)
            emit sidesChanged();
    }
    QString fixed() const { return QStringLiteral("fixed"); }
    QVariant anything() const { return m_anything; }
    void setAnything(const QVariant &anything)
    {
        if (std::exchange(m_anything, anything) != anything)
            emit anythingChanged();
    }
    QObject *friendItem() const { return m_friend; }
    void setFriendItem(QObject *item)
    {
        if (std::exchange(m_friend, item) != item)
            emit friendItemChanged();
    }

signals:
    void titleChanged();
    void indexChanged();
    void rankChanged(int rank);
    void uidChanged();
    void stateChanged();
    void sidesChanged();
    void anythingChanged();
    void friendItemChanged();
    /// Announces nothing about a property.
    void greeted();

private:
    QString m_title;
    int m_index = 0;
    int m_rank = 0;
    QString m_uid;
    State m_state = Idle;
    int m_left = 0;
    int m_right = 0;
    QVariant m_anything;
    QObject *m_friend = nullptr;
};

/// Declares a property of its parent class anew.
class ShoutingItem : public ListItem
{
    Q_OBJECT
    Q_PROPERTY(QString title READ loudTitle WRITE setTitle NOTIFY titleChanged)

public:
    using ListItem::ListItem;
    QString loudTitle() const { return title().toUpper(); }
};

#endif // LISTITEM_H
