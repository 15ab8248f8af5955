/// @file
/// Help on tabulated functions and files of columns.

#include "app/help_toolkit_parts.h"

namespace tarn {
namespace {

constexpr std::string_view kFunctions = "Tabulated functions (TFunc)";
constexpr std::string_view kFiles = "Files";
constexpr std::string_view kAnyFunction = "Any tabulated function.";
constexpr std::string_view kNoFunction =
    "Error 3: X does not ascend, or X and Y are not arrays of numbers of one length.";

constexpr HelpEntry kEntries[] = {
    {.signature = "TFunc.Map(refer object TFunc, function)",
     .call = "f:Map(g)",
     .family = kFunctions,
     .summary = "g of every ordinate",
     .meaning = "The function whose ordinates are g of those of f.",
     .domain = "g: a function of a number that returns a number.",
     .errors = "Error 3: X does not ascend, or X and Y are not arrays of numbers of one length. "
               "Error 3: g returns no number.",
     .caution = "",
     .example = "TFunc({0, 1, 2}, {0, 1, 4}):Map(math.sqrt).Y",
     .value = "{0, 1, 2}"},
    {.signature = "TFunc.Integral(refer object TFunc, any?, any?)",
     .call = "f:Integral(a, b)",
     .family = kFunctions,
     .summary = "integral by trapezoids",
     .meaning = "The integral of the interpolant from a to b; without limits the running integral, "
                "a TFunc.",
     .domain = "Both limits or none, finite.",
     .errors = "Error 3: X does not ascend, or X and Y are not arrays of numbers of one length. "
               "Error 3: one limit alone.",
     .caution = "",
     .example = "TFunc({0, 1, 2}, {0, 1, 4}):Integral(0, 2)",
     .value = "3"},
    {.signature = "TFunc.IntegralSimpson(refer object TFunc, any?, any?)",
     .call = "f:IntegralSimpson(a, b)",
     .family = kFunctions,
     .summary = "integral by parabolas",
     .meaning = "The integral from a to b by parabolas through three points, over fewer than six "
                "intervals by trapezoids; without limits the running integral, a TFunc.",
     .domain = "Both limits or none, finite.",
     .errors = "Error 3: X does not ascend, or X and Y are not arrays of numbers of one length. "
               "Error 3: one limit alone.",
     .caution = "",
     .example = "TFunc({0, 1, 2}, {0, 1, 4}):IntegralSimpson(0, 2)",
     .value = "3"},
    {.signature = "TFunc.LogIntegralExp(refer object TFunc)",
     .call = "f:LogIntegralExp()",
     .family = kFunctions,
     .summary = "ln of the integral of exp(f)",
     .meaning = "The logarithm of the integral of exp(f) over the table, without overflow; -inf "
                "for fewer than two points.",
     .domain = kAnyFunction,
     .errors = kNoFunction,
     .caution = "",
     .example = "TFunc({0, 1}, {2000, 2000}):LogIntegralExp()",
     .value = "2000"},
    {.signature = "TFunc.Zeros(refer object TFunc)",
     .call = "f:Zeros()",
     .family = kFunctions,
     .summary = "zero crossings",
     .meaning = "An array of the places where the interpolant crosses 0, each of them once.",
     .domain = kAnyFunction,
     .errors = kNoFunction,
     .caution = "",
     .example = "TFunc({0, 2}, {-1, 1}):Zeros()",
     .value = "{1}"},
    {.signature = "TFunc.Maximum(refer object TFunc)",
     .call = "f:Maximum()",
     .family = kFunctions,
     .summary = "largest ordinate",
     .meaning = "A record of x and y, the point with the first of the largest ordinates.",
     .domain = kAnyFunction,
     .errors = kNoFunction,
     .caution = "",
     .example = "TFunc({0, 1, 2}, {0, 1, 4}):Maximum().x",
     .value = "2"},
    {.signature = "TFunc.Minimum(refer object TFunc)",
     .call = "f:Minimum()",
     .family = kFunctions,
     .summary = "smallest ordinate",
     .meaning = "A record of x and y, the point with the first of the smallest ordinates.",
     .domain = kAnyFunction,
     .errors = kNoFunction,
     .caution = "",
     .example = "TFunc({0, 1, 2}, {0, 1, 4}):Minimum().y",
     .value = "0"},
    {.signature = "TFunc.Index(refer object TFunc, any)",
     .call = "f:Index(x)",
     .family = kFunctions,
     .summary = "point at or below x",
     .meaning = "The index of the last point at or below x, counted from 1; 0 below the table.",
     .domain = "x: a number.",
     .errors = kNoFunction,
     .caution = "",
     .example = "TFunc({0, 1, 2}, {0, 1, 4}):Index(1.5)",
     .value = "2"},
    {.signature = "TFunc.Nearest(refer object TFunc, any)",
     .call = "f:Nearest(x)",
     .family = kFunctions,
     .summary = "point nearest to x",
     .meaning =
         "The index of the point nearest to x, the lower one of two equally near, counted from 1.",
     .domain = "x: a number.",
     .errors = kNoFunction,
     .caution = "",
     .example = "TFunc({0, 1, 2}, {0, 1, 4}):Nearest(1.6)",
     .value = "3"},
    {.signature = "TFunc.Shift(refer object TFunc, any)",
     .call = "f:Shift(a)",
     .family = kFunctions,
     .summary = "abscissae x + a",
     .meaning = "The function with the same ordinates over x + a.",
     .domain = "a: a finite number.",
     .errors = kNoFunction,
     .caution = "",
     .example = "TFunc({0, 1, 2}, {0, 1, 4}):Shift(1).X",
     .value = "{1, 2, 3}"},
    {.signature = "TFunc.ScaleX(refer object TFunc, any)",
     .call = "f:ScaleX(a)",
     .family = kFunctions,
     .summary = "abscissae a x",
     .meaning = "The function with the same ordinates over a x.",
     .domain = "a > 0, finite.",
     .errors = "Error 3: X does not ascend, or X and Y are not arrays of numbers of one length. "
               "Error 3: a is not above 0.",
     .caution = "",
     .example = "TFunc({0, 1, 2}, {0, 1, 4}):ScaleX(2).X",
     .value = "{0, 2, 4}"},
    {.signature = "TFunc.LnX(refer object TFunc)",
     .call = "f:LnX()",
     .family = kFunctions,
     .summary = "abscissae ln x",
     .meaning = "The function with the same ordinates over ln x.",
     .domain = "Abscissae above 0.",
     .errors = "Error 3: X does not ascend, or X and Y are not arrays of numbers of one length. "
               "Error 3: an abscissa is not above 0.",
     .caution = "",
     .example = "TFunc({1}, {7}):LnX().X",
     .value = "{0}"},
    {.signature = "TFunc.ExpX(refer object TFunc)",
     .call = "f:ExpX()",
     .family = kFunctions,
     .summary = "abscissae exp x",
     .meaning = "The function with the same ordinates over exp x.",
     .domain = "Abscissae up to 709.",
     .errors = "Error 3: X does not ascend, or X and Y are not arrays of numbers of one length. "
               "Error 3: exp of an abscissa overflows.",
     .caution = "",
     .example = "TFunc({0}, {7}):ExpX().X",
     .value = "{1}"},
    {.signature = "WriteColumns(text, options, options?)",
     .call = "WriteColumns(path, columns, {...})",
     .family = kFiles,
     .summary = "columns to a text file",
     .meaning =
         "Writes arrays side by side, numbers in the fewest digits that read back as the same. "
         "Options: names, a first line; separator, a comma without it. ReadColumns reads the file.",
     .domain = "Arrays of numbers of one length.",
     .errors = "Error 3: a column is no array of numbers or of another length. Error 6: the file "
               "cannot be written.",
     .caution = "",
     .example = "WriteColumns('/dev/null', {{1, 2}, {3, 4}})",
     .value = "nil"},
};

}  // namespace

std::span<const HelpEntry> FunctionHelpEntries() { return kEntries; }

}  // namespace tarn
