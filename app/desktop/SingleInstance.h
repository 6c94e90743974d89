// SingleInstance: one application for a user and session. The first holds a name on the session
// bus, or a lock file where there is no bus; a later one asks the first to open its panel, and
// ends. One implementation for each system. Main thread.
#pragma once

#include <QLockFile>
#include <QObject>
#include <memory>

namespace bonkora {

// A lock file of the user and display; one that a dead process left does not count.
class InstanceLock {
  public:
    InstanceLock();

    // False where another process holds it. A folder that takes no lock file stops nobody.
    bool take();

  private:
    QLockFile file;
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
