#include "platform/linux/toolkit/qt_main_queue.h"

#include <QCoreApplication>
#include <QEvent>
#include <QObject>
#include <QTimerEvent>

#include <algorithm>
#include <deque>
#include <limits>
#include <map>
#include <mutex>
#include <utility>

namespace corvane::platform {

namespace {

/// Whole milliseconds, rounded up: an action may run late but never early.
int toMilliseconds(std::chrono::nanoseconds time)
{
    using Milliseconds = std::chrono::milliseconds;
    return static_cast<int>(std::clamp<Milliseconds::rep>(
        std::chrono::ceil<Milliseconds>(time).count(), 0, std::numeric_limits<int>::max()));
}

} // namespace

/// The active timers and the posted actions. They are kept outside the queue object, so that an
/// action may cancel itself or destroy the queue while it runs.
class QtMainQueue::Timers final : public QObject, public std::enable_shared_from_this<Timers>
{
public:
    struct Entry
    {
        int id = 0;
        bool repeats = false;
        Action action;
    };

    std::shared_ptr<WorkItem> schedule(int milliseconds, Qt::TimerType type, bool repeats,
                                       Action action);
    void cancel(const Entry &entry);
    /// From any thread.
    void post(Action action);
    /// Drops all timers and posted actions.
    void stop();

protected:
    void timerEvent(QTimerEvent *event) override;
    void customEvent(QEvent *event) override;

private:
    std::map<int, std::shared_ptr<Entry>> m_entries;
    // Passed between threads here rather than in Qt's events, whose synchronisation the thread
    // sanitizer does not see.
    std::mutex m_mutex;
    std::deque<Action> m_posted;
};

/// Refers to the entry rather than to the timer id, which Qt reuses.
class QtMainQueue::Item final : public WorkItem
{
public:
    Item(std::weak_ptr<Timers> timers, std::weak_ptr<Timers::Entry> entry)
        : m_timers(std::move(timers))
        , m_entry(std::move(entry))
    {}

    void cancel() override
    {
        const auto timers = m_timers.lock();
        const auto entry = m_entry.lock();
        if (timers && entry) {
            timers->cancel(*entry);
        }
    }

private:
    std::weak_ptr<Timers> m_timers;
    std::weak_ptr<Timers::Entry> m_entry;
};

std::shared_ptr<WorkItem> QtMainQueue::Timers::schedule(int milliseconds, Qt::TimerType type,
                                                        bool repeats, Action action)
{
    const int id = startTimer(milliseconds, type);
    auto entry = std::make_shared<Entry>(Entry{id, repeats, std::move(action)});
    auto item = std::make_shared<Item>(weak_from_this(), entry);
    m_entries.emplace(id, std::move(entry));
    return item;
}

void QtMainQueue::Timers::cancel(const Entry &entry)
{
    const int id = entry.id;
    const auto found = m_entries.find(id);
    if (found == m_entries.end() || found->second.get() != &entry) {
        return;
    }
    killTimer(id);
    // What the action captured may cancel further items while it is destroyed.
    const auto dropped = m_entries.extract(found);
}

void QtMainQueue::Timers::stop()
{
    for (const auto &[id, entry] : m_entries) {
        killTimer(id);
    }
    const auto dropped = std::exchange(m_entries, {});
    std::deque<Action> droppedActions;
    {
        const std::lock_guard lock(m_mutex);
        droppedActions.swap(m_posted);
    }
    QCoreApplication::removePostedEvents(this, QEvent::User);
}

void QtMainQueue::Timers::post(Action action)
{
    {
        const std::lock_guard lock(m_mutex);
        m_posted.push_back(std::move(action));
    }
    QCoreApplication::postEvent(this, new QEvent(QEvent::User));
}

void QtMainQueue::Timers::customEvent(QEvent *)
{
    Action action;
    {
        const std::lock_guard lock(m_mutex);
        if (m_posted.empty()) {
            return;
        }
        action = std::move(m_posted.front());
        m_posted.pop_front();
    }
    action();
}

void QtMainQueue::Timers::timerEvent(QTimerEvent *event)
{
    const auto found = m_entries.find(event->timerId());
    if (found == m_entries.end()) {
        return;
    }
    // The action may cancel its own entry.
    const std::shared_ptr<Entry> entry = found->second;
    if (!entry->repeats) {
        killTimer(entry->id);
        m_entries.erase(found);
    }
    entry->action();
}

QtMainQueue::QtMainQueue()
    // An action may destroy the queue, and with it the object that is handling the event.
    : m_timers(new Timers, [](Timers *timers) { timers->deleteLater(); })
{}

QtMainQueue::~QtMainQueue()
{
    m_timers->stop();
}

std::chrono::nanoseconds QtMainQueue::now() const
{
    return std::chrono::steady_clock::now().time_since_epoch();
}

std::chrono::system_clock::time_point QtMainQueue::wallTime() const
{
    return std::chrono::system_clock::now();
}

void QtMainQueue::post(Action action)
{
    m_timers->post(std::move(action));
}

std::shared_ptr<WorkItem> QtMainQueue::after(std::chrono::nanoseconds delay, Action action)
{
    return m_timers->schedule(toMilliseconds(delay), Qt::PreciseTimer, false, std::move(action));
}

std::shared_ptr<WorkItem> QtMainQueue::every(std::chrono::nanoseconds interval, Action action)
{
    // Qt lets coarse timers tick together, within 5 % of their interval.
    return m_timers->schedule(std::max(toMilliseconds(interval), 1), Qt::CoarseTimer, true,
                              std::move(action));
}

} // namespace corvane::platform
