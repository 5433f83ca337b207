#pragma once

#include "film/optics/MaterialPoint.h"

#include <optional>
#include <string>
#include <vector>

namespace lumisort::film {

/// One axis with a tick at every multiple of `step`.
struct Axis {
    std::string label;
    double low = 0;
    double high = 1;
    double step = 1;
    int decimals = 0;
    std::string fill = {}; ///< a paint for the strip along an x axis, none when empty
};

/// One line of a chart, with dots where it was measured. Clipped to the axes.
struct ChartLine {
    std::string name;
    std::string colour; ///< as in CSS
    std::vector<MaterialPoint> points;
    std::vector<MaterialPoint> dots = {};
    bool dashed = false;
};

/// A labelled vertical line at an x.
struct ChartMark {
    double x = 0;
    std::string label;
};

struct Chart {
    std::string title;
    Axis x = {};
    Axis y = {};
    std::vector<ChartLine> lines = {};
    std::optional<ChartMark> mark = {};
    std::string note = {}; ///< one more entry behind the legend, in grey
};

/// Appends a chart as SVG, title, legend and labels included, in a box of the given size in pixels.
void drawChart(std::string& svg, const Chart& chart, double left, double top, double width, double height);

} // namespace lumisort::film
