// ZRDocument: how the socket layer addresses one instance by its number, and
// DList, the server's list of them (newest first).
#pragma once

#include <cstdint>

class CZephrinPlugInDoc;
class ZRServer;

class ZRDocument {
 public:
  void SetState(int32_t id, ZRServer* server, CZephrinPlugInDoc* document, unsigned long window) {
    m_nId = id;
    m_pServer = server;
    m_pDocument = document;
    m_Window = window;
  }
  CZephrinPlugInDoc* GetDocument() const { return m_pDocument; }
  ZRServer* GetServer() const { return m_pServer; }
  int32_t GetDocID() const { return m_nId; }
  void Set() { m_nSet = 1; }  // the first SetWindow has come
  int32_t IsSet() const { return m_nSet; }
  void SetWindow(unsigned long window) { m_Window = window; }
  unsigned long GetWindow() const { return m_Window; }

 private:
  CZephrinPlugInDoc* m_pDocument = nullptr;
  ZRServer* m_pServer = nullptr;
  int32_t m_nId = 0;
  int32_t m_nSet = 0;
  unsigned long m_Window = 0;
};

class DNode {
 public:
  DNode* m_pPrev = nullptr;
  DNode* m_pNext = nullptr;
  ZRDocument* m_pDocument = nullptr;
  int32_t m_nId = 0;
  ZRDocument* GetDocument() const { return m_pDocument; }
};

class DList {
 public:
  DList() = default;
  DList(const DList&) = delete;
  DList& operator=(const DList&) = delete;
  ~DList();

  // Pushes at the head: a second entry with the same id hides the first.
  void Insert(ZRDocument* document, int32_t id);
  // The first node with the id from the head, or null.
  DNode* Find(int32_t id) const;
  // Unlinks and frees the first node with the id; nothing if there is none.
  void Delete(int32_t id);
  int Count() const;

 private:
  DNode* m_pHead = nullptr;
};
