// A whole system for the controller: virtual time, a runner that obeys the test, an application
// folder of the test's own that holds a detector.
#pragma once

#include <memory>
#include <string>

#include "bridge/SpankWrapper.h"
#include "tests/support/FakeProcess.h"
#include "tests/support/ManualQueue.h"
#include "tests/support/RecordingConsole.h"
#include "tests/support/TemporaryFolder.h"

namespace bonkora::test {

class TestPlatform {
  public:
    TemporaryFolder folder;
    std::shared_ptr<VirtualTime> time = std::make_shared<VirtualTime>();
    std::shared_ptr<ManualMainQueue> mainQueue = std::make_shared<ManualMainQueue>(time);
    std::shared_ptr<RecordingConsole> console = std::make_shared<RecordingConsole>();
    std::shared_ptr<FakeProcesses> processes = std::make_shared<FakeProcesses>();
    std::string executable = folder / "Bonkora.app/Contents/MacOS/bonkora";
    std::string detector = folder.write("Bonkora.app/Contents/Resources/spank", "", true);
    std::string temporaryDirectory = folder.makeFolder("tmp") + '/';

    platform::Platform value() const {
        return {.mainQueue = mainQueue,
                .globalQueue = std::make_shared<ManualGlobalQueue>(time),
                .console = console,
                .bundle = {executable, {executable}},
                .temporaryDirectory = [path = temporaryDirectory] { return path; },
                .runnerPath = [] { return std::string("/usr/bin/osascript"); },
                .makeProcess = [all = processes] { return all->make(); }};
    }

    std::shared_ptr<SpankWrapper> makeController() const { return SpankWrapper::create(value()); }
};

}  // namespace bonkora::test
