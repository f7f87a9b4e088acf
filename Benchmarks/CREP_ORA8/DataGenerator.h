// SPDX-License-Identifier: Apache-2.0
// A data generator makes the values of one column, row after row. A value is handed out as a pointer into the
// generator's own storage, valid until the next one is made, with its length in bytes, or -1 for NULL: a
// double for numbers, narrow text without its terminator for strings and dates. A generator belongs to its
// bind; the random source belongs to the loader. One thread.
#pragma once

#include <string>

#include "core/LKTypes.h"
#include "core/Random.h"

class IDataGenerator {
 public:
  IDataGenerator() = default;
  virtual ~IDataGenerator() = default;
  IDataGenerator(const IDataGenerator&) = delete;
  IDataGenerator& operator=(const IDataGenerator&) = delete;

  virtual void* GenerateData(int* poutLen) = 0;  // poutLen may be null
  virtual void SetStartingRow(__int64 nStartingRow) { m_nStartingRow = nStartingRow; }
  virtual void* GetValue() { return nullptr; }  // the last value, without making one

  void SetAllowNull(bool bAllowNull) { m_bAllowNull = bAllowNull; }
  void SetRandGen(CRandGen* pRandGen) { m_pRandGen = pRandGen; }
  // Five times in a hundred true when NULL is allowed; draws only then.
  bool NeedNull() { return m_bAllowNull && m_pRandGen->UnifInt(1, 100) < 6; }

  bool m_bAllowNull;  // not set here: whoever creates a generator calls SetAllowNull
  __int64 m_nStartingRow = 0;
  CRandGen* m_pRandGen = nullptr;
};

// 1, 2, 3, … or from the starting row on.
class CSequenceGenerator : public IDataGenerator {
 public:
  void* GenerateData(int* poutLen) override;
  void SetStartingRow(__int64 nStartingRow) override;
  void* GetValue() override { return &m_fSequence; }
  void SetStep(int nStep) { m_nStep = nStep; }
  int GetStep() const { return m_nStep; }

  double m_fSequence = 0.0;
  __int64 m_nNextValue = 1;
  int m_nStep = 1;
};

// A number that fits the column's precision and scale. It is not rounded to the scale: the database does
// that.
class CNumberGenerator : public IDataGenerator {
 public:
  // kept: eDecmial and m_nPercision are so spelt, hosts and siblings know them by these names.
  enum eNumericType { eDecmial = 0, eFloat = 1, eReal = 2, eInt = 3 };
  // The scale byte -127 of floating-point and unconstrained columns, as it arrives here: without its sign.
  static constexpr int FIXED_SCALE = 129;

  CNumberGenerator(int nPrecision, int nScale) : m_nPercision(nPrecision), m_nScale(nScale) {}
  void* GenerateData(int* poutLen) override;
  void* GetValue() override { return &m_fValue; }
  eNumericType GetTypeCode() const;

  double m_fValue = 0.0;
  int m_nPercision;
  int m_nScale;

 private:
  double MakeDecimal();
};

// 1 to nMaxLength letters.
class CStrGenerator : public IDataGenerator {
 public:
  explicit CStrGenerator(int nMaxLength);
  ~CStrGenerator() override;
  void* GenerateData(int* poutLen) override;
  void* GetValue() override { return m_lpValue; }
  int AllocStr();  // a new zeroed buffer of m_nMaxLength bytes in place of the old one; 0 when there is no
                   // memory

  int m_nMaxLength;  // of the buffer: terminator included
  char* m_lpValue = nullptr;

 private:
  std::string m_strText;  // what the random source fills, kept for its memory
};

// A date from 1950-01-01 00:00:00 to 2500-12-30 12:12:12 as "%Y/%m/%d %H:%M:%S".
class CDateGenerator : public IDataGenerator {
 public:
  void* GenerateData(int* poutLen) override;
  void* GetValue() override { return m_szDate; }

  char m_szDate[35] = {};
};
