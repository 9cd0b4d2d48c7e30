#include "platform/linux/toolkit/canberra_sound_player.h"

#include "platform/background_tasks.h"

#include <canberra.h>

#include <array>
#include <utility>

namespace corvane::platform {

namespace {

/// The names of the sounds in the freedesktop sound naming specification.
constexpr std::array<std::pair<Sound, const char *>, 3> themeNames{{
    {Sound::Pop, "message"},
    {Sound::Glass, "complete"},
    {Sound::Basso, "dialog-error"},
}};

const char *themeName(Sound sound)
{
    for (const auto &[known, name] : themeNames) {
        if (known == sound) {
            return name;
        }
    }
    return nullptr;
}

std::shared_ptr<ca_context> makeContext()
{
    ca_context *context = nullptr;
    if (ca_context_create(&context) != CA_SUCCESS) {
        return nullptr;
    }
    ca_context_change_props(context, CA_PROP_APPLICATION_NAME, "Corvane", CA_PROP_APPLICATION_ID,
                            "org.corvane", nullptr);
    return {context, &ca_context_destroy};
}

} // namespace

CanberraSoundPlayer::CanberraSoundPlayer(BackgroundTasks &background)
    : m_background(background)
{}

CanberraSoundPlayer::~CanberraSoundPlayer() = default;

void CanberraSoundPlayer::play(Sound sound)
{
    if (!m_context) {
        m_context = makeContext();
    }
    if (!m_context) {
        return;
    }
    m_background.run([context = m_context, name = themeName(sound)] {
        ca_context_play(context.get(), 0, CA_PROP_EVENT_ID, name, nullptr);
    });
}

} // namespace corvane::platform
