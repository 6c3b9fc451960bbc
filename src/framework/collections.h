// Lists, maps and the growable word array of the framework.
//
// A list position is an iterator object: loops run from GetHeadPosition until
// the position equals GetEnd. Removal never deletes what pointers refer to.
#pragma once

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <list>
#include <map>
#include <stdexcept>
#include <vector>

#include "framework/cstring.h"
#include "framework/objects.h"

template <class TYPE, class ARG>
class CList {
 public:
  // The list is mutable through const references because walking a const
  // container with positions is the framework's idiom (printing, drawing).
  using POSITION = typename std::list<TYPE>::iterator;

  CList() = default;
  explicit CList(int /*block size hint*/) {}

  int GetCount() const { return static_cast<int>(m_list.size()); }
  bool IsEmpty() const { return m_list.empty(); }

  POSITION GetHeadPosition() const { return m_list.begin(); }
  POSITION GetTailPosition() const { return m_list.empty() ? m_list.end() : std::prev(m_list.end()); }
  POSITION GetEnd() const { return m_list.end(); }

  TYPE& GetNext(POSITION& position) const {
    CheckPosition(position);
    TYPE& value = *position;
    ++position;
    return value;
  }
  // Stepping back from the head gives GetEnd.
  TYPE& GetPrev(POSITION& position) const {
    CheckPosition(position);
    TYPE& value = *position;
    position = position == m_list.begin() ? m_list.end() : std::prev(position);
    return value;
  }
  TYPE& GetAt(POSITION position) const {
    CheckPosition(position);
    return *position;
  }
  void SetAt(POSITION position, ARG value) {
    CheckPosition(position);
    *position = TYPE(value);
  }

  TYPE& GetHead() const {
    CheckNotEmpty();
    return m_list.front();
  }
  TYPE& GetTail() const {
    CheckNotEmpty();
    return m_list.back();
  }

  POSITION AddHead(ARG value) {
    m_list.emplace_front(value);
    return m_list.begin();
  }
  POSITION AddTail(ARG value) {
    m_list.emplace_back(value);
    return std::prev(m_list.end());
  }
  void AddTail(const CList& other) { m_list.insert(m_list.end(), other.m_list.begin(), other.m_list.end()); }
  POSITION InsertBefore(POSITION position, ARG value) { return m_list.emplace(position, value); }
  POSITION InsertAfter(POSITION position, ARG value) {
    CheckPosition(position);
    return m_list.emplace(std::next(position), value);
  }

  void RemoveAt(POSITION position) {
    CheckPosition(position);
    m_list.erase(position);
  }
  TYPE RemoveHead() {
    CheckNotEmpty();
    TYPE value = std::move(m_list.front());
    m_list.pop_front();
    return value;
  }
  TYPE RemoveTail() {
    CheckNotEmpty();
    TYPE value = std::move(m_list.back());
    m_list.pop_back();
    return value;
  }
  void RemoveAll() { m_list.clear(); }

  // End position when absent.
  POSITION Find(ARG value) const { return std::find(m_list.begin(), m_list.end(), TYPE(value)); }
  POSITION FindIndex(int n) const {
    if (n < 0 || n >= GetCount()) return m_list.end();
    return std::next(m_list.begin(), n);
  }

  // Range-for over the elements, for code that needs no positions.
  auto begin() const { return m_list.begin(); }
  auto end() const { return m_list.end(); }

 private:
  void CheckNotEmpty() const {
    if (m_list.empty()) throw std::invalid_argument("Collection is empty");
  }
  void CheckPosition(POSITION position) const {
    if (position == m_list.end()) throw std::out_of_range("list position at end");
  }

  mutable std::list<TYPE> m_list;
};

using CStringList = CList<CString, const char*>;
using CObList = CList<CObject*, CObject*>;
using CPtrList = CList<void*, void*>;

// Ordered map on a balanced tree; pointer keys compare as addresses.
template <class KEY, class VALUE>
class CMap {
 public:
  CMap() = default;
  explicit CMap(int /*size hint, no effect*/) {}

  int Lookup(const KEY& key, VALUE& value) const {
    auto it = m_map.find(key);
    if (it == m_map.end()) return 0;
    value = it->second;
    return 1;
  }
  void SetAt(const KEY& key, const VALUE& value) { m_map.insert_or_assign(key, value); }
  int RemoveKey(const KEY& key) { return static_cast<int>(m_map.erase(key)); }
  void RemoveAll() { m_map.clear(); }
  int GetCount() const { return static_cast<int>(m_map.size()); }
  bool IsEmpty() const { return m_map.empty(); }

  auto begin() const { return m_map.begin(); }
  auto end() const { return m_map.end(); }

 private:
  std::map<KEY, VALUE> m_map;
};

class CDWordArray {
 public:
  int GetSize() const { return static_cast<int>(m_data.size()); }
  void SetSize(int n, int /*grow by, no effect*/ = -1) { m_data.resize(n < 0 ? 0 : static_cast<size_t>(n)); }
  int Add(uint32_t value) {
    m_data.push_back(value);
    return GetSize() - 1;
  }
  // Indexing is checked (std::out_of_range) so that a bad index never reads
  // outside the array.
  uint32_t GetAt(int i) const { return m_data.at(static_cast<size_t>(i)); }
  void SetAt(int i, uint32_t value) { m_data.at(static_cast<size_t>(i)) = value; }
  uint32_t& ElementAt(int i) { return m_data.at(static_cast<size_t>(i)); }
  uint32_t& operator[](int i) { return ElementAt(i); }
  uint32_t operator[](int i) const { return GetAt(i); }
  void Append(const CDWordArray& other) { m_data.insert(m_data.end(), other.m_data.begin(), other.m_data.end()); }
  void Copy(const CDWordArray& other) { m_data = other.m_data; }
  void RemoveAll() { m_data.clear(); }

 private:
  std::vector<uint32_t> m_data;
};
