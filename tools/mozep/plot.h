#pragma once

#include <string>
#include <vector>

namespace mozep_program {

struct Curve {
    std::string title, xLabel, yLabel;
    std::vector<double> x, y;
};

// Draws the curve into an SVG file with gnuplot, which must be installed. The file is replaced when
// the picture is whole, and left alone otherwise. Throws Failure with the reason.
void plotSvg(const Curve& curve, const std::string& file);

}  // namespace mozep_program
