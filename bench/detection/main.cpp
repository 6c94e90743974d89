// The detection benchmark: labelled signals through the detector, and what it made of them.
//   detection-bench [--tuning] [--minutes N] [--microphone | --accelerometer]
// --tuning: other seeds, to look at while the accelerometer's figures are being changed. Recordings
// are scripts/train-ears judge's.
#include <algorithm>
#include <cstdio>
#include <functional>
#include <iostream>
#include <string>
#include <utility>
#include <vector>

#include "bench/detection/Backgrounds.h"
#include "bench/detection/Figures.h"
#include "bench/detection/Knocks.h"
#include "detector/Number.h"
#include "detector/synthesis/Sets.h"

namespace bonkora::bench {

namespace {

using detector::SensorKind;

constexpr double threshold = 0.05;  // the application's default, and the detector's
constexpr double segmentSeconds = 60.0;
constexpr double soundRate = 48000.0;

struct Choice {
    bool isTuning = false;
    bool microphone = true;
    bool accelerometer = true;
    int minutes = 20;  // for each background
};

std::vector<std::vector<double>> ownVoice() {
    std::vector<std::vector<double>> sounds;
    namespace synthesis = detector::synthesis;
    for (const auto& set : {synthesis::pain(), synthesis::sexy(), synthesis::halo()}) {
        for (const auto& sound : set) {
            sounds.push_back(resampled(sound, synthesis::sampleRate, soundRate));
        }
    }
    return sounds;
}

using AddKnock = std::function<Impact(Segment&, double time, Random&)>;

// One background for a while, with a knock every second or two where there are any.
Figures measure(SensorKind kind, double rate, const Background& background,
                const AddKnock& addKnockAt, const Choice& choice, unsigned seed) {
    Figures figures;
    for (int minute = 0; minute < choice.minutes; ++minute) {
        Random random{seed + static_cast<unsigned>(minute) * 7919U};
        Segment segment{kind, rate, segmentSeconds};
        background.add(segment, random);
        std::vector<Impact> impacts;
        for (double t = 1.5; addKnockAt && t < segmentSeconds - 1.0; t += random.even(1.0, 3.0)) {
            impacts.push_back(addKnockAt(segment, t, random));
        }
        segment.clip();
        detector::KnockDetector detector{
            kind, rate, {threshold, std::chrono::milliseconds{750}, false}};
        std::vector<detector::Knock> knocks;
        detector.process(segment.frames, knocks);
        figures.add(compare(impacts, knocks, segment, threshold));
    }
    return figures;
}

double percent(int part, int whole) {
    return whole > 0 ? 100.0 * part / whole : 0.0;
}

void printHeading(const std::string& title) {
    std::printf("\n%s\n%-30s %7s %8s %8s %9s %7s %7s %7s\n", title.c_str(), "", "knocks", "recall",
                "weak", "false/h", "rank", "median", "longest");
}

void print(const std::string& name, const Figures& figures) {
    std::printf("%-30s", name.c_str());
    if (figures.expected > 0) {
        std::printf(" %7d %7.2f%% %7.1f%%", figures.expected,
                    percent(figures.found, figures.expected),
                    percent(figures.weakFound, figures.weak));
    } else {
        std::printf(" %7s %8s %8s", "-", "-", "-");
    }
    std::printf(" %9.2f", figures.falseAlarms * 3600.0 / figures.seconds);
    if (figures.expected > 0) {
        std::printf(" %7.3f %4.1f ms %4.1f ms", rankCorrelation(figures.forces, figures.amplitudes),
                    1e3 * quantile(figures.delays, 0.5), 1e3 * quantile(figures.delays, 1.0));
    }
    std::printf("\n");
    std::fflush(stdout);
}

void measureAll(SensorKind kind, double rate, const std::vector<Background>& backgrounds,
                const AddKnock& addKnockAt, const Choice& choice, unsigned seed) {
    Figures all;
    for (const Background& background : backgrounds) {
        const auto figures = measure(kind, rate, background, addKnockAt, choice, ++seed);
        print(background.name, figures);
        all.add(figures);
    }
    print("all together", all);
}

// The model's blows, from too soft to count to far over full scale.
Impact modelled(Segment& segment, double time, Random& random) {
    return addKnock(segment, time, random.scaled(0.03, 2.0), random);
}

void measureMicrophone(const Choice& choice, unsigned seed) {
    const auto backgrounds = microphoneBackgrounds();
    auto withVoice = backgrounds;
    withVoice.push_back(recorded("its own voice", ownVoice()));
    printHeading("Microphone, 48000 Hz, nobody knocks");
    measureAll(SensorKind::microphone, soundRate, withVoice, nullptr, choice, seed);
    const auto drummed = bigLoudspeakers();
    print(drummed.name, measure(SensorKind::microphone, soundRate, drummed, nullptr, choice, seed));
    printHeading("Microphone, 48000 Hz, modelled knocks");
    measureAll(SensorKind::microphone, soundRate, backgrounds, modelled, choice, seed + 100);
}

void measureAccelerometer(const Choice& choice, unsigned seed) {
    for (const double rate : {200.0, 400.0, 1600.0}) {
        const auto name = "Accelerometer, " + std::to_string(static_cast<int>(rate)) + " Hz, ";
        printHeading(name + "nobody knocks");
        measureAll(SensorKind::accelerometer, rate, accelerometerBackgrounds(), nullptr, choice,
                   seed + 300);
        printHeading(name + "modelled knocks");
        measureAll(SensorKind::accelerometer, rate, accelerometerBackgrounds(), modelled, choice,
                   seed + 400);
    }
}

int run(const Choice& choice) {
    const unsigned seed = choice.isTuning ? 1000U : 500000U;
    if (choice.microphone) {
        measureMicrophone(choice, seed);
    }
    if (choice.accelerometer) {
        measureAccelerometer(choice, seed);
    }
    return 0;
}

}  // namespace

}  // namespace bonkora::bench

int main(int argumentCount, char** arguments) {
    bonkora::bench::Choice choice;
    for (int i = 1; i < argumentCount; ++i) {
        const std::string argument = arguments[i];
        if (argument == "--tuning") {
            choice.isTuning = true;
        } else if (argument == "--microphone") {
            choice.accelerometer = false;
        } else if (argument == "--accelerometer") {
            choice.microphone = false;
        } else if (argument == "--minutes" && i + 1 < argumentCount) {
            choice.minutes = bonkora::detector::parseNumber<int>(arguments[++i]).value_or(0);
        } else {
            choice.minutes = 0;
        }
    }
    if (choice.minutes < 1) {
        std::cerr
            << "Usage: detection-bench [--tuning] [--minutes N] [--microphone | --accelerometer]\n";
        return 2;
    }
    return bonkora::bench::run(choice);
}
