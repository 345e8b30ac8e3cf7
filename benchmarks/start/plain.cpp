// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
//
// What every QML application does at its start, and nothing else, in a program that knows no library of ours.
#include <QGuiApplication>
#include <QQmlEngine>

#include "ready.h"

int main(int argc, char **argv)
{
    const QGuiApplication application(argc, argv);
    const QQmlEngine engine;
    ready();
}
