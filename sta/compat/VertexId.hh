// Debian's opensta-dev package ships Network.hh, which includes this header,
// without shipping it. A vertex identifier is an object-table identifier.
#pragma once
#include "ObjectId.hh"

namespace sta {
typedef ObjectId VertexId;
static constexpr VertexId vertex_id_null = object_id_null;
} // namespace sta
