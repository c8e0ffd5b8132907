// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <array>
#include <cstddef>

/// What a rule has decided to be done, in order; its caller does it. Kept in place, since a reading
/// makes several: one more than @p most throws std::out_of_range.
template <typename Step, std::size_t most> class StepList
{
public:
    void add(const Step &step) { m_steps.at(m_count++) = step; }

    const Step *begin() const { return m_steps.data(); }
    const Step *end() const { return m_steps.data() + m_count; }

private:
    std::array<Step, most> m_steps;
    std::size_t m_count = 0;
};
