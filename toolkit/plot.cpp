/// @file
/// "Plot": curves, points with error bars and histograms, in a picture or in characters.

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <limits>

#include "arguments.h"
#include "families.h"
#include "gnuplot.h"
#include "handler.h"
#include "results.h"
#include "table.h"

namespace tarn::toolkit {
namespace {

const Names kStyles = {"line", "points", "steps", "bars"};
enum Style { kLine, kPoints, kSteps, kBars };

/// One set of points of a plot.
struct Curve {
  Numbers x;
  Numbers y;
  Numbers errors;  ///< one per point, or none
  std::string label;
  int style;
};

/// The points of a curve: a tabulated function, x and y, or y alone over 1, 2, 3, ...
void ReadPoints(const Options& options, const std::string& name, Curve& curve) {
  if (const auto function = options.Find("f")) {
    if (options.Has("x") || options.Has("y")) Refuse(name + " has both a function and points");
    if (!IsTable(function->Value())) function->RefuseKind("a TFunc");
    const TFunc table = TableOf(function->Value());
    curve.x.assign(table.X, table.X + table.N);
    curve.y.assign(table.Y, table.Y + table.N);
    return;
  }
  if (!options.Has("x")) {
    curve.y = options.Required("y").Array(1);
    for (std::size_t i = 1; i <= curve.y.size(); ++i) curve.x.push_back(static_cast<double>(i));
    return;
  }
  curve.x = options.Required("x").Array(1);
  curve.y = options.Required("y").ArrayOfLength(curve.x.size(), "x");
}

Curve ReadCurve(const Options& options, const std::string& name) {
  Curve curve;
  ReadPoints(options, name, curve);
  if (const auto errors = options.Find("errors")) {
    curve.errors = errors->ArrayOfLength(curve.y.size(), options.Has("f") ? "f" : "y");
  }
  if (const auto label = options.Find("label")) curve.label = label->Text();
  curve.style = options.Choice("style", curve.errors.empty() ? kLine : kPoints, kStyles);
  if (!curve.errors.empty() && curve.style != kPoints)
    Refuse(name + " has errors, which go with points");
  return curve;
}

/// The curves of the list "curves", or the one that the options describe themselves.
std::vector<Curve> ReadCurves(const Options& options) {
  const auto list = options.Find("curves");
  if (!list) return {ReadCurve(options, "the curve")};
  for (const char* name : {"f", "x", "y", "errors", "label", "style"}) {
    if (options.Has(name)) Refuse(std::string(name) + " belongs into one of the curves");
  }
  std::vector<Curve> curves;
  const int count = list->Length(1);
  for (int i = 0; i < count; ++i) {
    const Input element = list->Element(i);
    const Options described(element.Value(), {"f", "x", "y", "errors", "label", "style"},
                            element.Name());
    curves.push_back(ReadCurve(described, element.Name()));
  }
  return curves;
}

// Axes --------------------------------------------------------------------------------------------

/// {lower, upper}
Numbers ReadRange(const Input& range) {
  Numbers ends = range.FiniteArray();
  if (ends.size() != 2 || !(ends[0] < ends[1])) range.Refuse("must be a pair {lower, upper}");
  return ends;
}

/// Without a range of its own the axis of y needs a point to begin with.
void RequireSomethingToDraw(const std::vector<Curve>& curves, const Options& options) {
  if (options.Has("yrange")) return;
  constexpr double kLargest = std::numeric_limits<double>::max();
  const auto range = options.Find("xrange");
  const Numbers ends = range ? ReadRange(*range) : Numbers{-kLargest, kLargest};
  const bool logX = options.Flag("logx", false);
  const bool logY = options.Flag("logy", false);
  for (const Curve& curve : curves) {
    for (std::size_t i = 0; i < curve.x.size(); ++i) {
      const double x = curve.x[i];
      const double y = curve.y[i];
      const bool isInside = x >= ends[0] && x <= ends[1] && std::isfinite(y);
      if (isInside && (!logX || x > 0.0) && (!logY || y > 0.0)) return;
    }
  }
  Refuse("no point is finite, inside xrange and above 0 on logarithmic axes");
}

bool HasBars(const std::vector<Curve>& curves) {
  return std::any_of(curves.begin(), curves.end(),
                     [](const Curve& curve) { return curve.style == kBars; });
}

// Commands ----------------------------------------------------------------------------------------

/// "[lo:hi]" of an option {lo, hi}.
std::string RangeText(const Input& range) {
  const Numbers ends = ReadRange(range);
  return '[' + NumberText(ends[0]) + ':' + NumberText(ends[1]) + ']';
}

std::string SettingsText(const Options& options, const std::vector<Curve>& curves) {
  std::string settings;
  for (const char* name : {"title", "xlabel", "ylabel"}) {
    if (const auto text = options.Find(name)) {
      settings += std::string("set ") + name + ' ' + QuotedForGnuplot(text->Text()) + '\n';
    }
  }
  for (const char* name : {"xrange", "yrange"}) {
    if (const auto range = options.Find(name)) {
      settings += std::string("set ") + name + ' ' + RangeText(*range) + '\n';
    }
  }
  // Bars stand on 0.
  const bool isFree = !options.Has("yrange") && !options.Flag("logy", false);
  if (isFree && HasBars(curves)) settings += "set yrange [*<0:0<*]\n";
  if (options.Flag("logx", false)) settings += "set logscale x\n";
  if (options.Flag("logy", false)) settings += "set logscale y\n";
  return settings;
}

std::string DrawingText(const Curve& curve) {
  switch (curve.style) {
    case kPoints:
      return curve.errors.empty() ? "with points pointtype 7 pointsize 0.7"
                                  : "with yerrorbars pointtype 7 pointsize 0.7";
    case kSteps:
      return "with histeps linewidth 1.5";
    case kBars:
      return "with boxes fillstyle solid 0.3";
    default:
      return "with lines linewidth 1.5";
  }
}

/// A block of data lines; a number that is none leaves a gap.
std::string DataText(const Curve& curve, const std::string& name) {
  std::string data = name + " << END\n";
  for (std::size_t i = 0; i < curve.x.size(); ++i) {
    data += NumberText(curve.x[i]) + ' ' + NumberText(curve.y[i]);
    if (!curve.errors.empty()) data += ' ' + NumberText(curve.errors[i]);
    data += '\n';
  }
  return data + "END\n";
}

std::string PlotText(const std::vector<Curve>& curves) {
  std::string data;
  std::string plot;
  bool isLabelled = false;
  for (std::size_t i = 0; i < curves.size(); ++i) {
    const std::string name = "$curve" + std::to_string(i + 1);
    data += DataText(curves[i], name);
    plot += plot.empty() ? "plot " : ", ";
    plot += name + ' ' + DrawingText(curves[i]) + " title " + QuotedForGnuplot(curves[i].label);
    isLabelled = isLabelled || !curves[i].label.empty();
  }
  return data + (isLabelled ? "" : "unset key\n") + plot + '\n';
}

// Where it goes -----------------------------------------------------------------------------------

const Names kPictureTypes = {"png", "svg"};

/// The type of picture that the name of a file asks for.
std::string PictureType(const std::string& path) {
  const std::size_t dot = path.rfind('.');
  std::string ending = dot == std::string::npos ? "" : path.substr(dot + 1);
  for (const std::string_view type : kPictureTypes) {
    if (ending == type) return ending;
  }
  Refuse("file must end in .png or .svg, got \"" + path + '"');
}

/// Opening commands of a plot: into a picture, where a file is named, else in characters.
std::string TerminalText(const Options& options) {
  const auto file = options.Find("file");
  if (!file) {
    const int columns = options.Integer("width", 78, 30, 500);
    const int lines = options.Integer("height", 24, 10, 200);
    return "set terminal dumb mono noenhanced size " + std::to_string(columns) + ", " +
           std::to_string(lines) + '\n';
  }
  const std::string path = file->Text();
  const int width = options.Integer("width", 640, 100, 10000);
  const int height = options.Integer("height", 420, 100, 10000);
  return "set terminal " + PictureType(path) + " noenhanced size " + std::to_string(width) + ", " +
         std::to_string(height) + "\nset output " + QuotedForGnuplot(path) + '\n';
}

/// gnuplot does not say which file it could not write.
void RequireWritable(const std::string& path) {
  std::FILE* file = std::fopen(path.c_str(), "a");
  if (file == nullptr)
    throw Fault(kErrorFile, path + ": cannot be written: " + std::strerror(errno));
  std::fclose(file);
}

void Plot(const Call& call) {
  const Options options(call.Argument(0),
                        {"file", "title", "xlabel", "ylabel", "xrange", "yrange", "logx", "logy",
                         "width", "height", "curves", "f", "x", "y", "errors", "label", "style"});
  const std::vector<Curve> curves = ReadCurves(options);
  RequireSomethingToDraw(curves, options);
  const std::string commands =
      TerminalText(options) + SettingsText(options, curves) + PlotText(curves);
  if (const auto file = options.Find("file")) RequireWritable(file->Text());
  const std::string drawing = RunGnuplot(commands);
  if (!drawing.empty()) GetOwner()->PrintText(drawing.c_str());
}

constexpr ScriptFunction kRows[] = {{Handler<Plot>, "Plot(options)"}};

}  // namespace

std::span<const ScriptFunction> PlotRows() { return kRows; }

}  // namespace tarn::toolkit
