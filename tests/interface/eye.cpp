// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include "eye.h"

#include <QAccessible>
#include <QQuickItem>
#include <QQuickWindow>
#include <QVector>

#include <algorithm>

#include "hand.h"

namespace {

constexpr double Tolerance = 2; ///< px: what rounding and a font's own overhang take
constexpr double Finger = 48; ///< px

bool isA(const QObject *object, const char *className)
{
    return object->inherits(className);
}

bool isAncestor(const QQuickItem *ancestor, const QQuickItem *item)
{
    for (; item; item = item->parentItem()) {
        if (item == ancestor)
            return true;
    }
    return false;
}

struct Seen
{
    const QQuickItem *item;
    QRectF rect; ///< in the window, whole
    QRectF shown; ///< the part that no list or sheet cuts off
    QString what;
};

QRectF shownPart(const QQuickItem *item, QRectF rect, const QQuickWindow *window)
{
    for (const QQuickItem *parent = item->parentItem(); parent; parent = parent->parentItem()) {
        if (parent->clip())
            rect &= parent->mapRectToScene(QRectF(0, 0, parent->width(), parent->height()));
    }
    return rect & QRectF(QPointF(), window->size());
}

QString describe(const QQuickItem *item)
{
    QString words = isControl(item) ? wordsOf(item) : item->property("text").toString();
    if (words.size() > 40)
        words = words.left(40) + QStringLiteral("…");
    return QStringLiteral("%1 \"%2\"")
        .arg(QString::fromLatin1(item->metaObject()->className()).section(QLatin1Char('_'), 0, 0),
             item->objectName().isEmpty() || !words.isEmpty() ? words : item->objectName());
}

bool isText(const QQuickItem *item)
{
    return isA(item, "QQuickText") && !item->property("text").toString().isEmpty();
}

/// The letters, which need not fill the item that shows them.
QRectF lettersOf(const QQuickItem *item)
{
    const double width = qMin(item->width(), item->property("contentWidth").toDouble());
    const double height = qMin(item->height(), item->property("contentHeight").toDouble());
    const int horizontal = item->property("effectiveHorizontalAlignment").toInt();
    const int vertical = item->property("verticalAlignment").toInt();
    const double x = horizontal == Qt::AlignHCenter ? (item->width() - width) / 2
        : horizontal == Qt::AlignRight              ? item->width() - width
                                                    : 0;
    const double y = vertical == Qt::AlignVCenter ? (item->height() - height) / 2
        : vertical == Qt::AlignBottom             ? item->height() - height
                                                  : 0;
    return item->mapRectToScene(QRectF(x, y, width, height));
}

bool cover(const QRectF &a, const QRectF &b)
{
    const QRectF both = a & b;
    return both.width() > Tolerance && both.height() > Tolerance;
}

void lookAtText(const Seen &text, Strictness strictness, QStringList &found)
{
    const QQuickItem *item = text.item;
    const bool isTruncated = item->property("truncated").toBool();
    if (isTruncated && strictness == Strictness::Everything)
        found.append(QStringLiteral("%1 is shortened").arg(text.what));
    if (isTruncated)
        return;
    if (item->property("contentWidth").toDouble() > item->width() + Tolerance)
        found.append(QStringLiteral("%1 is wider than its place").arg(text.what));
    if (item->property("contentHeight").toDouble() > item->height() + Tolerance)
        found.append(QStringLiteral("%1 is higher than its place").arg(text.what));
}

void lookAtControl(const Seen &control, const QQuickWindow *window, QStringList &found)
{
    if (control.rect.width() < Finger || control.rect.height() < Finger)
        found.append(QStringLiteral("%1 is too small for a finger: %2 x %3")
                         .arg(control.what)
                         .arg(control.rect.width())
                         .arg(control.rect.height()));
    if (control.rect.left() < -Tolerance || control.rect.right() > window->width() + Tolerance)
        found.append(QStringLiteral("%1 lies beside the window").arg(control.what));
    QAccessibleInterface *interface =
        QAccessible::queryAccessibleInterface(const_cast<QQuickItem *>(control.item));
    if (!interface || interface->text(QAccessible::Name).trimmed().isEmpty())
        found.append(QStringLiteral("%1 has no accessible name").arg(control.what));
}

/// What tells something in passing floats above the rest, and goes by itself.
bool isInToast(const QQuickItem *item)
{
    for (; item; item = item->parentItem()) {
        if (QByteArray(item->metaObject()->className()).startsWith("Toast_"))
            return true;
    }
    return false;
}

/// Things of the topmost dialog cover what is below it, and are meant to.
const QQuickItem *topmostDialog(const QQuickWindow *window)
{
    const QQuickItem *dialog = nullptr;
    const QList<QQuickItem *> items = visibleItems(window->contentItem());
    for (const QQuickItem *item : items) {
        if (isA(item, "QQuickPopupItem"))
            dialog = item;
    }
    return dialog;
}

} // namespace

QStringList complaints(const QQuickWindow *window, Strictness strictness)
{
    QStringList found;
    QVector<Seen> texts;
    QVector<Seen> controls;
    const QQuickItem *dialog = topmostDialog(window);
    const QList<QQuickItem *> items = visibleItems(window->contentItem());
    for (const QQuickItem *item : items) {
        if ((dialog && !isAncestor(dialog, item)) || isInToast(item))
            continue;
        const bool text = isText(item);
        if (!text && !isControl(item))
            continue;
        const QRectF rect =
            text ? lettersOf(item) : item->mapRectToScene(QRectF(0, 0, item->width(), item->height()));
        const Seen seen{item, rect, shownPart(item, rect, window), describe(item)};
        if (seen.shown.isEmpty())
            continue;
        (text ? texts : controls).append(seen);
    }

    for (const Seen &text : qAsConst(texts))
        lookAtText(text, strictness, found);
    for (const Seen &control : qAsConst(controls))
        lookAtControl(control, window, found);
    for (int i = 0; i < controls.size(); ++i) {
        for (int j = i + 1; j < controls.size(); ++j) {
            if (!isAncestor(controls[i].item, controls[j].item)
                && cover(controls[i].shown, controls[j].shown))
                found.append(
                    QStringLiteral("%1 and %2 cover each other").arg(controls[i].what, controls[j].what));
        }
    }
    for (int i = 0; i < texts.size(); ++i) {
        for (int j = i + 1; j < texts.size(); ++j) {
            if (cover(texts[i].shown, texts[j].shown))
                found.append(QStringLiteral("%1 and %2 cover each other").arg(texts[i].what, texts[j].what));
        }
        for (const Seen &control : qAsConst(controls)) {
            if (!isAncestor(control.item, texts[i].item) && !isAncestor(texts[i].item, control.item)
                && cover(texts[i].shown, control.shown))
                found.append(QStringLiteral("%1 and %2 cover each other").arg(texts[i].what, control.what));
        }
    }
    return found;
}

bool isSaid(const QQuickWindow *window, const QString &words)
{
    const QList<QQuickItem *> items = visibleItems(window->contentItem());
    return std::any_of(items.begin(), items.end(), [&](const QQuickItem *item) {
        QString text = item->property("text").toString();
        return text.replace(QChar::Nbsp, QLatin1Char(' ')).contains(words);
    });
}
