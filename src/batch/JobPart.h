#pragma once

#include <cstddef>
#include <cstdint>

namespace quillfern {

struct Job;

/// Some outputs of a job that other programs, perhaps on other machines, do the rest of. The outputs of a
/// part follow each other in the list. Numbers, totals and names are those that the whole job gives when
/// every file has as many pages as were counted.
struct JobPart
{
    std::size_t first = 0; ///< its outputs in the list, from `first` up to and without `end`
    std::size_t end = 0;
    int number = 1;         ///< from 1
    int count = 1;          ///< of all parts
    std::int64_t pages = 0; ///< of its files

    [[nodiscard]] std::size_t size() const { return end - first; }
};

/// The outputs that a job makes; all of them for a job that is no part.
[[nodiscard]] JobPart partOf(const Job& job);

/// Makes the job its part `number` of `count`. The parts have as many files each, as far as that is possible,
/// in list order. Throws Failure when a copy of the part would have the name of a copy of another part: the
/// later one would win, whichever that is.
void takePart(Job& job, int number, int count);

} // namespace quillfern
