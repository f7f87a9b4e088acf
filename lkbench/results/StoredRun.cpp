// SPDX-License-Identifier: Apache-2.0
#include "lkbench/results/StoredRun.h"

#include "lkbench/Failure.h"
#include "lkbench/Text.h"
#include "lkbench/results/ResultsFolder.h"
#include "lkbench/results/RunFile.h"

namespace lkbench {
namespace {

namespace fs = std::filesystem;

fs::path FileIn(const fs::path& place) {
  std::error_code unknown;
  if (!fs::exists(place, unknown)) throw UsageError(place.string() + ": there is no such folder or file");
  if (!fs::is_directory(place, unknown)) return place;
  if (!fs::exists(place / "run.json", unknown))
    throw UsageError(place.string() + " holds no results: there is no run.json in it");
  return place / "run.json";
}

void RequireSchema(const Json& json, const std::string& file) {
  if (!json.is_object() || json.value("schema", Json()) != "lkbench-run")
    throw UsageError(file + " is no run.json of lkbench: \"schema\" is not \"lkbench-run\"");
  const Json version = json.value("schema_version", Json());
  if (version != kRunSchemaVersion)
    throw UsageError(file + " has schema version " + Excerpt(version.dump()) +
                     ", this lkbench reads version " + std::to_string(kRunSchemaVersion));
}

}  // namespace

StoredRun ReadRun(const fs::path& place) {
  const fs::path file = FileIn(place);
  StoredRun run{place.string(), ReadWhole(file), {}};
  try {
    run.json = Json::parse(run.text);
  } catch (const Json::parse_error& error) {
    throw UsageError(file.string() + " is no JSON: byte " + std::to_string(error.byte) +
                     " is not as expected");
  }
  RequireSchema(run.json, file.string());
  return run;
}

}  // namespace lkbench
