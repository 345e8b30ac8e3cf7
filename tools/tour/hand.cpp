// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include "hand.h"

#include <QElapsedTimer>
#include <QQuickItem>
#include <QQuickWindow>
#include <QSet>
#include <QTest>

#include <failure.h>

namespace {

bool isA(const QObject *object, const char *className)
{
    return object->inherits(className);
}

/// The list or sheet that \p item is scrolled by; null when there is none.
QQuickItem *flickableOf(const QQuickItem *item)
{
    for (QQuickItem *parent = item->parentItem(); parent; parent = parent->parentItem()) {
        if (isA(parent, "QQuickFlickable"))
            return parent;
    }
    return nullptr;
}

QRectF sceneRect(const QQuickItem *item)
{
    return item->mapRectToScene(QRectF(0, 0, item->width(), item->height()));
}

/// The rows that a list keeps for later use. They stay where they were last and count as visible, but are not
/// drawn.
QSet<QQuickItem *> rowsPutAside(const QQuickItem *list)
{
    if (!list->property("reuseItems").toBool())
        return {};
    const QList<QQuickItem *> children = list->property("contentItem").value<QQuickItem *>()->childItems();
    QSet<QQuickItem *> aside(children.cbegin(), children.cend());
    for (const char *used : {"headerItem", "footerItem", "highlightItem", "currentItem"})
        aside.remove(list->property(used).value<QQuickItem *>());
    const int count = list->property("count").toInt();
    bool reached = false;
    for (int i = 0; i < count; ++i) {
        QQuickItem *row = nullptr;
        QMetaObject::invokeMethod(const_cast<QQuickItem *>(list), "itemAtIndex",
                                  Q_RETURN_ARG(QQuickItem *, row), Q_ARG(int, i));
        aside.remove(row);
        if (reached && !row)
            break; // the rows in use follow each other
        reached = row != nullptr;
    }
    return aside;
}

void collect(QQuickItem *item, QList<QQuickItem *> &found)
{
    if (!item->isVisible() || item->opacity() <= 0)
        return;
    found.append(item);
    QSet<QQuickItem *> aside;
    const QQuickItem *const list = item->parentItem();
    if (list && list->property("contentItem").value<QQuickItem *>() == item)
        aside = rowsPutAside(list);
    const QList<QQuickItem *> children = item->childItems();
    for (QQuickItem *child : children) {
        if (!aside.contains(child))
            collect(child, found);
    }
}

} // namespace

QList<QQuickItem *> visibleItems(const QQuickItem *root)
{
    QList<QQuickItem *> found;
    collect(const_cast<QQuickItem *>(root), found);
    return found;
}

bool isControl(const QQuickItem *item)
{
    return isA(item, "QQuickAbstractButton") || isA(item, "QQuickTextField") || isA(item, "QQuickTextArea")
        || isA(item, "QQuickSlider");
}

QString wordsOf(const QQuickItem *item)
{
    if (!isControl(item))
        return QString();
    for (const char *name : {"heading", "placeholderText", "text"}) {
        QString words = item->property(name).toString();
        // As people type it, not as it is set.
        words.replace(QChar::Nbsp, QLatin1Char(' '));
        if (!words.isEmpty())
            return words;
    }
    return QString();
}

QQuickItem *Hand::see(const QString &label) const
{
    QQuickItem *seen = nullptr;
    const QList<QQuickItem *> items = visibleItems(m_window->contentItem());
    for (QQuickItem *item : items) {
        if (item->isEnabled() && isControl(item) && (item->objectName() == label || wordsOf(item) == label))
            seen = item; // what is drawn later lies in front
    }
    return seen;
}

QQuickItem *Hand::find(const QString &label, int limit) const
{
    QQuickItem *item = nullptr;
    waitFor([&] { return (item = see(label)) != nullptr; },
            QStringLiteral("\"%1\" is to be there on %2").arg(label, screen()), limit);
    return item;
}

QPoint Hand::pointOf(const QQuickItem *item) const
{
    return sceneRect(item).center().toPoint();
}

