#ifndef TARN_HOST_EMBEDDED_HOST_H
#define TARN_HOST_EMBEDDED_HOST_H

/// @file
/// A scripting host in a library: embeds the interpreter, loads modules, runs scripts.
///
/// ```cpp
/// EmbeddedHost host;
/// if (!host.Load("libTarn_base_math.so") || !host.Evaluate("print(LnGamma(0.5))")) {
///   std::cerr << host.TakeError().ToString() << '\n';
/// }
/// ```
///
/// Functions that a program hands to a host (uniform source, output, refusal of memory, watchers)
/// are called while modules run and must not throw.
///
/// One host exists at a time. Registered error numbers, names and classes belong to the process and
/// outlive a host, as loaded modules do: a module initialises once per process.

#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "frame/host.h"

/// An error as scripts and programs see it.
struct TARN_HOST_API HostError {
  int number = 0;        ///< error number; 0: no error
  std::string name;      ///< message text of the number in the host's error table
  std::string message;   ///< explanatory text, or the name where none was given
  std::string function;  ///< registered function that raised it, empty outside of one
  std::string where;     ///< "file:line" of the script, empty outside of one

  /// "where: function: message", as far as the parts are known.
  std::string ToString() const;
};

/// A scripting host for one thread of a program: values, the interpreter, loaded modules, errors.
/// One exists at a time; see docs/host.md.
class TARN_HOST_API EmbeddedHost {
 public:
  /// Starts an interpreter and makes it the current processor. Throws `std::runtime_error` when
  /// another host exists or the interpreter cannot be had.
  EmbeddedHost();
  /// Frees every value of the interpreter. Loaded modules stay in the process.
  ~EmbeddedHost();
  EmbeddedHost(const EmbeddedHost&) = delete;
  EmbeddedHost& operator=(const EmbeddedHost&) = delete;

  /// The interpreter behind the host interface.
  Processor& GetProcessor();

  // Modules -------------------------------------------------------------------------------------

  /// Loads a module, checks that it describes itself, initialises it and registers its script
  /// functions. False with a pending error when the file cannot be loaded, is no module of this
  /// form, or has a row whose signature cannot be parsed; nothing is registered then.
  bool Load(const std::string& path);
  /// Descriptions of the loaded modules, in order of loading.
  std::vector<std::string> ModuleDescriptions() const;
  /// Signature texts of all registered functions, in order of registration.
  std::vector<std::string> Signatures() const;
  /// Gives the modules loaded from now on a block of error numbers from `offset` on; 65535, the
  /// initial state: none.
  void SetModuleErrorOffset(std::uint16_t offset);

  // Scripts -------------------------------------------------------------------------------------

  /// Compiles and runs script text under a name that errors quote. Where `value` is given, it takes
  /// a copy of the chunk's first value: empty for none or nil, 1 or 0 for a boolean, an array for a
  /// table. False with a pending error, and `*value` as it was, when the text does not compile,
  /// ends with an error, or has a value that no host value can be made of.
  bool Evaluate(std::string_view text, Variable* value = nullptr,
                const std::string& chunkName = "text");
  /// Runs a script file; the script sees `arguments` as its `...` and, with the file at index 0, as
  /// the global table `arg`.
  bool RunFile(const std::string& path, std::span<const std::string> arguments = {});
  /// Whether `text` is the beginning of a statement that more lines could complete.
  bool IsIncomplete(std::string_view text);

  /// Calls a registered function with values as a script would: the arguments are checked and
  /// converted by the signature, the handler runs, its value is stored in `*result`. False with a
  /// pending error when the check or the handler raised one; `*result` then holds what the handler
  /// left in the register.
  bool Call(const std::string& function, std::span<Variable> arguments, Variable* result);
  /// What is behind a registered function.
  using Handler = void (*)(VarRegister& result, VarRegister* arguments);
  /// The handler of a registered function, to be called with registers directly; null: no such one.
  Handler FindHandler(const std::string& function) const;

  /// Names visible to scripts that begin with `prefix`, sorted (global names; after a dot or colon
  /// the members of that global table).
  std::vector<std::string> Complete(const std::string& prefix);

  // Errors --------------------------------------------------------------------------------------

  /// Whether an error is pending.
  bool HasError() const;
  /// The last error raised, without clearing it.
  HostError LastError() const;
  /// The pending error, cleared; number 0 when none was pending.
  HostError TakeError();
  /// How many errors were raised since the host was made.
  std::int64_t RaisedErrorCount() const;
  /// Removes a script constant, so that a module can be seen to define it.
  void ForgetConstant(const std::string& name);
  /// Lets definitions of script constants have no effect until set back.
  void RefuseConstants(bool refuse);

  // Uniform source ------------------------------------------------------------------------------

  /// Restarts the built-in source of uniform deviates from a seed.
  void Seed(std::uint64_t seed);
  /// Replaces the uniform source by a function that returns numbers in [0, 1); an empty function
  /// brings the built-in source back.
  void SetUniformSource(std::function<double()> source);
  /// Number of draws since the host was made.
  std::int64_t DrawCount() const;

  // Output, interpreter and heap, as tests need them ---------------------------------------------

  /// Receives all text output instead of standard output; an empty function restores that.
  void SetOutput(std::function<void(std::string_view)> sink);
  /// Watches progress windows: called with progress and caption whenever one of them is set.
  void SetProgressWatcher(
      std::function<void(std::int32_t progress, std::string_view caption)> watcher);
  /// Work that the program wants done during long computations, when a module calls
  /// `Engine::FlushIdle`.
  void SetIdleWork(std::function<void()> work);
  /// Makes `GetOwner()` answer null until called with false.
  void HideOwner(bool hide);
  /// Asks the running script to stop: the flag `stopRequested` of the processor is set, and the
  /// script ends with the error "Progress window got cancel" within a thousand steps of the
  /// interpreter, even if it catches errors. A request made while nothing runs ends the next script
  /// or call; it is over when the outermost call into the host returns. Safe to call from a signal
  /// handler and from another thread.
  void RequestStop();

  /// Asks the running script to give up what it is doing: the error "Progress window got cancel" is
  /// raised once, by the interpreter within a thousand steps or by `CheckCancel` of a progress
  /// window, and the script may catch it and go on. The request is over when the error was raised,
  /// at the latest when the outermost call into the host returns. A computation of a module that
  /// has been cancelled gets no more values of script functions until it returns. Safe to call from
  /// a signal handler and from another thread.
  void RequestCancel();

  /// Makes the host heap refuse requests: `refuse(k)` is asked for the k-th request, counted from 1
  /// at this call (`HMALLOC`, `HMALLOCZ`, `HREALLOC` and the storage of values); an empty function
  /// ends it.
  void SetHeapFailure(std::function<bool(std::int64_t request)> refuse);
  /// Requests made to the host heap since the last `SetHeapFailure`, or since the start.
  std::int64_t HeapRequestCount() const;
  /// Blocks of the host heap in use.
  static std::int64_t LiveBlockCount();

 private:
  struct Implementation;
  std::unique_ptr<Implementation> implementation_;
};

#endif
