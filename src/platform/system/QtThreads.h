#pragma once

namespace quillfern {

/// Qt converts large images on QThreadPool::globalInstance() and waits for ever for a thread that the system
/// refuses. Starts all threads of that pool, which stay from then on. Throws Failure when the system refuses
/// as many. Later calls do nothing. Main thread.
void startQtThreads();

} // namespace quillfern
