// qosoc-serve: what `qosoc serve` runs, with the same arguments.
#include <grpcpp/security/server_credentials.h>

#include <stdexcept>
#include <string>
#include <vector>

#include "Address.h"
#include "Device.h"
#include "Loop.h"
#include "apps/qosoc/Arguments.h"
#include "apps/qosoc/Commands.h"
#include "apps/qosoc/Output.h"
#include "apps/qosoc/Reported.h"
#include "apps/qosoc/Shown.h"
#include "apps/qosoc/StandardOutput.h"
#include "gnmi/Server.h"
#include "host/JsonWriter.h"

namespace {

using qosoc::Device;
using qosoc::UsageError;

std::string required(const qosoc::Arguments& arguments, const char* option) {
  const auto value = arguments.value(option);
  if (!value) throw UsageError(std::string(option) + " is missing");
  return *value;
}

// What the arguments ask for. All of them are checked before any file is read.
struct Request {
  explicit Request(const qosoc::Arguments& arguments)
      : source{*arguments.operand(), arguments.value("--initial"),
               arguments.has("--no-retry-roots") ? host::KeptRoots::LeftOut::stays
                                                 : host::KeptRoots::LeftOut::returns,
               arguments.value("--stamp-file")},
        address(required(arguments, "--listen")),
        changes(arguments.value("--changes")),
        view(qosoc::Shown(arguments).view),
        isQuiet(arguments.has("--quiet")) {
    if (!arguments.has("--plaintext")) {
      throw UsageError("--plaintext is missing: the server has no TLS yet");
    }
    if (source.native == "-" && changes == "-") {
      throw UsageError("standard input is NATIVE.json or --changes, not both");
    }
  }

  Device::Source source;
  qosoc::Address address;
  std::optional<std::string> changes;
  host::ViewOptions view;
  bool isQuiet;
};

std::string text(std::uint64_t number, const Device::Answer& answer) {
  using Kind = Device::Answer::Kind;
  const std::string count = ' ' + std::to_string(number);
  if (answer.kind == Kind::applied) return "applied" + count;
  if (answer.kind == Kind::raised) return "raised" + count + ' ' + answer.text;
  host::JsonWriter pointer(host::Layout::compact);
  pointer.text(answer.pointer);
  return "refused" + count + ' ' + pointer.take() + ' ' + answer.text;
}

server::Server makeServer(const Request& request, const host::Store& store,
                          const host::View& view) {
  try {
    return server::Server(
        store, view,
        {request.address.withPort(request.address.port), grpc::InsecureServerCredentials()});
  } catch (const std::runtime_error& error) {
    throw UsageError(std::string("--listen: ") + error.what());
  }
}

int serve(const qosoc::Arguments& arguments) {
  const Request request(arguments);
  const qosoc::Log log(request.isQuiet);
  qosoc::holdSignals();
  Device device(request.source, log);
  const host::View view(request.view);
  server::Server server = makeServer(request, device.store(), view);
  qosoc::Loop loop(request.changes, log, [&](std::uint64_t number, std::string_view line) {
    return text(number, device.line(number, line, [&] { server.committed(); }));
  });
  qosoc::print("serving " + request.address.withPort(server.port()) + '\n');
  loop.run();
  server.stop();
  return qosoc::done;
}

}  // namespace

int main(int argc, char** argv) {
  std::vector<std::string> words(argv + 1, argv + argc);
  if (!words.empty() && words.front() == qosoc::serveCommand.name) words.erase(words.begin());
  const std::string help = qosoc::helpHint(qosoc::serveCommand.name);
  return qosoc::reported(
      [&] {
        const qosoc::Arguments arguments(words, qosoc::serveCommand);
        arguments.checkOperands();
        return serve(arguments);
      },
      help, help);
}
