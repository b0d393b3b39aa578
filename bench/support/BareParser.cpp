#include "support/BareParser.h"

#include "host/JsonStream.h"
#include "support/Check.h"

namespace Bench {

void parseBarely(std::FILE* file) {
  host::JsonStream stream(file);
  host::rapidjson::BaseReaderHandler<> nothing;
  require(host::parseJson(stream, nothing).reason.empty(), "a document by the bare parser");
}

}  // namespace Bench
