// SPDX-License-Identifier: Apache-2.0
// CTRKArray<T, ARG> is a growable array. It owns its storage, never what its elements point to. Not
// thread-safe.
#pragma once

#include <wx/object.h>

#include <stdexcept>
#include <vector>

#include "core/LKString.h"

template <class T, class ARG>
class CTRKArray : public wxObject {
 public:
  using iterator = typename std::vector<T>::iterator;
  using const_iterator = typename std::vector<T>::const_iterator;

  iterator begin() { return m_arrayimpl.begin(); }
  iterator end() { return m_arrayimpl.end(); }
  const_iterator begin() const { return m_arrayimpl.begin(); }
  const_iterator end() const { return m_arrayimpl.end(); }

  long GetSize() const { return static_cast<long>(m_arrayimpl.size()); }
  long GetCount() const { return GetSize(); }
  bool IsEmpty() const { return m_arrayimpl.empty(); }
  long GetUpperBound() const { return GetSize() - 1; }
  void SetSize(long nSize) { m_arrayimpl.resize(static_cast<size_t>(nSize)); }
  void RemoveAll() { m_arrayimpl.clear(); }

  // REQUIRES for every index below: 0 <= index <= GetUpperBound(), but for InsertAt; else std::out_of_range
  // is thrown.
  T GetAt(long nIndex) const { return m_arrayimpl.at(static_cast<size_t>(nIndex)); }
  void SetAt(long nIndex, ARG value) { m_arrayimpl.at(static_cast<size_t>(nIndex)) = value; }
  T& operator[](long nIndex) { return m_arrayimpl.at(static_cast<size_t>(nIndex)); }
  const T& operator[](long nIndex) const { return m_arrayimpl.at(static_cast<size_t>(nIndex)); }

  long Add(ARG value) {  // returns the new element's index
    m_arrayimpl.push_back(value);
    return GetUpperBound();
  }
  long Append(const CTRKArray& other);  // returns the index of the first appended element
  void Copy(const CTRKArray& other) { m_arrayimpl = other.m_arrayimpl; }
  void InsertAt(long nIndex, ARG value, long nCount = 1);  // past the end: grows with empty elements first
  void RemoveAt(long nIndex, long nCount = 1);             // all of the elements must be there

 private:
  static void Check(bool bInside) {
    if (!bInside) throw std::out_of_range("CTRKArray: no such element");
  }

  std::vector<T> m_arrayimpl;
};

template <class T, class ARG>
long CTRKArray<T, ARG>::Append(const CTRKArray& other) {
  const long nFirst = GetSize();
  const std::vector<T> copy = other.m_arrayimpl;  // other may be this array
  m_arrayimpl.insert(m_arrayimpl.end(), copy.begin(), copy.end());
  return nFirst;
}

template <class T, class ARG>
void CTRKArray<T, ARG>::InsertAt(long nIndex, ARG value, long nCount) {
  Check(nIndex >= 0 && nCount >= 0);
  if (nIndex > GetSize()) SetSize(nIndex);
  m_arrayimpl.insert(m_arrayimpl.begin() + nIndex, static_cast<size_t>(nCount), value);
}

template <class T, class ARG>
void CTRKArray<T, ARG>::RemoveAt(long nIndex, long nCount) {
  Check(nIndex >= 0 && nCount >= 0 && nCount <= GetSize() - nIndex);
  m_arrayimpl.erase(m_arrayimpl.begin() + nIndex, m_arrayimpl.begin() + nIndex + nCount);
}

using CTRKPtrArray = CTRKArray<void*, void*>;

class CTRKStringArray : public CTRKArray<LKString, LKString> {
 public:
  CTRKStringArray() = default;
};
