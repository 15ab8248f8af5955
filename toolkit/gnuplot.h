#ifndef TARN_TOOLKIT_GNUPLOT_H
#define TARN_TOOLKIT_GNUPLOT_H

/// @file
/// The program gnuplot, which draws the plots.

#include <string>

namespace tarn::toolkit {

/// A text as it stands in gnuplot's commands, on one line.
std::string QuotedForGnuplot(const std::string& text);

/// Runs commands and returns what they print, without empty lines around it and blanks
/// behind its lines. Ends the function
/// with error 6 and gnuplot's own words where that does not work.
std::string RunGnuplot(const std::string& commands);

}  // namespace tarn::toolkit

#endif
