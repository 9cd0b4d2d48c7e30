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

/// The services that the wallet uses. All must outlive the model.
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
