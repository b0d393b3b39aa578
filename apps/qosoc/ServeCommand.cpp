// The row of `serve`. The server itself is a program of its own beside this one, so that the other
// commands start without gRPC.
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <string>
#include <vector>

#include "Arguments.h"
#include "Commands.h"
#include "Shown.h"

namespace qosoc {
namespace {

constexpr const char* program = "qosoc-serve";

// Where the program lies: beside this one, as it is built, or where it is installed.
std::string found() {
  std::error_code error;
  const auto own = std::filesystem::read_symlink("/proc/self/exe", error).parent_path();
  for (const auto& folder : {own, own / "../libexec/qosoc"}) {
    std::string path = folder / program;
    if (::access(path.c_str(), X_OK) == 0) return path;
  }
  throw UsageError(std::string(program) +
                   " is not beside qosoc: it is built where gRPC is there (QOS_BUILD_GNMI)");
}

// Requires: the arguments are good; the other program takes them apart again.
int run(const Arguments& arguments) {
  const std::string path = found();
  std::vector<std::string> words{"qosoc", std::string(serveCommand.name)};
  words.insert(words.end(), arguments.words().begin(), arguments.words().end());
  std::vector<char*> pointers;
  for (std::string& word : words) pointers.push_back(word.data());
  pointers.push_back(nullptr);
  ::execv(path.c_str(), pointers.data());
  throw UsageError(path + ": cannot be run: " + std::strerror(errno));
}

constexpr std::string_view synopsis[] = {"NATIVE.json [OPTIONS]"};
constexpr Operand operands[] = {{.name = "NATIVE.json", .kind = Kind::file}};

constexpr Option options[] = {
    {.name = "--listen",
     .value = "HOST:PORT",
     .kind = Kind::other,
     .help = "where clients connect, always given; the port 0 is any that is free"},
    {.name = "--plaintext", .help = "serve without TLS, as on a loopback address"},
    {.name = "--changes",
     .value = "FILE|-|unix:PATH",
     .kind = Kind::fileOrDash,
     .help =
         "apply a stream of changes, a JSON Patch a line: of a file, of standard input, or of a "
         "writer that connects to the socket PATH, which answers each line with a line"},
    {.name = "--initial",
     .value = "FILE",
     .kind = Kind::file,
     .help = "start from the model of an earlier life, in the format `model`; what the native side "
             "no longer stands for is swept out of it"},
    {.name = "--stamp-file",
     .value = "FILE",
     .kind = Kind::file,
     .help =
         "keep in a file how far timestamps may have gone, so that they grow over restarts, too"},
    noAugmentsOption,
    withHelp(stateOption, "serve each `config` a second time, as the `state` beside it"),
    withHelp(interfaceRefOption,
             "serve where each interface is: its `interface-ref`, and /interfaces"),
    {.name = "--no-retry-roots",
     .help =
         "leave a root out that raised at the start, also after a change of what it raised over"},
    {.name = "--quiet", .help = "log warnings and errors alone"},
};

constexpr ExitCode exitCodes[] = {
    {done, "ended by SIGTERM or SIGINT"},
    {nothingDone, "bad usage or bad input, or the address can't be listened to: nothing served"},
};

}  // namespace

constinit const Command serveCommand{
    .name = "serve",
    .summary = "serve the model by gNMI, in step with a stream of changes",
    .synopsis = synopsis,
    .about = R"(
Translates a native QoS configuration, and serves the OpenConfig QoS model to gNMI clients: Capabilities, Get and Subscribe. Each change line is one commit, of which no client sees half.
`serving HOST:PORT` on standard output says that clients may connect. Log lines go to standard error.
)",
    .operands = operands,
    .options = options,
    .example = R"(
  $ qosoc serve router.json --listen 127.0.0.1:9339 --plaintext --changes unix:/run/qosoc.socket
  serving 127.0.0.1:9339
)",
    .notes = R"(
The socket has one writer at a time, and `busy` for a second one. It answers `applied N`, `refused N POINTER
REASON`, or `raised N TEXT` where the line was applied and a handler raised; N counts the lines of the
connection. A line without an end, at the end of the connection, is dropped.

A change line by which a comment with a value of the wrong type is read is refused. Set is not served: the
model follows the native configuration.
)",
    .exitCodes = exitCodes,
    .run = run,
};

}  // namespace qosoc
