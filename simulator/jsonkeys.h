// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef SIMULATOR_JSONKEYS_H
#define SIMULATOR_JSONKEYS_H

#include <QByteArray>
#include <QString>

namespace simulator {

/// Qt's JSON parser takes the last of two values of one key, drops the other without a word, and loses its
/// memory when that was a list or an object. Whoever reads JSON from outside looks here first.
struct RepeatedKey
{
    QString key; ///< as it reads without escapes
    int offset = -1; ///< of its second quotation, in bytes; -1 when no key stands twice in one object

    bool isFound() const { return offset >= 0; }
};

/// The first key of \p json that stands a second time in the same object. Judges nothing else: what is no
/// JSON is looked through as far as it resembles it.
RepeatedKey findRepeatedKey(const QByteArray &json);

} // namespace simulator

#endif // SIMULATOR_JSONKEYS_H
