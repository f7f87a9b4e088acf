// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <fstream>
#include <string>

#include "core/LKConfig.h"
#include "tests/support/TemporaryFolder.h"

namespace {

class ConfigFile : public testing::Test {
 protected:
  int Load(const std::string& text) {
    const std::filesystem::path path = m_folder.Path() / "host.ini";
    std::ofstream(path) << text;
    return m_config.LoadFile(path.wstring().c_str());
  }
  long RowsPerCommit() { return m_config.GetProfileInt(L"Settings", L"RowsPerCommit", 500); }

  test_support::TemporaryFolder m_folder;
  CLKConfig m_config;
};

}  // namespace

TEST_F(ConfigFile, WithoutAKeyGivesTheDefault) {
  EXPECT_EQ(RowsPerCommit(), 500);
  EXPECT_EQ(Load("[Other]\nRowsPerCommit=7\n"), 1);
  EXPECT_EQ(RowsPerCommit(), 500);
  EXPECT_EQ(m_config.GetProfileString(L"Settings", L"Name", L"none"), LKString(L"none"));
}

TEST_F(ConfigFile, GivesTheValuesOfItsSections) {
  EXPECT_EQ(Load("RowsPerCommit=1\n[Settings]\nRowsPerCommit=250\nName=Gr\xC3\xBC\xC3\x9F"
                 "e $HOME\n[Other]\nRowsPerCommit=9\n"),
            1);
  EXPECT_EQ(RowsPerCommit(), 250);
  EXPECT_EQ(m_config.GetProfileString(L"Settings", L"Name", L""), LKString(L"Gr\u00FC\u00DFe $HOME"));
}

TEST_F(ConfigFile, TakesWhatIsNoIntegerForMissing) {
  Load("[Settings]\nRowsPerCommit=many\n");
  EXPECT_EQ(RowsPerCommit(), 500);
}

TEST_F(ConfigFile, KeepsItsContentWhenAFileCannotBeRead) {
  Load("[Settings]\nRowsPerCommit=250\n");
  EXPECT_EQ(m_config.LoadFile((m_folder.Path() / "missing.ini").wstring().c_str()), 0);
  EXPECT_EQ(RowsPerCommit(), 250);
}

TEST_F(ConfigFile, ReplacesItsContentByThatOfAFile) {
  m_config.WriteProfileInt(L"Settings", L"RowsPerCommit", 3);
  Load("[Other]\nA=1\n");
  EXPECT_EQ(RowsPerCommit(), 500);
}

TEST_F(ConfigFile, HoldsWhatIsWritten) {
  m_config.WriteProfileInt(L"Settings", L"RowsPerCommit", -4);
  m_config.WriteProfileString(L"Results", L"Directory", L"/tmp/a b \"c\"");
  EXPECT_EQ(RowsPerCommit(), -4);
  EXPECT_EQ(m_config.GetProfileString(L"Results", L"Directory", L""), LKString(L"/tmp/a b \"c\""));
}

TEST(Config, IsOneForTheProcess) { EXPECT_EQ(LKGetConfig(), LKGetConfig()); }
