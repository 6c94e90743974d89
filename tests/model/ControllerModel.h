// ControllerModel: the controller's states retold, without any of its code: a list of timed steps,
// plain variables, and a table of the detector lines that the test uses with what each does. It
// writes a diary of everything an outsider can see, in order: each announcement with the values
// that stood then, each console line, each launch, each request to end.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <vector>

namespace bonkora::test {

// What an observer of the controller can read.
struct Snapshot {
    bool isRunning = false;
    std::string mode = "pain";
    std::int64_t slapCount = 0;
    double lastAmplitude = 0.0;
    std::string status = "Ready";
    bool volumeScaling = true;
    bool fastMode = false;
    std::int64_t cooldownMs = 750;
    double minAmplitude = 0.05;
    std::string folder;

    std::string text() const;
};

// A detector line and its effect.
struct KnownLine {
    enum class Kind { slap, status, print, nothing };
    std::string text;
    Kind kind = Kind::nothing;
    bool hasAmplitude = false;
    double amplitude = 0.0;
    std::string status{};   // for Kind::status
    std::string console{};  // what the console shows; of a slap event, the amplitude's text
    bool plain = false;     // a slap told by a line that is no event
};
const std::vector<KnownLine>& knownLines();

class ControllerModel {
  public:
    explicit ControllerModel(std::vector<std::string>& theDiary) : diary(theDiary) {}

    Snapshot now;
    bool detectorIsThere = true;
    // Of the next launch; empty when it succeeds.
    std::string nextFailure;
    bool scriptExists = false;

    void start();
    void stop();
    void restart();
    void switchMode(const std::string& mode);
    template <typename T>
    void assign(T Snapshot::*property, T value) {
        announce();
        now.*property = value;
    }
    void destroy() { alive = false; }

    // A runner, any one, prints or ends.
    void printed(const std::string& chunk);
    void ended(int status);
    // Milliseconds.
    void advance(int duration);

    int launches() const { return launchCount; }

  private:
    struct Step {
        int due;
        std::function<void()> run;
    };

    void announce();
    void later(int delay, std::function<void()> run);
    void receive(const std::string& chunk);
    void line(const std::string& text);
    std::vector<std::string> arguments() const;

    std::vector<std::string>& diary;
    bool alive = true;
    int time = 0;
    std::vector<Step> steps;  // in the order of submission
    std::string unfinished;
    int launchCount = 0;
    int held = -1;  // the runner the controller holds
};

}  // namespace bonkora::test
