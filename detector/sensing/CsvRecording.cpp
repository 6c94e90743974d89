#include <algorithm>
#include <array>
#include <cmath>
#include <optional>
#include <string>
#include <vector>

#include "detector/Number.h"
#include "detector/sensing/Recording.h"
#include "platform/Text.h"

namespace bonkora::detector {

namespace {

struct Row {
    double time = 0.0;  // seconds
    Frame frame{};      // g
};

std::optional<Row> parseRow(std::string_view line) {
    std::array<double, 4> values{};
    for (std::size_t column = 0; column < values.size(); ++column) {
        const auto end = column + 1 < values.size() ? line.find(',') : line.size();
        if (end == std::string_view::npos) {
            return std::nullopt;
        }
        const auto value = parseNumber<double>(platform::trimmed(line.substr(0, end)));
        // No accelerometer measures more than some thousand g.
        if (!value || (column > 0 && std::abs(*value) > 1e6)) {
            return std::nullopt;
        }
        values.at(column) = *value;
        line.remove_prefix(std::min(line.size(), end + 1));
    }
    return Row{values[0],
               {static_cast<float>(values[1]), static_cast<float>(values[2]),
                static_cast<float>(values[3])}};
}

double medianStep(const std::vector<Row>& rows) {
    std::vector<double> steps(rows.size() - 1);
    for (std::size_t i = 0; i < steps.size(); ++i) {
        steps[i] = rows[i + 1].time - rows[i].time;
    }
    const auto middle = steps.begin() + static_cast<std::ptrdiff_t>(steps.size() / 2);
    std::nth_element(steps.begin(), middle, steps.end());
    return *middle;
}

// Between two readings the signal is taken as a straight line.
std::vector<Frame> atEvenSteps(const std::vector<Row>& rows, double step) {
    const double duration = rows.back().time - rows.front().time;
    const auto count = static_cast<std::size_t>(duration / step + 0.5) + 1;
    std::vector<Frame> frames(count);
    std::size_t row = 0;
    for (std::size_t i = 0; i < count; ++i) {
        const double time = rows.front().time + static_cast<double>(i) * step;
        while (row + 2 < rows.size() && rows[row + 1].time <= time) {
            ++row;
        }
        const Row& before = rows[row];
        const Row& after = rows[row + 1];
        const auto part = static_cast<float>(
            std::clamp((time - before.time) / (after.time - before.time), 0.0, 1.0));
        for (std::size_t axis = 0; axis < 3; ++axis) {
            frames[i][axis] = before.frame[axis] + part * (after.frame[axis] - before.frame[axis]);
        }
    }
    return frames;
}

}  // namespace

platform::Result<Recording> parseCsv(std::string_view text) {
    std::vector<Row> rows;
    for (int number = 1; !text.empty(); ++number) {
        auto line = text.substr(0, text.find('\n'));
        text.remove_prefix(std::min(text.size(), line.size() + 1));
        if (!platform::isValidUtf8(line)) {
            return platform::Failed{"it is neither WAV nor CSV"};
        }
        line = platform::trimmed(line);
        if (line.empty() || line.front() == '#') {
            continue;
        }
        const auto row = parseRow(line);
        const std::string where = "line " + platform::decimal(number);
        if (!row && number > 1) {
            return platform::Failed{where + " is not: time, x, y, z"};
        }
        if (row && !rows.empty() && row->time <= rows.back().time) {
            return platform::Failed{where + ": the time does not rise"};
        }
        if (row) {
            rows.push_back(*row);
        }
    }
    if (rows.size() < 2) {
        return platform::Failed{"it holds fewer than two readings"};
    }
    const double step = medianStep(rows);
    if (!(step >= 1e-5 && step <= 0.1)) {
        return platform::Failed{"it has fewer than 10 or more than 100000 readings a second"};
    }
    // A file of a few lines must not stand for years of signal.
    if (rows.back().time - rows.front().time > 100.0 * step * static_cast<double>(rows.size())) {
        return platform::Failed{"most of its time is missing"};
    }
    return Recording{SensorKind::accelerometer, 1.0 / step, atEvenSteps(rows, step)};
}

}  // namespace bonkora::detector
