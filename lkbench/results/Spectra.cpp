// SPDX-License-Identifier: Apache-2.0
#include "lkbench/results/Spectra.h"

#include <algorithm>
#include <cctype>

#include "lkbench/workload/PercentileSpectrum.h"

namespace lkbench {
namespace {

// A name for a file: ASCII letters and digits in small, a dash for whatever stands between them.
std::string Slug(const std::string& name) {
  std::string slug;
  for (const char c : name) {
    const auto byte = static_cast<unsigned char>(c);
    if (byte < 0x80 && std::isalnum(byte) != 0)
      slug += static_cast<char>(std::tolower(byte));
    else if (!slug.empty() && slug.back() != '-')
      slug += '-';
  }
  if (slug.ends_with('-')) slug.pop_back();
  return slug;
}

class Collector {
 public:
  void Add(const PhaseRecord& phase, std::size_t number, const XactTotals& totals) {
    Add(phase, number, totals, "response", totals.response);
    if (phase.settings.rate > 0) Add(phase, number, totals, "service", totals.service);
  }
  std::vector<SpectrumFile> Files() { return std::move(m_files); }

 private:
  void Add(const PhaseRecord& phase, std::size_t number, const XactTotals& totals, const std::string& time,
           const HistogramData& times) {
    if (times.Count() == 0) return;
    const std::string of = std::to_string(number) + '-' + Slug(phase.settings.name) + '.' + Slug(totals.name);
    m_files.push_back({Unused(of, '.' + time + ".hgrm"),
                       PercentileSpectrum(times) + "#[Values are milliseconds: " + time + " time of " +
                           totals.name + " in phase " + phase.settings.name + "]\n"});
  }
  // Two transactions may have names that differ in nothing but signs.
  std::string Unused(const std::string& name, const std::string& ending) const {
    std::string unused = name + ending;
    for (int next = 2; std::ranges::count(m_files, unused, &SpectrumFile::name) > 0; ++next)
      unused = (name + '-').append(std::to_string(next)).append(ending);
    return unused;
  }

  std::vector<SpectrumFile> m_files;
};

}  // namespace

std::vector<SpectrumFile> SpectrumFiles(const RunRecord& record) {
  Collector collector;
  for (std::size_t number = 0; number < record.phases.size(); ++number) {
    const PhaseRecord& phase = record.phases[number];
    for (const XactTotals& totals : phase.measured.xacts) collector.Add(phase, number + 1, totals);
    XactTotals total = phase.measured.total;
    total.name = "total";
    collector.Add(phase, number + 1, total);
  }
  return collector.Files();
}

}  // namespace lkbench
