// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef FUZZ_HEAPWATCH_H
#define FUZZ_HEAPWATCH_H

#include <cstddef>
#include <cstdint>

namespace fuzz {

/// Counts the heap while one input is taken, on all threads, and ends the process when
///  - an input of n bytes holds more than 40 n + 20 MB at any moment, or
///  - what inputs leave behind, caches filled, goes on growing.
/// What an input alone leaks is found by the leak sanitizer.
class HeapWatch
{
public:
    explicit HeapWatch(std::size_t inputSize);
    ~HeapWatch();
    HeapWatch(const HeapWatch &) = delete;
    HeapWatch &operator=(const HeapWatch &) = delete;

    /// Once, before the first input.
    static void install();

private:
    const std::size_t m_inputSize;
    const std::int64_t m_before;
};

} // namespace fuzz

#endif // FUZZ_HEAPWATCH_H
