// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef INTERFACE_LOGLINES_H
#define INTERFACE_LOGLINES_H

#include <QAbstractListModel>
#include <QStringList>
#include <QVector>

#include <QsLog.h>

/// The newest lines of the log, the newest last. Fed by the logger from any thread; one such list at a time.
class LogLines : public QAbstractListModel
{
    Q_OBJECT
    /// The least level that the logger lets through, 0 (trace) to 6 (off).
    Q_PROPERTY(int level READ level WRITE setLevel NOTIFY levelChanged)

public:
    enum Role {
        LevelRole = Qt::UserRole + 1, ///< 0 (trace) to 5 (fatal)
        TimeRole, ///< "HH:mm:ss.zzz"
        TextRole
    };
    Q_ENUM(Role)

    static constexpr int limit = 2000; ///< lines; the oldest go first

    explicit LogLines(QObject *parent = nullptr);
    ~LogLines() override;

    int level() const;
    void setLevel(int level);

    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

signals:
    void levelChanged();

private:
    static void receive(const QString &message, QsLogging::Level level);
    void append(int level, const QString &message);

    struct Line
    {
        int level;
        QString time;
        QString text;
    };
    QVector<Line> m_lines;
    QsLogging::DestinationPtr m_destination;
};

#endif // INTERFACE_LOGLINES_H
