#include "tests/model/ControllerModel.h"

#include <cstdio>

namespace bonkora::test {
namespace {

constexpr const char* scriptStart = "do shell script \"";
constexpr const char* scriptEnd = "\" with administrator privileges";

}  // namespace

std::string Snapshot::text() const {
    return std::to_string(isRunning) + '|' + mode + '|' + std::to_string(slapCount) + '|' +
           std::to_string(lastAmplitude) + '|' + status + '|' + std::to_string(volumeScaling) +
           std::to_string(fastMode) + '|' + std::to_string(cooldownMs) + '|' +
           std::to_string(minAmplitude) + '|' + folder;
}

const std::vector<KnownLine>& knownLines() {
    using Kind = KnownLine::Kind;
    static const std::vector<KnownLine> lines{
        {R"({"type":"slap","amplitude":0.5})", Kind::slap, true, 0.5, "", "0.5"},
        {R"({"amplitude":3,"type":"hit"})", Kind::slap, true, 3, "", "3.0"},
        {R"({"type":"slap","amplitude":"hard"})", Kind::slap},
        {R"({"type":"hit"})", Kind::slap},
        {R"({"type":"ready"})", Kind::status, false, 0, "Listening for slaps...", "✅ Spank ready"},
        {R"({"type":"error","message":"no sensor"})", Kind::status, false, 0, "Error: no sensor",
         "❌ Spank error: no sensor"},
        {R"({"type":"error","message":4})"},
        {R"({"type":7})"},
        {R"({"kind":"slap"})"},
        {R"({"type":"Slap"})", Kind::print, false, 0, "", R"(📋 spank event: {"type":"Slap"})"},
        {R"([{"type":"ready"}])", Kind::print, false, 0, "", R"(📋 spank: [{"type":"ready"}])"},
        {"Listening...", Kind::print, false, 0, "", "📋 spank: Listening..."},
        {"Playing sound 3", Kind::slap, false, 0, "", "📋 spank: Playing sound 3", true},
        {"  a white lie\t\r", Kind::slap, false, 0, "", "📋 spank: a white lie", true},
        {"{\"type\":\"slap\"", Kind::slap, false, 0, "", "📋 spank: {\"type\":\"slap\"", true},
        {""},
        {" \t\r"},
    };
    return lines;
}

void ControllerModel::announce() {
    diary.push_back("announce " + now.text());
}

void ControllerModel::later(int delay, std::function<void()> run) {
    steps.push_back({time + delay, std::move(run)});
}

void ControllerModel::advance(int duration) {
    const int end = time + duration;
    for (;;) {
        // The earliest, and of those the one submitted first.
        std::size_t next = steps.size();
        for (std::size_t i = 0; i < steps.size(); ++i) {
            if (steps[i].due <= end && (next == steps.size() || steps[i].due < steps[next].due)) {
                next = i;
            }
        }
        if (next == steps.size()) {
            break;
        }
        const Step step = steps[next];
        steps.erase(steps.begin() + static_cast<std::ptrdiff_t>(next));
        time = step.due;
        step.run();
    }
    time = end;
}

std::vector<std::string> ControllerModel::arguments() const {
    char amplitude[32];
    std::snprintf(amplitude, sizeof amplitude, "%.3f", now.minAmplitude);
    std::vector<std::string> words{"--stdio", "--cooldown", std::to_string(now.cooldownMs),
                                   "--min-amplitude", amplitude};
    if (now.mode == "sexy" || now.mode == "halo") {
        words.push_back("--" + now.mode);
    }
    if (now.mode == "custom" && !now.folder.empty()) {
        words.emplace_back("--custom");
        words.push_back(now.folder);
    }
    if (now.volumeScaling) {
        words.emplace_back("--volume-scaling");
    }
    if (now.fastMode) {
        words.emplace_back("--fast");
    }
    return words;
}

void ControllerModel::start() {
    if (now.isRunning) {
        return;
    }
    if (!detectorIsThere) {
        assign(&Snapshot::status, std::string("spank binary not found!"));
        diary.emplace_back("print ❌ Could not find spank binary");
        return;
    }
    diary.emplace_back("print 🔧 Found spank at: DETECTOR");
    assign(&Snapshot::status, std::string("Requesting admin access..."));
    std::string script = scriptStart + std::string("\\\"DETECTOR\\\"");
    for (const std::string& word : arguments()) {
        script += " \\\"" + word + "\\\"";
    }
    diary.push_back("launch -e " + script + scriptEnd);
    scriptExists = true;
    const int number = launchCount++;
    if (nextFailure.empty()) {
        held = number;
        assign(&Snapshot::isRunning, true);
        assign(&Snapshot::status, std::string("Listening for slaps..."));
        diary.push_back("print ✅ Spank launched with sudo (PID: " + std::to_string(100 + number) +
                        ")");
    } else {
        assign(&Snapshot::status, "Failed to launch: " + nextFailure);
        diary.emplace_back("print ❌ Failed to launch spank");
        nextFailure.clear();
    }
    later(2000, [this] { scriptExists = false; });
}

void ControllerModel::stop() {
    if (!now.isRunning) {
        return;
    }
    later(500, [this] {
        if (alive) {
            if (held >= 0) {
                diary.push_back("terminate " + std::to_string(held));
            }
            held = -1;
            assign(&Snapshot::isRunning, false);
            assign(&Snapshot::status, std::string("Stopped"));
        }
        diary.emplace_back("print ⏹ Spank stopped");
    });
}

void ControllerModel::restart() {
    stop();
    later(1000, [this] {
        if (alive) {
            start();
        }
    });
}

void ControllerModel::switchMode(const std::string& mode) {
    const bool wasRunning = now.isRunning;
    if (wasRunning) {
        stop();
    }
    assign(&Snapshot::mode, mode);
    if (wasRunning) {
        later(1000, [this] {
            if (alive) {
                start();
            }
        });
    }
}

void ControllerModel::ended(int status) {
    later(0, [this, status] {
        if (alive) {
            assign(&Snapshot::isRunning, false);
            assign(&Snapshot::status, status == 0 ? std::string("Stopped")
                                                  : "Error (code: " + std::to_string(status) + ")");
        }
        diary.push_back("print ⏹ Spank process ended with code: " + std::to_string(status));
    });
}

void ControllerModel::printed(const std::string& chunk) {
    if (!chunk.empty()) {
        later(0, [this, chunk] {
            if (alive) {
                receive(chunk);
            }
        });
    }
}

void ControllerModel::receive(const std::string& chunk) {
    for (const char letter : chunk) {
        if (letter == '\n') {
            line(unfinished);
            unfinished.clear();
        } else {
            unfinished += letter;
        }
    }
}

void ControllerModel::line(const std::string& text) {
    for (const KnownLine& known : knownLines()) {
        if (known.text != text) {
            continue;
        }
        using Kind = KnownLine::Kind;
        if (known.kind == Kind::print || known.plain) {
            diary.push_back("print " + known.console);
        }
        if (known.kind == Kind::status) {
            assign(&Snapshot::status, known.status);
            diary.push_back("print " + known.console);
        }
        if (known.kind == Kind::slap) {
            assign(&Snapshot::slapCount, now.slapCount + 1);
            if (known.hasAmplitude) {
                assign(&Snapshot::lastAmplitude, known.amplitude);
            }
            if (!known.plain) {
                const char* const amplitude = now.lastAmplitude == 0.5 ? "0.5"
                                              : now.lastAmplitude == 3 ? "3.0"
                                                                       : "0.0";
                diary.push_back("print 👋 Slap #" + std::to_string(now.slapCount) +
                                " (amplitude: " + amplitude + ")");
            }
        }
        return;
    }
    diary.push_back("the model does not know the line: " + text);
}

}  // namespace bonkora::test
