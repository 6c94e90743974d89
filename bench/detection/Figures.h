// Figures: what a detector made of signals whose knocks are known. Values; one thread.
#pragma once

#include <vector>

#include "bench/detection/Knocks.h"
#include "detector/detection/KnockDetector.h"

namespace bonkora::bench {

struct Figures {
    int expected = 0;  // knocks at twice the threshold and more
    int found = 0;     // of these
    int weak = 0;      // knocks between the threshold and twice of it
    int weakFound = 0;
    int falseAlarms = 0;
    double seconds = 0.0;
    std::vector<double> forces;      // of the found ones
    std::vector<double> amplitudes;  // as reported
    std::vector<double> delays;      // s of signal from impact to decision

    void add(const Figures& other);
};

// A report within 50 ms of an impact belongs to it.
Figures compare(const std::vector<Impact>& impacts, const std::vector<detector::Knock>& knocks,
                const Segment& segment, double threshold);

// Spearman's; ties share their rank. Nothing to correlate gives 0.
double rankCorrelation(const std::vector<double>& a, const std::vector<double>& b);

// The value below which `part` of the values lie; 0 of none.
double quantile(std::vector<double> values, double part);

}  // namespace bonkora::bench