void Hand::reveal(QQuickItem *item) const
{
    const QQuickItem *flickable = flickableOf(item);
    if (!flickable)
        return;
    for (int attempt = 0; attempt < 40; ++attempt) {
        const QRectF frame = sceneRect(flickable);
        const QRectF rect = sceneRect(item);
        const double middle = rect.center().y();
        if (middle > frame.top() + 4 && middle < frame.bottom() - 4)
            return;
        // A slow drag, held still at its end so that nothing rolls on. The list counts in the events' own
        // time.
        const double way = qBound(-0.7 * frame.height(), frame.center().y() - middle, 0.7 * frame.height());
        const int x = qRound(frame.left()) + 4;
        const int from =
            qRound(way > 0 ? frame.top() + 0.12 * frame.height() : frame.bottom() - 0.12 * frame.height());
        const QPoint end(x, from + qRound(way));
        QTest::mousePress(m_window, Qt::LeftButton, {}, QPoint(x, from));
        constexpr int moves = 8;
        for (int move = 1; move <= moves; ++move)
            QTest::mouseMove(m_window, QPoint(x, from + qRound(way * move / moves)), 8);
        QTest::mouseMove(m_window, end, 120);
        QTest::mouseRelease(m_window, Qt::LeftButton, {}, end);
        // A list that still moves takes the next tap for a stop.
        waitFor([flickable] { return !flickable->property("moving").toBool(); },
                QStringLiteral("the list is to stand still"));
    }
    throw Failure{QStringLiteral("\"%1\" cannot be scrolled into sight").arg(wordsOf(item))};
}

void Hand::tap(const QString &label)
{
    tap(find(label));
}

void Hand::tap(QQuickItem *item)
{
    reveal(item);
    // A screen that has just come does not take a tap yet.
    pause(20);
    waitFor([this] { return !m_window->property("settling").toBool(); },
            QStringLiteral("input is to be taken"));
    QTest::mouseClick(m_window, Qt::LeftButton, {}, pointOf(item));
    pause(20);
}

void Hand::touch(const QString &objectName)
{
    const QList<QQuickItem *> items = visibleItems(m_window->contentItem());
    for (const QQuickItem *item : items) {
        if (item->objectName() != objectName)
            continue;
        QTest::mouseClick(m_window, Qt::LeftButton, {}, pointOf(item));
        pause(20);
        return;
    }
    throw Failure{QStringLiteral("there is no %1 on %2").arg(objectName, screen())};
}

void Hand::fill(const QString &label, const QString &text)
{
    tap(label);
    QTest::keyClick(m_window, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClick(m_window, Qt::Key_Delete);
    type(text);
}

void Hand::type(const QString &text)
{
    for (const QChar letter : text)
        QTest::sendKeyEvent(QTest::Click, m_window, Qt::Key_unknown, QString(letter), Qt::NoModifier);
}

void Hand::key(Qt::Key key)
{
    QTest::keyClick(m_window, key);
    pause(20);
}

void Hand::waitFor(const std::function<bool()> &condition, const QString &what, int limit) const
{
    if (!QTest::qWaitFor(condition, limit))
        throw Failure{QStringLiteral("waited %1 s in vain: %2").arg(limit / 1000.0).arg(what)};
}

void Hand::waitForScreen(const QString &name) const
{
    waitFor([&] { return screen() == name && !m_window->property("settling").toBool(); },
            QStringLiteral("%1 is to be shown, it is %2").arg(name, screen()));
}

void Hand::pause(int milliseconds) const
{
    QTest::qWait(milliseconds);
}

QString Hand::screen() const
{
    const auto *item = m_window->property("screen").value<QQuickItem *>();
    if (!item)
        return QString();
    // "HomeScreen_QMLTYPE_12"
    return QString::fromLatin1(item->metaObject()->className()).section(QLatin1Char('_'), 0, 0);
}

void Hand::inEveryAppearance(const std::function<void(const QString &)> &look)
{
    inAppearances({false, true}, look);
}

void Hand::inBothOrientations(const std::function<void(const QString &)> &look)
{
    inAppearances({false}, look);
}

void Hand::inAppearances(std::initializer_list<bool> nights, const std::function<void(const QString &)> &look)
{
    const QSize size = m_window->size();
    const bool night = m_window->property("night").toBool();
    waitFor([this] { return m_window->isExposed(); }, QStringLiteral("the window is to be shown"));
    for (const bool landscape : {false, true}) {
        const QSize wanted = landscape ? QSize(800, 480) : QSize(480, 800);
        m_window->resize(wanted);
        waitFor([&] { return m_window->contentItem()->size().toSize() == wanted; },
                QStringLiteral("the window is to get its size"));
        // What a new shape brings in paints its signs in the frames after its first.
        pause(60);
        for (const bool dark : nights) {
            m_window->setProperty("night", dark);
            pause(60);
            look(QStringLiteral("%1-%2").arg(landscape ? QStringLiteral("landscape")
                                                       : QStringLiteral("portrait"),
                                             dark ? QStringLiteral("night") : QStringLiteral("day")));
        }
    }
    m_window->setProperty("night", night);
    m_window->resize(size);
    waitFor([&] { return m_window->contentItem()->size().toSize() == size; },
            QStringLiteral("the window is to get its size back"));
}
