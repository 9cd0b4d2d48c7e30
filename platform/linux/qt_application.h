#pragma once

#include "platform/application.h"

namespace corvane::platform {

/// The running QCoreApplication.
class QtApplication final : public Application
{
public:
    void terminate() override;
};

} // namespace corvane::platform
