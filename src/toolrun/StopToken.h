#pragma once
#include <atomic>
#include <memory>

// A request to stop, shared between the UI thread that asks and a worker
// that looks at it between two pieces of work (a file copied, an entry
// measured, a slice of waiting on a tool). Copies share one flag; a
// default-made token is never stopped until stop() is called on it or on a
// copy of it.
class StopToken {
public:
    StopToken() : m_flag(std::make_shared<std::atomic<bool>>(false)) {}
    void stop() const { m_flag->store(true, std::memory_order_relaxed); }
    bool stopped() const { return m_flag->load(std::memory_order_relaxed); }

private:
    std::shared_ptr<std::atomic<bool>> m_flag;
};
