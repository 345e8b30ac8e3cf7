// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include "heapwatch.h"

#include <QString>

#include <atomic>

#include <sanitizer/allocator_interface.h>

#include "harness.h"

namespace fuzz {

namespace {

constexpr std::int64_t Megabyte = 1024 * 1024;
constexpr std::int64_t AllowedPerByte = 40;
constexpr std::int64_t AllowedAtAll = 20 * Megabyte;
constexpr int WarmUp = 2000; // inputs
constexpr std::int64_t AllowedGrowth = 8 * Megabyte; // after the warm-up, in a whole run

std::atomic<bool> watching{false};
std::atomic<std::int64_t> live{0}; // allocated less released, of all inputs together
std::atomic<std::int64_t> most{0};
int inputs = 0;
std::int64_t afterWarmUp = 0;

void allocated(const volatile void *, std::size_t size)
{
    if (!watching.load(std::memory_order_relaxed))
        return;
    const std::int64_t now = live.fetch_add(std::int64_t(size)) + std::int64_t(size);
    std::int64_t before = most.load(std::memory_order_relaxed);
    while (now > before && !most.compare_exchange_weak(before, now)) { }
}

void released(const volatile void *block)
{
    if (!watching.load(std::memory_order_relaxed) || !block)
        return;
    live -= std::int64_t(__sanitizer_get_allocated_size(const_cast<const void *>(block)));
}

} // namespace

void HeapWatch::install()
{
    __sanitizer_install_malloc_and_free_hooks(&allocated, &released);
}

HeapWatch::HeapWatch(std::size_t inputSize)
    : m_inputSize(inputSize)
    , m_before(live)
{
    most = m_before;
    watching = true;
}

HeapWatch::~HeapWatch()
{
    watching = false;
    const std::int64_t peak = most - m_before;
    const std::int64_t limit = AllowedPerByte * std::int64_t(m_inputSize) + AllowedAtAll;
    FUZZ_VERIFY2(
        peak <= limit,
        QStringLiteral("%1 bytes held for an input of %2, limit %3").arg(peak).arg(m_inputSize).arg(limit));
    if (++inputs == WarmUp)
        afterWarmUp = live;
    FUZZ_VERIFY2(inputs <= WarmUp || live - afterWarmUp <= AllowedGrowth,
                 QStringLiteral("%1 bytes more left behind after %2 inputs than after %3")
                     .arg(live - afterWarmUp)
                     .arg(inputs)
                     .arg(WarmUp));
}

} // namespace fuzz
