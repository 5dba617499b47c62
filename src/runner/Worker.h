#pragma once

#include <functional>

namespace quillfern {

/// Runs `work` on a thread of its own and returns when it is done; the calling thread serves its event loop
/// meanwhile and calls `watch` now and then. What `work` throws is not caught. Throws Failure when
/// the system allows no further thread.
void runOnWorker(const std::function<void()>& work, const std::function<void()>& watch);

} // namespace quillfern
