#pragma once

#include "platform/application.h"

namespace corvane::platform {

/// The running QGuiApplication. When the session ends, it tells the session manager that there is
/// nothing to save or ask, and that it must not restart the program (the login item does).
class QtApplication final : public Application
{
public:
    QtApplication();

    void terminate() override;
};

} // namespace corvane::platform
