#include "detector/program/Listener.h"

#include <poll.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <string_view>
#include <utility>

namespace bonkora::detector {

namespace {

constexpr int finishingStepMs = 20;  // between two looks whether all is heard and read
constexpr int finishingSteps = 250;  // at most 5 s of sound after a recording

}  // namespace

Listener::Listener(Settings theSettings, EventWriter& theWriter, OpenSensor theOpenSensor,
                   Voice* theVoice)
    : settings(std::move(theSettings)),
      writer(theWriter),
      openSensor(std::move(theOpenSensor)),
      voice(theVoice),
      inputIsOpen(settings.obeysInput) {}

int Listener::run() {
    if (wait(0) == Wake::ending) {
        return status;  // told to end before it began
    }
    open();
    while (!isOver) {
        switch (
            wait(static_cast<int>((sensor ? settings.longestSilence : settings.pause).count()))) {
            case Wake::sensor:
                read();
                break;
            case Wake::timeout:
                if (sensor) {
                    missReadings();
                } else {
                    open();
                }
                break;
            case Wake::ending:
                writer.flush();
                return status;
        }
        writer.flush();
        isOver = isOver || writer.readerIsGone();
    }
    letItFinish();
    return status;
}

Listener::Wake Listener::wait(int timeoutMs) {
    for (;;) {
        // poll() skips a negative descriptor.
        const auto room = static_cast<short>(writer.hasPending() ? POLLOUT : 0);
        std::array<pollfd, 4> wakers{{
            {settings.signalDescriptor, POLLIN, 0},
            {settings.outputDescriptor, static_cast<short>(readerGoes | room), 0},
            {inputIsOpen ? settings.inputDescriptor : -1, POLLIN, 0},
            {sensor ? sensor->descriptor() : -1, POLLIN, 0},
        }};
        const int count = ::poll(wakers.data(), wakers.size(), timeoutMs);
        if (count < 0 && errno != EINTR) {
            return Wake::ending;
        }
        if (count == 0) {
            return Wake::timeout;
        }
        const auto& [signals, output, commands, readings] = wakers;
        if (count > 0 && (signals.revents != 0 || readerHasGone(output.revents) ||
                          (commands.revents != 0 && asksToQuit()))) {
            return Wake::ending;
        }
        if (count > 0 && readings.revents != 0) {
            return Wake::sensor;
        }
        if (cannotBePolled(output.revents)) {
            settings.outputDescriptor = -1;
        }
        writer.flush();
    }
}

bool Listener::asksToQuit() {
    std::array<char, 256> chunk{};
    const auto count = ::read(settings.inputDescriptor, chunk.data(), chunk.size());
    if (count <= 0) {
        inputIsOpen = false;  // the end of the input does not end the program
        return false;
    }
    for (const char character : std::string_view{chunk.data(), static_cast<std::size_t>(count)}) {
        if (character == '\n') {
            if (input == "quit" || input == "quit\r") {
                return true;
            }
            input.clear();
        } else if (input.size() < chunk.size()) {
            input += character;
        }
    }
    return false;
}

void Listener::open() {
    auto opened = openSensor();
    if (!opened) {
        complain();
        lose("no sensor: " + opened.error());
        // A sound server that went may be why. Newer SDLs find the next one only once nothing of
        // them is in use, and an answer's device would go on playing to the one that has gone.
        if (voice != nullptr && !voice->isSounding()) {
            voice->letGo();
        }
        return;
    }
    sensor = *std::move(opened);
    const auto& about = sensor->description();
    detector = std::make_unique<KnockDetector>(about.kind, about.rate, settings.sensitivity);
    frameCount = 0;
    announce();
    complain();
}

void Listener::announce() {
    const auto& about = sensor->description();
    isSilent = false;
    lastReason.clear();
    writer.ready(nameOf(about.kind), about.name);
}

// A microphone whose source is suspended, or whose sound server has stopped, is kept: closing it
// would wait for the server, and its readings come back by themselves. An accelerometer is opened
// anew.
void Listener::missReadings() {
    const auto kind = sensor->description().kind;
    const auto reason = "the " + std::string{nameOf(kind)} + " has stopped giving readings";
    if (kind == SensorKind::accelerometer || settings.once) {
        lose(reason);
    } else if (!std::exchange(isSilent, true)) {
        writer.error(reason);
    }
}

void Listener::read() {
    frames.clear();
    knocks.clear();
    const auto state = sensor->read(frames);
    if (isSilent && !frames.empty()) {
        announce();
    }
    if (voice != nullptr && !sensor->description().isRecorded) {
        detector->play(voice->takePlayed(), frames.size());
    }
    detector->process(frames, knocks);
    for (const Knock& knock : knocks) {
        report(knock);
    }
    frameCount += frames.size();
    complain();
    if (state.kind == SensorState::Kind::lost) {
        lose(state.reason);
    } else if (state.kind == SensorState::Kind::ended) {
        sensor.reset();
        isOver = true;
    }
}

void Listener::report(const Knock& knock) {
    writer.knock(knock.amplitude);
    if (voice != nullptr) {
        const auto& about = sensor->description();
        voice->answer(knock.amplitude, about.kind,
                      timeBefore + static_cast<double>(knock.frame) / about.rate);
    }
}

void Listener::complain() {
    if (voice != nullptr) {
        if (auto complaint = voice->takeComplaint()) {
            settings.complaints.push_back(std::move(*complaint));
        }
    }
    for (const auto& complaint : settings.complaints) {
        writer.error(complaint);
    }
    settings.complaints.clear();
}

// After the end of a recording: waits until the last answer has been heard and a slow reader has
// taken every line, unless the program is told to end.
void Listener::letItFinish() {
    int step = 0;
    const auto isSounding = [&] {
        return voice != nullptr && voice->isSounding() && step < finishingSteps;
    };
    for (; isSounding() || writer.hasPending(); ++step) {
        if (wait(finishingStepMs) == Wake::ending) {
            return;
        }
    }
}

void Listener::lose(const std::string& reason) {
    if (reason != lastReason) {
        writer.error(reason);
        lastReason = reason;
    }
    if (sensor) {
        timeBefore += static_cast<double>(frameCount) / sensor->description().rate;
        sensor.reset();  // after the report: closing may have to wait for a sound server
    }
    if (settings.once) {
        isOver = true;
        status = 1;
    }
}

}  // namespace bonkora::detector
