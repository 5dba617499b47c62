#pragma once

#include <functional>

namespace quillfern {

/// Runs work for other threads on the main thread. An interface, so that tests can run everything on one
/// thread.
class MainThread
{
  public:
    virtual ~MainThread() = default;
    /// Runs `work` on the main thread and returns when it is done; at once when called there.
    virtual void postAndWait(const std::function<void()>& work) = 0;
};

/// Delivers through the event loop of the application object, which must outlive every caller.
class EventLoopMainThread final : public MainThread
{
  public:
    void postAndWait(const std::function<void()>& work) override;
};

} // namespace quillfern
