// SPDX-License-Identifier: Apache-2.0
// The layers under the runner, loaded in the order in which they need each other: the OCI library that the
// target names, the driver library, the plug-in. They stay loaded until the process ends. Objects that they
// make are deleted by their owners before that.
#pragma once

#include <filesystem>
#include <memory>
#include <string>

#include "db/DriverBase.h"
#include "db/SSBenchmark.h"
#include "lkbench/Library.h"
#include "lkbench/Target.h"

namespace lkbench {

struct LayerFiles {
  std::string oci;     // empty: what the target needs
  std::string plugin;  // empty: the one beside the program
};

class Layers {
 public:
  Layers(TargetKind kind, const LayerFiles& files);

  std::unique_ptr<CSSBenchmark> NewBenchmark() const;  // with all its transactions
  std::unique_ptr<CDriverBase> NewDriver() const;
  const Library& Oci() const { return m_oci; }
  const Library& Driver() const { return m_driver; }
  const Library& Plugin() const { return m_plugin; }
  std::string OciVersion() const;

 private:
  Library m_oci;
  Library m_driver;
  Library m_plugin;
};

}  // namespace lkbench
