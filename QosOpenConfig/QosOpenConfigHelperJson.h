// RapidJSON as the comment codec needs it: with assertions of its own, in every build. A comment
// that holds a value of the wrong type ends the process as a failed one does. Only the codec
// includes this, before anything else of RapidJSON.
//
// The namespace keeps this copy apart. A host may link RapidJSON with other settings, or with no
// assertions at all, and of two inline functions of one name the linker would keep either.
#pragma once

#ifdef RAPIDJSON_RAPIDJSON_H_
#error "RapidJSON came in before with settings of its own: its assertions may be off"
#endif

namespace QosOc::Helper {

// Says which expression failed, on standard error, and aborts.
[[noreturn]] void jsonAssertionFailed(const char* expression);

}  // namespace QosOc::Helper

// Also where the command line defines them.
#undef RAPIDJSON_NAMESPACE
#undef RAPIDJSON_NAMESPACE_BEGIN
#undef RAPIDJSON_NAMESPACE_END
#undef RAPIDJSON_ASSERT
#undef RAPIDJSON_ASSERT_THROWS
#undef RAPIDJSON_NOEXCEPT_ASSERT
#undef RAPIDJSON_PARSE_DEFAULT_FLAGS
#undef RAPIDJSON_WRITE_DEFAULT_FLAGS
// RapidJSON's vector code accepts some control characters in a string.
#undef RAPIDJSON_SSE2
#undef RAPIDJSON_SSE42
#undef RAPIDJSON_NEON

#define RAPIDJSON_NAMESPACE QosOc::Helper::rapidjson
#define RAPIDJSON_NAMESPACE_BEGIN \
  namespace QosOc::Helper {       \
  namespace rapidjson {
#define RAPIDJSON_NAMESPACE_END \
  }                             \
  }
#define RAPIDJSON_ASSERT(x) ((x) ? static_cast<void>(0) : ::QosOc::Helper::jsonAssertionFailed(#x))
#define RAPIDJSON_NOEXCEPT_ASSERT(x) RAPIDJSON_ASSERT(x)

#include <rapidjson/reader.h>
#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>
