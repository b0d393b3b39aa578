// RapidJSON under a namespace of the host's own: the program may hold a second copy of it, built
// with other settings, and the two must not be mixed up by the linker. All host code includes it
// here.
#pragma once

#define RAPIDJSON_NAMESPACE host::rapidjson
#define RAPIDJSON_NAMESPACE_BEGIN \
  namespace host {                \
  namespace rapidjson {
#define RAPIDJSON_NAMESPACE_END \
  }                             \
  }

#include <rapidjson/document.h>
#include <rapidjson/error/en.h>
#include <rapidjson/prettywriter.h>
#include <rapidjson/reader.h>
#include <rapidjson/stringbuffer.h>
