#pragma once

#include "platform/application.h"

namespace corvane::platform {

/// The running QGuiApplication. A session that ends is told that there is nothing to save or to
/// ask, and that the login item, not the session, starts the program again.
class QtApplication final : public Application
{
public:
    QtApplication();

    void terminate() override;
};

} // namespace corvane::platform
