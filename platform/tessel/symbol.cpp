// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include "tessel/symbol.h"

#include <mutex>
#include <unordered_map>

namespace tessel {

Symbol::Symbol(const char *name)
{
    static std::mutex mutex;
    // Nodes keep their address when the table grows.
    static auto *const table = new std::unordered_map<std::string, QByteArray>;
    const std::lock_guard<std::mutex> lock(mutex);
    m_name = &table->try_emplace(name, name).first->second;
}

} // namespace tessel
