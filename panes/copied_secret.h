#pragma once

#include "platform/clipboard.h"
#include "platform/main_queue.h"

#include <QObject>
#include <QStringView>

#include <chrono>
#include <memory>

namespace corvane::core {
class WalletModel;
} // namespace corvane::core

namespace corvane::panes {

/// The key that the user has copied. It stays on the clipboard for a limited time, and no longer
/// than the wallet's key and this object exist, unless something else was copied in the meantime.
/// Main thread.
class CopiedSecret : public QObject
{
    Q_OBJECT

public:
    static constexpr std::chrono::seconds keptFor{60};

    /// The clipboard and the queue must outlive this object.
    CopiedSecret(core::WalletModel &wallet, platform::Clipboard &clipboard,
                 platform::MainQueue &queue);
    ~CopiedSecret() override;

    /// Copies `text`; its time starts now.
    void copy(QStringView text);

private:
    void clear();

    platform::Clipboard &m_clipboard;
    platform::MainQueue &m_queue;
    std::shared_ptr<platform::WorkItem> m_clearing;
};

} // namespace corvane::panes
