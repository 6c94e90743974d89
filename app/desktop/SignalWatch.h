// SignalWatch: turns SIGTERM and SIGINT into a signal on the main thread. One at a time in a
// process.
#pragma once

#include <QObject>
#include <QSocketNotifier>
#include <optional>

#include "platform/Descriptor.h"

namespace bonkora {

class SignalWatch final : public QObject {
    Q_OBJECT

  public:
    SignalWatch();
    // From then on both signals are ignored: the application is ending already.
    ~SignalWatch() override;

  signals:
    void terminationRequested();

  private:
    std::optional<platform::Pipe> pipe;
    std::unique_ptr<QSocketNotifier> notifier;
};

}  // namespace bonkora
