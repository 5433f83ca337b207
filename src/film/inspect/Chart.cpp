#include "film/inspect/Chart.h"

#include <array>
#include <charconv>
#include <cmath>

namespace lumisort::film {
namespace {

constexpr double marginLeft = 62;
constexpr double marginRight = 14;
constexpr double marginTop = 56;
constexpr double marginBottom = 50;

std::string digits(double number, int decimals) {
    std::array<char, 64> text;
    const auto end =
        std::to_chars(text.data(), text.data() + text.size(), number, std::chars_format::fixed, decimals);
    std::string result(text.data(), end.ptr);
    // A typographic minus lines up with the figures.
    if (result.starts_with('-')) result.replace(0, 1, "−");
    return result;
}

std::string px(double number) {
    std::array<char, 64> text;
    const auto end =
        std::to_chars(text.data(), text.data() + text.size(), number, std::chars_format::fixed, 1);
    return {text.data(), end.ptr};
}

std::string textAt(double x, double y, std::string_view style, std::string_view content) {
    return "<text x=\"" + px(x) + "\" y=\"" + px(y) + "\" class=\"" + std::string(style) + "\">" +
           std::string(content) + "</text>\n";
}

std::string lineBetween(double x0, double y0, double x1, double y1, std::string_view style) {
    return "<line x1=\"" + px(x0) + "\" y1=\"" + px(y0) + "\" x2=\"" + px(x1) + "\" y2=\"" + px(y1) +
           "\" class=\"" + std::string(style) + "\"/>\n";
}

/// The box in which the lines are drawn, with the mapping from chart coordinates to pixels.
struct Frame {
    const Chart& chart;
    double left, top, right, bottom;

    double x(double value) const {
        return left + (value - chart.x.low) / (chart.x.high - chart.x.low) * (right - left);
    }
    double y(double value) const {
        return bottom - (value - chart.y.low) / (chart.y.high - chart.y.low) * (bottom - top);
    }
};

template <class Draw>
void forEachTick(const Axis& axis, const Draw& draw) {
    const double first = std::ceil(axis.low / axis.step - 1e-9);
    const double last = std::floor(axis.high / axis.step + 1e-9);
    // Adding zero turns the -0 that ceil returns for small negative numbers into 0.
    for (double k = first; k <= last; ++k) draw(k * axis.step + 0.0);
}

void drawAxes(std::string& svg, const Frame& f) {
    forEachTick(f.chart.x, [&](double value) {
        svg += lineBetween(f.x(value), f.top, f.x(value), f.bottom, "grid");
        svg += textAt(f.x(value), f.bottom + 20, "tick middle", digits(value, f.chart.x.decimals));
    });
    forEachTick(f.chart.y, [&](double value) {
        svg += lineBetween(f.left, f.y(value), f.right, f.y(value), "grid");
        svg += textAt(f.left - 8, f.y(value) + 4, "tick end", digits(value, f.chart.y.decimals));
    });
    if (!f.chart.x.fill.empty()) {
        svg += "<rect x=\"" + px(f.left) + "\" y=\"" + px(f.bottom) + "\" width=\"" + px(f.right - f.left) +
               "\" height=\"5\" fill=\"" + f.chart.x.fill + "\"/>\n";
    }
    svg += "<rect x=\"" + px(f.left) + "\" y=\"" + px(f.top) + "\" width=\"" + px(f.right - f.left) +
           "\" height=\"" + px(f.bottom - f.top) + "\" class=\"frame\"/>\n";
    svg += textAt((f.left + f.right) / 2, f.bottom + 41, "label middle", f.chart.x.label);
    const std::string x = px(f.left - 46);
    const std::string y = px((f.top + f.bottom) / 2);
    svg += "<text x=\"" + x + "\" y=\"" + y + "\" class=\"label middle\" transform=\"rotate(-90 " + x + " " +
           y + ")\">" + f.chart.y.label + "</text>\n";
}

std::string stroke(const ChartLine& line) {
    return " stroke=\"" + line.colour + "\"" + (line.dashed ? " stroke-dasharray=\"6 4\"" : "");
}

void drawLine(std::string& svg, const Frame& f, const ChartLine& line) {
    svg += "<polyline class=\"line\"" + stroke(line) + " points=\"";
    for (const auto& [x, y] : line.points) svg += px(f.x(x)) + "," + px(f.y(y)) + " ";
    svg += "\"/>\n";
    for (const auto& [x, y] : line.dots) {
        svg += "<circle cx=\"" + px(f.x(x)) + "\" cy=\"" + px(f.y(y)) + "\" r=\"2.6\" stroke=\"" +
               line.colour + "\" class=\"dot\"/>\n";
    }
}

// One row above the frame, in columns for up to four: a stroke and a name for each line.
void drawLegend(std::string& svg, const Frame& f) {
    constexpr double strokeLength = 18;
    const double y = f.top - 12;
    double x = f.left;
    for (const ChartLine& line : f.chart.lines) {
        svg += "<line x1=\"" + px(x) + "\" y1=\"" + px(y - 4) + "\" x2=\"" + px(x + strokeLength) +
               "\" y2=\"" + px(y - 4) + "\" class=\"line\"" + stroke(line) + "/>\n";
        svg += textAt(x + strokeLength + 6, y, "legend", line.name);
        x += 105;
    }
    if (!f.chart.note.empty()) svg += textAt(x, y, "legend note", f.chart.note);
}

} // namespace

void drawChart(std::string& svg, const Chart& chart, double left, double top, double width, double height) {
    const Frame f{chart, left + marginLeft, top + marginTop, left + width - marginRight,
                  top + height - marginBottom};
    svg += textAt(f.left, top + 22, "heading", chart.title);
    drawLegend(svg, f);
    drawAxes(svg, f);

    const std::string clip = "clip-" + px(left) + "-" + px(top);
    svg += "<clipPath id=\"" + clip + "\"><rect x=\"" + px(f.left) + "\" y=\"" + px(f.top - 3) +
           "\" width=\"" + px(f.right - f.left) + "\" height=\"" + px(f.bottom - f.top + 4) +
           "\"/></clipPath>\n";
    svg += "<g clip-path=\"url(#" + clip + ")\">\n";
    for (const ChartLine& line : chart.lines) drawLine(svg, f, line);
    svg += "</g>\n";
    if (chart.mark) {
        const double x = f.x(chart.mark->x);
        svg += lineBetween(x, f.top, x, f.bottom, "mark");
        svg += textAt(x + 6, f.bottom - 8, "legend note", chart.mark->label);
    }
}

} // namespace lumisort::film
