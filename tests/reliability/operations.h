// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef OPERATIONS_H
#define OPERATIONS_H

#include <QString>

#include <memory>
#include <vector>

#include "controllerfixture.h"

/// One of the library's ways to replace a file, driven as the interface or a peer drives it.
class Operation
{
public:
    Operation(const QString &title, const QString &path, const QString &temporaryPath)
        : name(title)
        , file(path)
        , temporary(temporaryPath)
    { }
    virtual ~Operation() = default;

    /// Starts as the instrument does when it is switched on: whatever the file holds is read.
    /// \return what is wrong with it, empty when nothing is.
    virtual QString begin() = 0;
    /// Adds one thing to what the library holds, which has it replace the file.
    virtual void run() = 0;
    /// How many Error lines tell of a failed run. \param opened the temporary file could be opened.
    virtual int errorLines(bool opened) const = 0;

    const QString name;
    const QString file; ///< absolute
    const QString temporary; ///< absolute

private:
    Q_DISABLE_COPY(Operation)
};

/// All of them, on one controller; \p home must outlive them.
std::vector<std::unique_ptr<Operation>> allOperations(ControllerFixture &controller, const TestHome &home);

#endif // OPERATIONS_H
