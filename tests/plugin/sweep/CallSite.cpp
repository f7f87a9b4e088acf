// SPDX-License-Identifier: Apache-2.0
#include "CallSite.h"

#include <map>
#include <utility>

namespace sweep {
namespace {

bool IsAbout(const std::string& whole, const char* handle) { return whole.find(handle) != std::string::npos; }

// "stmt#3" of the arguments, or nothing.
std::string StatementOf(const std::string& whole) {
  const size_t begin = whole.find("stmt#");
  return begin == std::string::npos ? "" : whole.substr(begin, whole.find_first_of(",)", begin) - begin);
}

std::string PreparedText(const std::string& whole) {
  const size_t begin = whole.find('"') + 1;
  return whole.substr(begin, whole.rfind('"') - begin);
}

bool AllocatesStatement(const CallSite& site) {
  return site.call == "OCIHandleAlloc" && IsAbout(site.whole, ", 4, ");
}

// A statement is prepared right after its allocation, if at all.
void GiveAllocationsTheirTexts(std::vector<CallSite>& sites) {
  std::string next;
  for (auto site = sites.rbegin(); site != sites.rend(); ++site) {
    if (site->call == "OCIStmtPrepare") next = site->text;
    if (AllocatesStatement(*site)) site->text = std::exchange(next, "");
  }
}

}  // namespace

std::vector<CallSite> CallSites(const std::vector<std::string>& calls) {
  std::vector<CallSite> sites;
  std::map<std::string, std::string> texts;
  std::string last;
  for (const std::string& whole : calls) {
    CallSite& site = sites.emplace_back(whole.substr(0, whole.find('(')), whole, "");
    const std::string statement = StatementOf(whole);
    if (site.call == "OCIStmtPrepare") texts[statement] = PreparedText(whole);
    if (!statement.empty()) site.text = last = texts[statement];
    if (IsAbout(whole, "(par#") || IsAbout(whole, "(bind#")) site.text = last;
  }
  GiveAllocationsTheirTexts(sites);
  return sites;
}

}  // namespace sweep
