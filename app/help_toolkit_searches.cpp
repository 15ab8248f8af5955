/// @file
/// Help on searches, fits and pictures.

#include "app/help_toolkit_parts.h"

namespace tarn {
namespace {

constexpr std::string_view kSearches = "Searches and fits";
constexpr std::string_view kPlots = "Plots";

constexpr HelpEntry kEntries[] = {
    {.signature = "Minimise(options)",
     .call = "Minimise{f = function(x) ... end, bounds = {{lower, upper}, ...}, ...}",
     .family = kSearches,
     .summary = "minimum of a function of several variables in a box",
     .meaning =
         "Looks for the smallest f(x), x an MVector within the bounds, from start (the "
         "middle) on, by the method \"Solve\", \"BFGS\", \"DFP\", \"Powell\" or \"Coord\". A "
         "record of point, value, evaluations, iterations, reason, hessian, covariance and "
         "errors; the last two for f a chi-square function. Further options: accuracy, "
         "max_iterations, error_at_limit, derivative, second_derivative, central, min_step, "
         "max_step, first_step, limit_step, curvature, progress, trace.",
     .domain = "Finite bounds, each lower limit at most its upper one; a start inside them.",
     .errors = "Error 3: options that do not fit, or a value of f that is no number. "
               "ERR_SOLUTION_NOT_FOUND: the limit of iterations was exhausted. Any error of f.",
     .caution = "Forward differences limit BFGS and DFP; give a derivative, or use Powell.",
     .example = "Minimise{f = function(x) return (x[1] - 3)^2 end, bounds = {{0, 5}}}.point[1]",
     .value = "3"},
    {.signature = "FindRoot(options)",
     .call = "FindRoot{f = function(x) ... end, from = a, to = b, accuracy = 1e-15}",
     .family = kSearches,
     .summary = "zero of a function of one variable",
     .meaning = "Bisection. A record of x, value, evaluations and reason; the accuracy is relative "
                "to the width of the interval.",
     .domain = "Values of different signs at the ends, or a zero there.",
     .errors = "Error 3: options that do not fit, no change of sign, or a value of f that is no "
               "number. Any error of f.",
     .caution = "",
     .example = "FindRoot{f = math.cos, from = 0, to = 3}.x",
     .value = "1.5708"},
    {.signature = "FindMinimum(options)",
     .call = "FindMinimum{f = function(x) ... end, from = a, to = b, accuracy = 1e-8}",
     .family = kSearches,
     .summary = "minimum of a function of one variable",
     .meaning = "Golden section. A record of x, value, evaluations and reason; the accuracy is "
                "relative to the width of the interval.",
     .domain = "Finite ends; of several minima one is found.",
     .errors =
         "Error 3: options that do not fit, or a value of f that is no number. Any error of f.",
     .caution = "A minimum is known to half the digits of its value at best.",
     .example = "FindMinimum{f = math.cos, from = 0, to = 6}.x",
     .value = "3.14159"},
    {.signature = "FitLine(options)",
     .call = "FitLine{basis = ..., x = ..., y = ..., variances = ..., mode = ..., ...}",
     .family = kSearches,
     .summary = "fit of a linear combination of functions",
     .meaning =
         "Fits y = sum of a_k f_k(x). basis: an array of functions, or \"powers\" or "
         "\"cosines\" with the options terms and, for cosines, period. mode \"plain\" is weighted "
         "least squares, "
         "\"refined\" a likelihood that bears outliers under the prior \"inverse_square\" or "
         "\"Jeffreys\" to the accuracy of that option. A record of coefficients, errors, "
         "covariance, fitted, chi2, degrees, "
         "residue and log_probability.",
     .domain = "As many points as functions or more; variances above 0, all 1 without them.",
     .errors = "Error 3: options that do not fit. Error 10: the functions are dependent on these "
               "points. Any error of a function.",
     .caution = "A refinement is a local search from the plain fit.",
     .example =
         "FitLine{basis = \"powers\", terms = 2, x = {0, 1, 2}, y = {1, 3, 5}}.coefficients[2]",
     .value = "2"},
    {.signature = "Plot(options)",
     .call = "Plot{x = ..., y = ..., file = \"curve.png\", ...}",
     .family = kPlots,
     .summary = "draws curves, points and histograms",
     .meaning =
         "Draws y over x, a TFunc f, or several curves, into a PNG or SVG file, or with "
         "characters to the text output where no file is named. Options of a curve: x, y, f, "
         "errors, label, style (\"line\", \"points\", \"steps\", \"bars\"). Further options: "
         "curves, file, title, xlabel, ylabel, xrange, yrange, logx, logy, width, height.",
     .domain = "Numbers; what is not finite leaves a gap.",
     .errors = "Error 3: options that do not fit. Error 6: the file cannot be written, or the "
               "program gnuplot is missing.",
     .caution = "",
     .example = "Plot{y = {1, 4, 9, 16}, title = \"squares\"}",
     .value = ""},
};

}  // namespace

std::span<const HelpEntry> SearchHelpEntries() { return kEntries; }

}  // namespace tarn
