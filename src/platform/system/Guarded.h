#pragma once

#include "platform/system/Failure.h"
#include "platform/system/LogLine.h"

#include <utility>

namespace quillfern {

/// Runs `body` at the boundary of an operation: a failure inside writes one line to the system log, made
/// from `pattern` with the reason in place of "%@", and the operation ends normally, as far as it got.
template <class Body>
void guarded(const char* pattern, Body&& body)
{
    try {
        std::forward<Body>(body)();
    } catch (...) {
        logLine(failureLine(pattern, reasonOfCurrentException()));
    }
}

/// The same for an operation with a result; `neutral` is what a failed one returns.
template <class Result, class Body>
[[nodiscard]] Result guarded(const char* pattern, Result neutral, Body&& body)
{
    try {
        return std::forward<Body>(body)();
    } catch (...) {
        logLine(failureLine(pattern, reasonOfCurrentException()));
        return neutral;
    }
}

} // namespace quillfern
