#include "Arguments.h"
#include "Commands.h"
#include "StandardOutput.h"
#include "host/JsonSchema.h"

namespace qosoc {
namespace {

int run(const Arguments& /*arguments*/) {
  print(host::nativeJsonSchema());
  return done;
}

constexpr std::string_view synopsis[] = {""};

}  // namespace

constinit const Command schemaCommand{
    .name = "schema",
    .summary = "print the JSON Schema of the native document",
    .synopsis = synopsis,
    .about = R"(
Prints a JSON Schema, draft 2020-12, of the native document, for editors and other validators. It is made
from the table by which this program reads the document, and refuses what `check` refuses for its shape,
but for what no such schema can see: a member or a key that is there twice, also where a name or a text
stands beside its number (`qos` and `1`, `7` and `"7"`), and a whole number that is written with a
fraction or an exponent (`40.0`, `4e1`).
)",
    .operands = {},
    .options = {},
    .example = R"(
  $ cat router.json
  {"queue-names": {"VOICE": 256}}
  $ qosoc schema > native.schema.json
  $ jsonschema -i router.json native.schema.json
  256: 256 is greater than the maximum of 255
)",
    .exitCodes = exitCodesOfText,
    .run = run,
};

}  // namespace qosoc
