// SPDX-License-Identifier: Apache-2.0
// What an invocation that works on a database leaves behind: the folder of a `run` or `workload`, with its
// job and the log of what was printed, and the copy that --json asks for. Belongs to the main thread.
#pragma once

#include <chrono>
#include <fstream>
#include <optional>

#include "lkbench/Bench.h"
#include "lkbench/options/Flags.h"
#include "lkbench/results/ResultsFolder.h"
#include "lkbench/results/RunFile.h"

namespace lkbench {

class Layers;
struct Target;

class RunResults {
 public:
  // Makes the folder, if the verb leaves one. What cannot be written is known here, before the work. Throws
  // UsageError. `console` outlives the object and copies what it prints to the log until then.
  RunResults(const Invocation& invocation, Console& console);
  // A run that did not come as far as to try anything leaves no folder.
  ~RunResults();
  RunResults(const RunResults&) = delete;
  RunResults& operator=(const RunResults&) = delete;

  // Tells of the begin on the stream. `facts` has the target and the seeds.
  void TellBegin(RunFacts facts) const;
  // Writes what is known, says where it is and ends the stream; no folder where the exit code is kUsage.
  // `facts` lacks what this object knows: verb, command and times. Throws ResultsError when a file cannot be
  // written; those before it are there.
  void Write(RunFacts facts);

 private:
  std::vector<std::string> Repeating() const;
  void WriteFiles(const RunFacts& facts, const std::string& json);

  const Invocation& m_invocation;
  Console& m_console;
  std::chrono::system_clock::time_point m_started = std::chrono::system_clock::now();
  std::chrono::steady_clock::time_point m_begin = std::chrono::steady_clock::now();
  std::optional<ResultsFolder> m_folder;
  std::ofstream m_log;
  bool m_written = false;
};

// The files that an invocation would write, in words; empty: none. Throws what RunResults would throw, as far
// as that can be told by looking.
std::string ResultPlaces(const Invocation& invocation);

// What the bench has learnt and done; `shown` names the target. The exit code is for the caller to set.
RunFacts FactsOf(Bench& bench, const Layers& layers, const Target& target, const std::string& shown);

}  // namespace lkbench
