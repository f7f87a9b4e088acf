// SPDX-License-Identifier: Apache-2.0
// The skeleton of a plug-in: a benchmark with two transactions on the tables that lkbench creates and loads.
// The host deletes what it is given. Each virtual user has its own copies of the transactions, used by one
// thread; the benchmark is shared by all users and holds nothing that changes.
#pragma once

#include "db/SSBenchmark.h"
#include "db/Xact.h"

class CExample : public CSSBenchmark {
  wxDECLARE_DYNAMIC_CLASS(CExample);

 public:
  CExample();
  int RegisterTransactions(int bSetup) override;
};

// What both transactions share: a row drawn among the loaded ones, and one statement on it that is measured.
class CExampleXact : public CXact {
  wxDECLARE_ABSTRACT_CLASS(CExampleXact);

 public:
  int Execute() override;  // 1, or 0 after a failure, which the driver has reported

 protected:
  // Runs the statement; the number of rows, or -1 after a failure.
  virtual long RunOn(const LKString& szTable, int nRow) = 0;
};

// Reads a row by its key.
class CExampleRead : public CExampleXact {
  wxDECLARE_DYNAMIC_CLASS(CExampleRead);

 public:
  CExampleRead();

 protected:
  long RunOn(const LKString& szTable, int nRow) override;
};

// Writes a row without changing it: the database locks it and logs the write.
class CExampleTouch : public CExampleXact {
  wxDECLARE_DYNAMIC_CLASS(CExampleTouch);

 public:
  CExampleTouch();

 protected:
  long RunOn(const LKString& szTable, int nRow) override;
};
