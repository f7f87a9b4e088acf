// SPDX-License-Identifier: Apache-2.0
#include "lkbench/Library.h"

#include <gmock/gmock.h>

#include <fstream>

#include "TemporaryFolder.h"
#include "lkbench/Failure.h"
#include "lkbench/Layers.h"
#include "lkbench/Roles.h"

namespace lkbench {
namespace {

using testing::AllOf;
using testing::HasSubstr;

template <class Body>
std::string Refusal(const Body& body) {
  try {
    body();
  } catch (const PrepareError& error) {
    return error.what();
  }
  return "not refused";
}

TEST(Library, AMissingFileIsNamedWithWhereItWasLookedFor) {
  EXPECT_EQ(Refusal([] { Library("plug-in", "/nowhere/libx.so", Visibility::kPrivate); }),
            "the plug-in is missing: looked for /nowhere/libx.so");
}

TEST(Library, AFileThatIsNoLibraryIsNamed) {
  const test_support::TemporaryFolder folder;
  const auto file = folder.Path() / "libx.so";
  std::ofstream(file) << "no library\n";
  EXPECT_THAT(
      Refusal([&] { Library("plug-in", file, Visibility::kPrivate); }),
      AllOf(HasSubstr("the plug-in " + file.string() + " cannot be loaded"), HasSubstr("file too short")));
}

TEST(Library, AMissingSymbolIsNamed) {
  const Library library("C library", "libm.so.6", Visibility::kPrivate);
  EXPECT_NE(library.Symbol("cos"), nullptr);
  EXPECT_THAT(Refusal([&] { library.Symbol("GetBenchmarkClassInfo"); }),
              HasSubstr("lacks the symbol GetBenchmarkClassInfo"));
}

TEST(Library, OfSeveralNamesNoneOfWhichIsThereAllAreTold) {
  const std::string line = Refusal([] {
    Library("client", {"libnone1.so", "libnone2.so", "/nowhere/libnone1.so"}, "here and there",
            Visibility::kGlobal);
  });
  EXPECT_EQ(line, "the client is missing: looked for libnone1.so, libnone2.so in here and there");
}

TEST(Library, TheFirstOfSeveralNamesThatIsThereIsTaken) {
  const Library library("maths", {"libnone1.so", "libm.so.6"}, "here", Visibility::kPrivate);
  EXPECT_EQ(library.Path().filename(), "libm.so.6");
}

TEST(Layers, WithoutAnOracleClientOneLineTellsWhatWasLookedForAndWhere) {
  setenv("ORACLE_HOME", "/opt/no/oracle", 1);
  const std::string line = Refusal([] { Layers(TargetKind::kOracle, {}); });
  unsetenv("ORACLE_HOME");
  EXPECT_THAT(line, AllOf(HasSubstr("libclntsh.so, libclntsh.so.23.1"), HasSubstr("libclntsh.so.11.1"),
                          HasSubstr("/opt/no/oracle/lib")));
}

TEST(Layers, AnOciLibraryThatLacksASymbolIsNamedWithTheSymbol) {
  EXPECT_THAT(Refusal([] {
                Layers(TargetKind::kMariaDb, {"/lib/x86_64-linux-gnu/libm.so.6", ""});
              }),
              AllOf(HasSubstr("undefined symbol: OCI"), HasSubstr("libm.so.6")));
}

}  // namespace
}  // namespace lkbench
