#include "island/hover_machine.h"

namespace corvane::island {

using namespace std::chrono_literals;

namespace {

constexpr auto openDelay = 120ms;
/// From widening to the unfolding of the card.
constexpr auto unfoldDelay = 100ms;
constexpr auto closeDelay = 320ms;
/// From the folding of the card to the narrowing of the strip.
constexpr auto narrowDelay = 160ms;
/// From the start of narrowing until click-through is on again.
constexpr auto passAfterNarrowing = 400ms;
constexpr auto passAfterFolding = 700ms;

/// How long an island that was opened without the pointer waits for it: enough time to read the
/// figures.
constexpr auto presentationTime = 6s;

void cancel(std::shared_ptr<platform::WorkItem> &work)
{
    if (work) {
        work->cancel();
        work.reset();
    }
}

} // namespace

HoverMachine::HoverMachine(platform::MainQueue &queue, Island &island)
    : m_queue(queue)
    , m_island(island)
{}

HoverMachine::~HoverMachine()
{
    cancel(m_openWork);
    cancel(m_closeWork);
}

void HoverMachine::handle(Event event)
{
    switch (event) {
    case Event::PointerInside:
        pointerInside();
        break;
    case Event::PointerOutside:
        pointerOutside();
        break;
    case Event::Open:
        open();
        break;
    case Event::Present:
        cancel(m_closeWork);
        m_presentedUntil = m_queue.now() + presentationTime;
        open();
        break;
    case Event::ShowPane:
        m_dismissed = false;
        if (!isOpen()) {
            m_state = m_state == State::Widened ? State::Expanded : State::Opened;
            m_island.perform(Action::Unfold);
        }
        break;
    case Event::Close:
        close();
        break;
    case Event::Dismiss:
        dismiss();
        break;
    case Event::KeyboardLost:
        m_presentedUntil.reset();
        break;
    case Event::ScreensChange:
        if (!isOpen()) {
            m_state = State::Resting;
            m_swollen = false;
            m_island.perform(Action::Reset);
        }
        break;
    }
}

bool HoverMachine::isOpen() const
{
    return m_state == State::Expanded || m_state == State::Opened;
}

void HoverMachine::pointerInside()
{
    if (m_dismissed) {
        return;
    }
    cancel(m_closeWork);
    m_presentedUntil.reset();
    if (m_state == State::Resting) {
        m_state = State::Hovered;
        m_swollen = true;
        m_island.perform(Action::Swell);
    }
    if (!isOpen()) {
        schedule(m_openWork, openDelay, Event::Open);
    }
}

void HoverMachine::pointerOutside()
{
    cancel(m_openWork);
    m_dismissed = false;
    if (m_swollen) {
        m_swollen = false;
        if (m_state == State::Hovered) {
            m_state = State::Resting;
        }
        m_island.perform(Action::Settle);
    }
    if (isPresented() || m_island.isHeld()) {
        // Needed if a pending fold has closed the island again.
        open();
    } else if (m_state == State::Widened) {
        narrow();
        later(passAfterNarrowing, &HoverMachine::letClicksPass);
    } else if (isOpen() && m_island.showsBalance()) {
        schedule(m_closeWork, closeDelay, Event::Close);
    }
}

bool HoverMachine::isPresented() const
{
    return m_presentedUntil && m_queue.now() < *m_presentedUntil;
}

void HoverMachine::open()
{
    m_dismissed = false;
    if (isOpen()) {
        return;
    }
    m_state = State::Widened;
    m_island.perform(Action::Raise);
    m_island.perform(Action::Widen);
    later(unfoldDelay, &HoverMachine::unfold);
    m_island.perform(Action::Prompt);
}

void HoverMachine::unfold()
{
    if (m_state == State::Widened) {
        m_state = State::Expanded;
        m_island.perform(Action::Unfold);
    }
}

void HoverMachine::close()
{
    if (isOpen() && m_island.showsBalance() && !m_island.isPrompting() && !m_island.isHeld()) {
        fold();
    }
}

void HoverMachine::dismiss()
{
    if (isOpen() && !m_island.isPrompting()) {
        cancel(m_closeWork);
        m_presentedUntil.reset();
        m_dismissed = true;
        fold();
    }
}

void HoverMachine::fold()
{
    if (m_state == State::Expanded) {
        m_state = State::Widened;
    } else {
        becomeTab();
    }
    m_island.perform(Action::Fold);
    later(narrowDelay, &HoverMachine::narrow);
    later(passAfterFolding, &HoverMachine::letClicksPass);
}

void HoverMachine::narrow()
{
    if (m_state == State::Widened) {
        becomeTab();
        m_island.perform(Action::Narrow);
    }
}

void HoverMachine::letClicksPass()
{
    if (m_state == State::Resting || m_state == State::Hovered) {
        m_island.perform(Action::LetClicksPass);
    }
}

void HoverMachine::becomeTab()
{
    m_state = m_swollen ? State::Hovered : State::Resting;
}

void HoverMachine::schedule(std::shared_ptr<platform::WorkItem> &work,
                            std::chrono::nanoseconds delay, Event event)
{
    if (!work) {
        work = m_queue.after(delay, [this, &work, event] {
            work.reset();
            handle(event);
        });
    }
}

void HoverMachine::later(std::chrono::nanoseconds delay, void (HoverMachine::*step)())
{
    m_queue.after(delay, [this, life = std::weak_ptr(m_life), step] {
        if (!life.expired()) {
            (this->*step)();
        }
    });
}

} // namespace corvane::island
