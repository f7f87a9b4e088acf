// SPDX-License-Identifier: Apache-2.0
#include "lkbench/Layers.h"

#include <oci.h>

#include <array>
#include <cstdlib>

#include "lkbench/Failure.h"
#include "lkbench/Text.h"

namespace lkbench {
namespace {

namespace fs = std::filesystem;

// The Oracle client carries its release in the name; a plain name is only there when somebody made the link.
constexpr std::array kOracleClients = {"libclntsh.so",      "libclntsh.so.23.1", "libclntsh.so.21.1",
                                       "libclntsh.so.19.1", "libclntsh.so.18.1", "libclntsh.so.12.1",
                                       "libclntsh.so.11.1"};

Library LoadOracleClient() {
  const char* home = std::getenv("ORACLE_HOME");
  std::vector<fs::path> files(kOracleClients.begin(), kOracleClients.end());
  std::string where = "the loader's path (LD_LIBRARY_PATH, ldconfig); ORACLE_HOME is not set";
  if (home != nullptr && *home != 0) {
    const fs::path folder = fs::path(home) / "lib";
    for (const char* name : kOracleClients) files.push_back(folder / name);
    where = "the loader's path (LD_LIBRARY_PATH, ldconfig) and in " + folder.string();
  }
  return Library("Oracle client library", files, where, Visibility::kGlobal);
}

Library LoadOci(TargetKind kind, const std::string& file) {
  const std::string what = "OCI library";
  if (!file.empty()) return Library(what, fs::absolute(file), Visibility::kGlobal);
  if (kind == TargetKind::kOracle) return LoadOracleClient();
  return Library(what, LibraryFolder() / "libocimariadb.so", Visibility::kGlobal);
}

// A symbol that the OCI library lacks is noticed when the driver library is bound to it.
Library LoadDriver(const Library& oci) {
  try {
    return Library("driver library", LibraryFolder() / "libLKOracle8.so", Visibility::kGlobal);
  } catch (const PrepareError& error) {
    throw PrepareError(std::string(error.what()) + " (the OCI library is " + oci.Path().string() + ")");
  }
}

Library LoadPlugin(const std::string& file) {
  const fs::path path = file.empty() ? LibraryFolder() / "libCREP_ORA8.so" : fs::absolute(file);
  return Library("plug-in", path, Visibility::kPrivate);
}

}  // namespace

Layers::Layers(TargetKind kind, const LayerFiles& files)
    : m_oci(LoadOci(kind, files.oci)), m_driver(LoadDriver(m_oci)), m_plugin(LoadPlugin(files.plugin)) {}

std::unique_ptr<CSSBenchmark> Layers::NewBenchmark() const {
  using Entry = int (*)(CSSBenchmark**);
  const auto entry = reinterpret_cast<Entry>(m_plugin.Symbol("GetBenchmarkClassInfo"));
  CSSBenchmark* made = nullptr;
  const int result = entry(&made);
  std::unique_ptr<CSSBenchmark> benchmark(made);
  if (result == 0 || benchmark == nullptr || benchmark->RegisterTransactions(1) == 0)
    throw PrepareError("the plug-in " + m_plugin.Path().string() + " gives no benchmark");
  return benchmark;
}

std::unique_ptr<CDriverBase> Layers::NewDriver() const {
  std::unique_ptr<wxObject> object(wxCreateDynamicObject("COracle8Driver"));
  auto* driver = dynamic_cast<CDriverBase*>(object.get());
  if (driver == nullptr)
    throw PrepareError("the driver library " + m_driver.Path().string() + " has no class COracle8Driver");
  (void)object.release();
  return std::unique_ptr<CDriverBase>(driver);
}

std::string Layers::OciVersion() const {
  const auto version = reinterpret_cast<decltype(&OCIClientVersion)>(m_oci.Symbol("OCIClientVersion"));
  std::array<sword, 5> parts{};
  version(&parts[0], &parts[1], &parts[2], &parts[3], &parts[4]);
  std::string text;
  for (const sword part : parts) text += (text.empty() ? "" : ".") + std::to_string(part);
  return text;
}

}  // namespace lkbench
