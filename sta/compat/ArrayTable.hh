// Debian's opensta-dev package ships Graph.hh, which includes this header,
// without shipping it. Only the declarations Graph.hh names are given here:
// the table's methods are defined in libOpenSTA.a. Code of this system must
// not depend on the layout of sta::Graph beyond its out-of-line methods.
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
  ArrayBlock<TYPE> **prev_blocks_;
  void *free_blocks_[3];
};

} // namespace sta
