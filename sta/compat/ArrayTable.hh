// Debian's opensta-dev package ships Graph.hh, which includes this header,
// without shipping it. Only the declarations Graph.hh needs are given here;
// the table's methods are defined in libOpenSTA.a. The data members give the
// table the library's size (40 bytes), so that sizeof(sta::Graph) and the
// offsets of its later members agree with the library (0x238 bytes).
#pragma once
#include <cstddef>
#include "ObjectId.hh"

namespace sta {

template <class TYPE>
class ArrayBlock;

template <class TYPE>
class ArrayTable
{
public:
  ArrayTable();
  ~ArrayTable();
  void make(uint32_t count, TYPE *&array, ObjectId &id);
  void destroy(ObjectId id, uint32_t count);
  TYPE *pointer(ObjectId id) const;
  TYPE &ref(ObjectId id) const;
  size_t size() const { return size_; }
  void clear();

private:
  size_t size_;
  BlockIdx free_block_idx_;
  ObjectIdx free_idx_;
  size_t blocks_size_;
  size_t blocks_capacity_;
  ArrayBlock<TYPE> **blocks_;
};

static_assert(sizeof(ArrayTable<float>) == 40, "ArrayTable must match libOpenSTA.a");

} // namespace sta
