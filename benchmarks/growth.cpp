// SPDX-License-Identifier: Apache-2.0
// Prints how time grows with size as a script for gnuplot, with the figures in it:
//
//     omt_growth [REPETITIONS] | gnuplot > docs/growth.svg
//
// All sizes of a kind of work are done in turn, time and again, and the medians count.
#include "ratio.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>

namespace
{

constexpr int theSizes = 8;  // each twice the one before

constexpr const char* theHead = R"(set terminal svg size 900,720 background rgb "white"
set multiplot layout 2,2
set logscale xy
set grid
set key top left
set format x "%.0s%c"
set format y "%.0s %cs"
set pointsize 0.6
)";

double medianOf(std::vector<double> times)
{
    const auto middle = times.begin() + static_cast<std::ptrdiff_t>(times.size() / 2);
    std::nth_element(times.begin(), middle, times.end());
    return *middle;
}

std::vector<double> mediansOf(const ratios::Growth& growth, int repetitions)
{
    std::vector<double> times[theSizes];
    for (int repetition = 0; repetition < repetitions; ++repetition)
        for (int at = 0; at < theSizes; ++at)
            times[at].push_back(growth.work(growth.smallest << at));
    std::vector<double> medians;
    for (const std::vector<double>& ofSize : times) medians.push_back(medianOf(ofSize));
    return medians;
}

/// One plot, beside the straight line of time in proportion to size.
void print(const ratios::Growth& growth, const std::vector<double>& medians)
{
    std::puts("$figures << END");
    for (int at = 0; at < theSizes; ++at)
        std::printf("%d %.4g\n", growth.smallest << at, medians[static_cast<std::size_t>(at)]);
    std::printf("END\nset title \"%s\"\nset xlabel \"%s\"\n", growth.name, growth.unit);
    std::printf(
        "plot %.4g * x title \"in proportion\" with lines dashtype 2 linecolor \"gray50\", "
        "$figures title \"measured\" with linespoints\n",
        medians.back() / (growth.smallest << (theSizes - 1)));
}

}  // namespace

int main(int argc, char* argv[])
{
    const int repetitions = argc > 1 ? std::atoi(argv[1]) : 15;
    if (repetitions < 1) return 2;
    std::fputs(theHead, stdout);
    for (const auto& list :
         {ratios::readAndMergeGrowth(), ratios::convertValuesGrowth(), ratios::entityTypesGrowth()})
        for (const ratios::Growth& growth : list) print(growth, mediansOf(growth, repetitions));
    return 0;
}
