// SPDX-License-Identifier: Apache-2.0
#include "lkbench/Inspect.h"

#include "lkbench/Roles.h"
#include "lkbench/Text.h"

namespace lkbench {
namespace {

std::string Padded(const std::string& text, size_t width) {
  return text.size() >= width ? text : text + std::string(width - text.size(), ' ');
}

std::string ClassName(const CXact& xact) {
  return wxString(xact.GetClassInfo()->GetClassName()).ToStdString();
}

}  // namespace

std::string ListText(const CSSBenchmark& benchmark) {
  size_t class_width = 0, name_width = 0;
  for (int i = 0; i < benchmark.GetXactCount(); ++i) {
    class_width = std::max(class_width, ClassName(*benchmark.GetXact(i)).size());
    name_width = std::max(name_width, benchmark.GetXact(i)->GetName().ToChar().size());
  }
  std::vector<std::string> lines;
  for (int i = 0; i < benchmark.GetXactCount(); ++i) {
    const CXact& xact = *benchmark.GetXact(i);
    const std::string order = std::to_string(i + 1);
    lines.push_back((order.size() < 2 ? " " : "") + order + "  " + Padded(ClassName(xact), class_width) +
                    "  " + Padded(xact.GetName().ToChar(), name_width) + "  " +
                    std::to_string(xact.GetXactID()) + "  " + KindName(xact.GetTransactionType()));
  }
  return Join(lines, "\n");
}

std::string CheckText(const Layers& layers, const CSSBenchmark& benchmark, const std::string& target,
                      VirtualUser& user, const std::optional<ServerSettings>& settings) {
  const std::string count = Plural(static_cast<std::uint64_t>(benchmark.GetXactCount()), "transaction");
  return Join(
      {std::string("lkbench      ") + LKBENCH_VERSION,
       "plug-in      " + layers.Plugin().Path().string() + " (" + benchmark.GetName().ToChar() + ", " +
           count + ")",
       "driver       " + layers.Driver().Path().string(),
       "OCI library  " + layers.Oci().Path().string() + " (client version " + layers.OciVersion() + ")",
       "target       " + target, "server       " + user.ServerVersion(),
       "durability   " + DurabilityText(settings)},
      "\n");
}

}  // namespace lkbench
