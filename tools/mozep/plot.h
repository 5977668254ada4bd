#pragma once

#include <string>
#include <vector>

namespace mozep_program {

struct Curve {
    std::string title, xLabel, yLabel;
    std::vector<double> x, y;  // at least one point, x in ascending order
};

// Draws one to three curves, one below the other, into an SVG file with gnuplot, which must be
// installed. Of points that are denser than the picture the lowest and the highest remain. The file
// is replaced when the picture is whole, and left alone otherwise. Throws Failure with the reason.
void plotSvg(const std::vector<Curve>& curves, const std::string& file);

}  // namespace mozep_program
