// SPDX-License-Identifier: Apache-2.0
// How the columns of the generated tables spread: their number between its bounds, their types by weight.
#include <array>
#include <string>
#include <vector>

#include "Benchmarks/CREP_ORA8/CREP_CreateObjects_ORA8.h"
#include "SchemaFixture.h"
#include "Statistics.h"

namespace {

using statistics::HasShares;
using statistics::IsUniform;
using statistics::Tally;

// A table is written down as one letter per column: its type.
class TableSpread : public plugin_test::SchemaTest {
 protected:
  TableSpread() {
    SetColumns({Column(L"N", 5, false), Column(L"D", 1, false), Column(L"C", 0, false),
                Column(L"R", 3, false), Column(L"T", 11, false)});
  }

  static constexpr char kTypes[] = "NDCRT";
  static inline const std::vector<double> kWeights = {5, 1, 0, 3, 11};
  static long IndexOf(char cType) { return static_cast<long>(std::string(kTypes).find(cType)); }

  // The column types of a table, read from its text: "Column1 N NOT NULL,Column2 D NOT NULL, PRIMARY
  // KEY(ID))".
  std::string Types(int nTable) {
    m_xact.BuildCreationSQL(nTable);
    const std::string sql = m_xact.GetExecuteSQL().ToChar();
    std::string types;
    for (size_t nAt = sql.find("Column"); nAt != std::string::npos; nAt = sql.find("Column", nAt + 1))
      types += sql.at(sql.find(' ', nAt) + 1);
    return types;
  }

  CXact_Create_RepTables m_xact;
};

// kept: the setting is recorded with the tables, the number of columns is uniform under all of them.
TEST_F(TableSpread, TheNumberOfColumnsIsUniformWhateverTheDistributionSetting) {
  using Settings = CRepBenchmarkProperties;
  SetColumnNumbers(3, 12);
  for (const auto eType :
       {Settings::NONE_DISTRIBUTION, Settings::ABSOLUTE_DISTRIBUTION, Settings::UNIFORM_DISTRIBUTION,
        Settings::NEGEXP_DISTRIBUTION, Settings::NORMAL_DISTRIBUTION, Settings::POISSON_DISTRIBUTION}) {
    m_properties.GetRepBenchmarkProperties().SetColumnDistribution(eType);
    Bind(m_xact);
    Tally numbers(3, 12);
    for (int i = 0; i < 2000; ++i) numbers.Add(static_cast<long>(Types(1).size()));
    EXPECT_TRUE(IsUniform(numbers)) << eType;
  }
}

TEST_F(TableSpread, TheTypesOfOneTableComeByWeight) {
  SetColumnNumbers(20000, 20000);
  Bind(m_xact);
  for (const int nTable : {1, 2, 777}) {
    Tally types(0, 4);
    for (const char cType : Types(nTable)) types.Add(IndexOf(cType));
    EXPECT_TRUE(HasShares(types, kWeights)) << nTable;
  }
}

// The table number seeds the choice: over many tables each place has the types by weight, and a place tells
// nothing about the one after it, nor a table about the one after it.
TEST_F(TableSpread, TheTypesOfEachPlaceComeByWeightOverManyTables) {
  constexpr size_t kColumns = 4;
  SetColumnNumbers(kColumns, kColumns);
  Bind(m_xact);
  std::vector<Tally> places(kColumns, Tally(0, 4));
  Tally neighbours(0, 24);
  Tally successors(0, 24);
  long nFirstBefore = IndexOf(Types(20001).front());
  for (int nTable = 1; nTable <= 20000; ++nTable) {
    const std::string types = Types(nTable);
    for (size_t nPlace = 0; nPlace < kColumns; ++nPlace) places[nPlace].Add(IndexOf(types[nPlace]));
    neighbours.Add(5 * IndexOf(types[0]) + IndexOf(types[1]));
    successors.Add(5 * nFirstBefore + IndexOf(types[0]));
    nFirstBefore = IndexOf(types[0]);
  }
  std::vector<double> pairs;
  for (const double fFirst : kWeights)
    for (const double fSecond : kWeights) pairs.push_back(fFirst * fSecond);
  for (const Tally& place : places) EXPECT_TRUE(HasShares(place, kWeights));
  EXPECT_TRUE(HasShares(neighbours, pairs));
  EXPECT_TRUE(HasShares(successors, pairs));
}

}  // namespace
