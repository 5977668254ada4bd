#include "plot.h"

#include <cstddef>
#include <cstdint>
#include <cstdio>

#include "commands.h"
#include "gnuplot.h"
#include "output_file.h"
#include "printable.h"

namespace mozep_program {
namespace {

std::string commandsFor(const Curve& curve) {
    char line[64];
    std::snprintf(line, sizeof line, "set xrange [%.10g:%.10g]\n", curve.x.front(), curve.x.back());
    std::string commands =
        "set encoding utf8\n"
        "set terminal svg size 1000,600 background 'white' font 'sans-serif,14'\n"
        "set title ARG1 noenhanced\nset xlabel ARG2 noenhanced\nset ylabel ARG3 noenhanced\n"
        "set grid linecolor 'gray80'\nset border linecolor 'gray40'\nset tics out nomirror\n"
        "unset key\nset offsets 0,0,graph 0.05,graph 0.02\n";
    commands += line;
    commands += "plot '-' using 1:2 with lines linewidth 1.2 linecolor '#1f5fa8'\n";
    for (std::size_t i = 0; i < curve.x.size(); ++i) {
        std::snprintf(line, sizeof line, "%.10g %.6f\n", curve.x[i], curve.y[i]);
        commands += line;
    }
    return commands + "e\nunset output\n";
}

// gnuplot does not notice that its output is cut.
bool isWhole(const std::string& svg) {
    const std::size_t last = svg.find_last_not_of(" \r\n");
    return last != std::string::npos && svg.substr(0, last + 1).ends_with("</svg>");
}

}  // namespace

void plotSvg(const Curve& curve, const std::string& file) {
    const std::string svg =
        runGnuplot(commandsFor(curve),
                   {printable(curve.title), printable(curve.xLabel), printable(curve.yLabel)});
    if (!isWhole(svg)) throw Failure("gnuplot drew no whole picture");
    OutputFile out(file, OutputFile::Existing::Replace);
    out.write(reinterpret_cast<const std::uint8_t*>(svg.data()), svg.size());
    out.commit();
}

}  // namespace mozep_program
