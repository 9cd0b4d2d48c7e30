#pragma once

#include "core/endpoints.h"

namespace corvane::platform {
class BackgroundTasks;
class FileSystem;
class HttpClient;
class Keychain;
class MainQueue;
class NumberFormatter;
class SettingsStore;
class SigningKeys;
} // namespace corvane::platform

namespace corvane::core {

/// What the wallet needs of the world. All services must outlive the model.
struct WalletServices
{
    platform::MainQueue &queue;
    platform::HttpClient &http;
    platform::SettingsStore &settings;
    platform::Keychain &keychain;
    platform::SigningKeys &signingKeys;
    platform::BackgroundTasks &background;
    const platform::NumberFormatter &formatter;
    const platform::FileSystem &files;
    Endpoints endpoints;
};

} // namespace corvane::core
