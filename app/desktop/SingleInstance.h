// SingleInstance: one application for a user and session. The first holds a name on the session
// bus, or a lock file where there is no bus; a later one asks the first to open its panel, and
// ends. One implementation for each system.
#pragma once

#include <QObject>
#include <memory>

#include "platform/Descriptor.h"

namespace bonkora {

// A lock for the user and display, which ends with the process that holds it. It is on a file in a
// folder that nobody else can write to: the one for runtime files, or else one of our own beside
// the user's other caches.
class InstanceLock {
  public:
    // False where another process holds it. Where no such folder or file is to be had, true: that
    // costs the lock, never the start.
    bool take();

  private:
    platform::UniqueDescriptor file;
};

class SingleInstance final : public QObject {
    Q_OBJECT

  public:
    SingleInstance();
    ~SingleInstance() override;

    bool isFirst() const { return first; }
    // Asks the first one to open its panel. False where it could not be asked.
    static bool activateFirst();

  signals:
    // A later one has asked.
    void activated();

  private:
    struct Hold;

    std::unique_ptr<Hold> hold;
    bool first;
};

}  // namespace bonkora
