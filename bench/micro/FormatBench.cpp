// SPDX-License-Identifier: Apache-2.0
// The texts of the workload's statements: LKString::Format against swprintf, what the search for specifiers
// costs of it, and what many threads that format the same kind of text cost each other.
#include <benchmark/benchmark.h>
#include <wx/regex.h>

#include <cwchar>

#include "core/LKString.h"

namespace {

constexpr wchar_t kSetList[] =
    L"ID=42,COLUMN1=12.500000,COLUMN2='AbCdEfGhIjKlMnOpQrStUvWxYz',COLUMN3='AbCdE'";

void TableName(benchmark::State& state) {
  LKString text;
  for ([[maybe_unused]] auto _ : state) text.Format(L"LK_REP_TABLE%d", 3);
}
void TableNamePrintf(benchmark::State& state) {
  wchar_t text[400];
  for ([[maybe_unused]] auto _ : state)
    benchmark::DoNotOptimize(std::swprintf(text, 400, L"LK_REP_TABLE%d", 3));
}
BENCHMARK(TableName)->Name("format/table name");
BENCHMARK(TableNamePrintf)->Name("swprintf/table name");

void Delete(benchmark::State& state) {
  const LKString table(L"LK_REP_TABLE3");
  LKString text;
  for ([[maybe_unused]] auto _ : state) text.Format(L"delete from %s where id = %lld", table, 42L);
}
void DeletePrintf(benchmark::State& state) {
  wchar_t text[400];
  for ([[maybe_unused]] auto _ : state)
    benchmark::DoNotOptimize(
        std::swprintf(text, 400, L"delete from %ls where id = %ld", L"LK_REP_TABLE3", 42L));
}
BENCHMARK(Delete)->Name("format/delete");
BENCHMARK(Delete)->Name("format/delete, lock shared")->Threads(1)->Threads(2)->Threads(64)->UseRealTime();
BENCHMARK(DeletePrintf)->Name("swprintf/delete");

void Update(benchmark::State& state) {
  const LKString table(L"LK_REP_TABLE3");
  const LKString list(kSetList);
  LKString text;
  for ([[maybe_unused]] auto _ : state) text.Format(L"update %s set %s where id = %lld", table, list, 42L);
}
void UpdatePrintf(benchmark::State& state) {
  wchar_t text[400];
  for ([[maybe_unused]] auto _ : state)
    benchmark::DoNotOptimize(
        std::swprintf(text, 400, L"update %ls set %ls where id = %ld", L"LK_REP_TABLE3", kSetList, 42L));
}
BENCHMARK(Update)->Name("format/update");
BENCHMARK(UpdatePrintf)->Name("swprintf/update");

void Search(benchmark::State& state) {
  wxRegEx pattern(kLKFormatSpecifier, wxRE_ADVANCED);
  const wxString text(L"delete from %s where id = %lld");
  size_t start = 0;
  size_t length = 0;
  for ([[maybe_unused]] auto _ : state)
    benchmark::DoNotOptimize(pattern.Matches(text) && pattern.GetMatch(&start, &length));
}
BENCHMARK(Search)->Name("format/search of one specifier");

}  // namespace
