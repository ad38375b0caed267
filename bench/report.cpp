#include "bench/report.h"

#include <cstdio>

namespace bench {

namespace {

std::string number(std::optional<double> value, const char* format) {
    if (!value) return "null";
    char text[40];
    std::snprintf(text, sizeof text, format, *value);
    return text;
}

std::string cell(std::optional<double> value, const char* format) {
    return value ? number(value, format) : "-";
}

std::string jsonLine(const Line& line) {
    const bool isTime = line.unit == Unit::microseconds;
    const std::optional<double> none, ours(line.ours);
    std::string text = "{\"name\":\"" + line.name + "\",\"ours_us\":" + number(isTime ? ours : none, "%.1f") +
                       ",\"floor_us\":" + number(isTime ? line.floor : none, "%.1f") +
                       ",\"ratio\":" + number(line.ratio(), "%.3f") +
                       ",\"growth\":" + number(line.growth, "%.2f");
    if (!isTime) {
        text += ",\"ours_bytes\":" + number(ours, "%.0f") + ",\"floor_bytes\":" + number(line.floor, "%.0f");
    }
    return text + "}";
}

}  // namespace

std::optional<double> Line::ratio() const {
    if (!floor || *floor == 0) return {};  // none was measured
    return ours / *floor;
}

bool Line::isReached() const {
    if (floor && !ratio()) return true;
    return ratio().value_or(ours) <= target && growth.value_or(0) <= largestGrowth;
}

void Report::add(const Line& line) {
    if (lines_.empty()) {
        std::printf("%-26s %14s %14s %8s %8s %10s\n", "", "ours", "floor", "ratio", "growth", "target");
    }
    const bool isTime = line.unit == Unit::microseconds;
    const char* format = isTime ? "%.0f us" : "%.0f B";
    std::printf("%-26s %14s %14s %8s %8s %10s%s\n", line.name.c_str(), cell(line.ours, format).c_str(),
                cell(line.floor, format).c_str(), cell(line.ratio(), "%.2f").c_str(),
                cell(line.growth, "%.2f").c_str(), cell(line.target, line.floor ? "%.2f" : "%.0f").c_str(),
                line.isReached() ? "" : "   not reached");
    std::fflush(stdout);
    lines_.push_back(line);
}

std::string Report::json() const {
    std::string text = "[\n";
    for (size_t i = 0; i < lines_.size(); ++i) {
        text += jsonLine(lines_[i]) + (i + 1 < lines_.size() ? ",\n" : "\n");
    }
    return text + "]\n";
}

}  // namespace bench
