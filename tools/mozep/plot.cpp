#include "plot.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>

#include "commands.h"
#include "gnuplot.h"
#include "output_file.h"
#include "printable.h"

namespace mozep_program {
namespace {

constexpr std::size_t kColumns = 4000;

void addPoint(std::string& commands, double x, double y) {
    char line[64];
    std::snprintf(line, sizeof line, "%.10g %.10g\n", x, y);
    commands += line;
}

void addPoints(std::string& commands, const Curve& curve) {
    const std::size_t group = (curve.x.size() + kColumns - 1) / kColumns;
    for (std::size_t n = 0; n < curve.x.size(); n += group) {
        const auto first = curve.y.begin() + static_cast<std::ptrdiff_t>(n);
        const auto count = std::min(group, curve.x.size() - n);
        const auto [low, high] =
            std::minmax_element(first, first + static_cast<std::ptrdiff_t>(count));
        const auto add = [&](auto y) {
            addPoint(commands, curve.x[static_cast<std::size_t>(y - curve.y.begin())], *y);
        };
        add(std::min(low, high));
        if (low != high) add(std::max(low, high));
    }
}

std::string commandsFor(const std::vector<Curve>& curves) {
    char line[128];
    const std::size_t height = curves.size() == 1 ? 600 : 380 * curves.size();
    std::snprintf(line, sizeof line, "set terminal svg size 1000,%zu", height);
    std::string commands = "set encoding utf8\n";
    commands += line;
    commands +=
        " background 'white' font 'sans-serif,14'\n"
        "set grid linecolor 'gray80'\nset border linecolor 'gray40'\nset tics out nomirror\n"
        "unset key\nset offsets 0,0,graph 0.05,graph 0.02\n";
    std::snprintf(line, sizeof line, "set multiplot layout %zu,1\n", curves.size());
    if (curves.size() > 1) commands += line;
    for (std::size_t i = 0; i < curves.size(); ++i) {
        std::snprintf(line, sizeof line,
                      "set title ARG%zu noenhanced\nset xlabel ARG%zu noenhanced\n"
                      "set ylabel ARG%zu noenhanced\n",
                      3 * i + 1, 3 * i + 2, 3 * i + 3);
        commands += line;
        const double from = curves[i].x.front(), to = curves[i].x.back();
        const double room = from < to ? 0 : 1;
        std::snprintf(line, sizeof line, "set xrange [%.10g:%.10g]\n", from - room, to + room);
        commands += line;
        commands += "plot '-' using 1:2 with lines linewidth 1.2 linecolor '#1f5fa8'\n";
        addPoints(commands, curves[i]);
        commands += "e\n";
    }
    if (curves.size() > 1) commands += "unset multiplot\n";
    return commands + "unset output\n";
}

// gnuplot does not notice that its output is cut.
bool isWhole(const std::string& svg) {
    const std::size_t last = svg.find_last_not_of(" \r\n");
    return last != std::string::npos && svg.substr(0, last + 1).ends_with("</svg>");
}

}  // namespace

void plotSvg(const std::vector<Curve>& curves, const std::string& file) {
    std::vector<std::string> texts;
    for (const Curve& curve : curves)
        for (const std::string* text : {&curve.title, &curve.xLabel, &curve.yLabel})
            texts.push_back(printable(*text));
    const std::string svg = runGnuplot(commandsFor(curves), texts);
    if (!isWhole(svg)) throw Failure("gnuplot drew no whole picture");
    OutputFile out(file, OutputFile::Existing::Replace);
    out.write(reinterpret_cast<const std::uint8_t*>(svg.data()), svg.size());
    out.commit();
}

}  // namespace mozep_program
