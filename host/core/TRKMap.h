// SPDX-License-Identifier: Apache-2.0
// CTRKMap<K, V> is an ordered map with unique keys; iteration goes from the smallest key to the largest by
// operator< of K. A position is an iterator: it stays valid until its own entry is removed. Not thread-safe.
#pragma once

#include <wx/object.h>

#include <map>

#include "core/LKString.h"

template <class K, class V>
class CTRKMap : public wxObject {
 public:
  using position = typename std::map<K, V>::iterator;
  using const_position = typename std::map<K, V>::const_iterator;

  void SetAt(K key, V value) { m_TRKMap.insert_or_assign(key, value); }
  // kept: an int here and a bool there, as hosts are compiled against them.
  int Lookup(K key, V& value) const;  // 1 and the value, or 0 and `value` untouched
  bool RemoveKey(K key) { return m_TRKMap.erase(key) != 0; }
  void RemoveAll() { m_TRKMap.clear(); }

  long GetCount() const { return static_cast<long>(m_TRKMap.size()); }
  long GetSize() const { return GetCount(); }
  bool IsEmpty() const { return m_TRKMap.empty(); }

  position GetStartPosition() { return m_TRKMap.begin(); }
  const_position GetStartPosition() const { return m_TRKMap.begin(); }
  position PGetFirstAssoc() { return m_TRKMap.begin(); }
  const_position PGetFirstAssoc() const { return m_TRKMap.begin(); }
  position GetEndPosition() { return m_TRKMap.end(); }
  const_position GetEndPosition() const { return m_TRKMap.end(); }

  // Writes the entry at `pos` and advances; at the end it writes nothing and stays.
  void GetNextAssoc(position& pos, K& key, V& value);
  void GetNextAssoc(const_position& pos, K& key, V& value) const;
  void PGetNextAssoc(position& pos) { ++pos; }
  void PGetNextAssoc(const_position& pos) const { ++pos; }

 private:
  std::map<K, V> m_TRKMap;
  LKString m_szLastError;  // kept: unused; the size of a map is the one that plug-ins were built with
};

template <class K, class V>
int CTRKMap<K, V>::Lookup(K key, V& value) const {
  const auto found = m_TRKMap.find(key);
  if (found == m_TRKMap.end()) return 0;
  value = found->second;
  return 1;
}

template <class K, class V>
void CTRKMap<K, V>::GetNextAssoc(position& pos, K& key, V& value) {
  if (pos == m_TRKMap.end()) return;
  key = pos->first;
  value = pos->second;
  ++pos;
}

template <class K, class V>
void CTRKMap<K, V>::GetNextAssoc(const_position& pos, K& key, V& value) const {
  if (pos == m_TRKMap.end()) return;
  key = pos->first;
  value = pos->second;
  ++pos;
}

class CTRKMapStringToString : public CTRKMap<LKString, LKString> {
 public:
  CTRKMapStringToString() = default;
};
