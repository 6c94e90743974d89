// The detection benchmark: labelled signals through the detector, and what it made of them.
//   detection-bench [--tuning] [--minutes N] [--microphone | --accelerometer]
// The figures that count come without --tuning: other seeds and other recordings than those with
// which the detection's figures were found.
#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <functional>
#include <iostream>
#include <string>
#include <utility>
#include <vector>

#include "bench/detection/Backgrounds.h"
#include "bench/detection/Figures.h"
#include "bench/detection/Knocks.h"
#include "detector/Number.h"
#include "detector/sensing/Recording.h"
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

struct RecordedKnock {
    std::string instrument;
    double degree = 0.0;  // Softest 1 to Hardest 5
    std::vector<double> sound;
};

std::vector<double> readSound(const std::string& path) {
    const auto recording = detector::readRecording(path);
    if (!recording) {
        return {};
    }
    std::vector<double> sound;
    for (const auto& frame : recording->frames) {
        sound.push_back(static_cast<double>(frame[0]));
    }
    return resampled(sound, recording->rate, soundRate);
}

// Debian's hydrogen-data. Tuning and figures share no instrument.
std::vector<RecordedKnock> readDrums(bool isTuning) {
    const std::string kit = "/usr/share/hydrogen/data/drumkits/GMRockKit/";
    const std::vector<std::string> instruments =
        isTuning ? std::vector<std::string>{"Snare", "Tom1", "SideStick"}
                 : std::vector<std::string>{"Kick", "Tom2", "TomFloor", "SnareRimshot"};
    const std::vector<std::string> degrees{"Softest", "Soft", "Med", "Hard", "Hardest"};
    std::vector<RecordedKnock> knocks;
    for (const auto& instrument : instruments) {
        for (std::size_t degree = 0; degree < degrees.size(); ++degree) {
            auto sound = readSound(kit + instrument + "-" + degrees[degree] + ".wav");
            if (!sound.empty()) {
                knocks.push_back({instrument, static_cast<double>(degree + 1), std::move(sound)});
            }
        }
    }
    return knocks;
}

// Debian's asterisk-core-sounds-en-wav: every other file for tuning, the rest for the figures.
std::vector<std::vector<double>> readSpeech(bool isTuning) {
    std::vector<std::string> paths;
    std::error_code error;
    for (std::filesystem::recursive_directory_iterator entry{"/usr/share/asterisk/sounds", error},
         end;
         !error && entry != end; entry.increment(error)) {
        if (entry->path().extension() == ".wav" &&
            entry->path().string().find("tone") == std::string::npos) {
            paths.push_back(entry->path());
        }
    }
    std::sort(paths.begin(), paths.end());
    std::vector<std::vector<double>> sounds;
    for (std::size_t i = isTuning ? 0 : 1; i < paths.size(); i += 2) {
        if (auto sound = readSound(paths[i]); !sound.empty()) {
            sounds.push_back(std::move(sound));
        }
    }
    return sounds;
}

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

AddKnock drumming(const std::vector<RecordedKnock>& drums) {
    return [&drums](Segment& segment, double time, Random& random) {
        const auto& drum = drums[random.below(drums.size())];
        return addRecordedKnock(segment, time, drum.sound, random.even(0.9, 1.0), drum.degree);
    };
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
    auto backgrounds = microphoneBackgrounds();
    if (auto speech = readSpeech(choice.isTuning); !speech.empty()) {
        backgrounds.push_back(recorded("recorded speech", std::move(speech)));
    } else {
        std::printf("(no asterisk-core-sounds-en-wav installed: no recorded speech)\n");
    }
    auto withVoice = backgrounds;
    withVoice.push_back(recorded("its own voice", ownVoice()));
    printHeading("Microphone, 48000 Hz, nobody knocks");
    measureAll(SensorKind::microphone, soundRate, withVoice, nullptr, choice, seed);
    const auto drummed = bigLoudspeakers();
    print(drummed.name, measure(SensorKind::microphone, soundRate, drummed, nullptr, choice, seed));
    printHeading("Microphone, 48000 Hz, modelled knocks");
    measureAll(SensorKind::microphone, soundRate, backgrounds, modelled, choice, seed + 100);

    const auto drums = readDrums(choice.isTuning);
    if (drums.empty()) {
        std::printf("(no hydrogen-data installed: no recorded drums)\n");
        return;
    }
    printHeading("Microphone, 48000 Hz, recorded drums as knocks");
    measureAll(SensorKind::microphone, soundRate, backgrounds, drumming(drums), choice, seed + 200);
    // Drums differ in loudness, so each is compared with itself alone.
    printHeading("Each drum in a quiet room, rank: of its degrees, Softest to Hardest");
    for (std::size_t i = 0; i + 5 <= drums.size(); i += 5) {
        const auto first = drums.begin() + static_cast<std::ptrdiff_t>(i);
        const std::vector<RecordedKnock> one(first, first + 5);
        print(one.front().instrument,
              measure(SensorKind::microphone, soundRate, backgrounds.front(), drumming(one), choice,
                      seed + 250));
    }
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
