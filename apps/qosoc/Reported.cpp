#include "Reported.h"

#include <new>

#include "Commands.h"
#include "Input.h"
#include "Messages.h"
#include "Output.h"

namespace qosoc {
namespace {

int refuse(const std::string& line) {
  tell("qosoc: " + line);
  return nothingDone;
}

}  // namespace

int reported(const std::function<int()>& run, const std::string& help, const std::string& allHelp) {
  try {
    return run();
  } catch (const UnknownCommand& error) {
    return refuse(error.what() + allHelp);
  } catch (const UsageError& error) {
    return refuse(error.what() + help);
  } catch (const InputError& error) {
    for (const std::string& line : error.lines()) refuse(line);
    return nothingDone;
  } catch (const OutputError& error) {
    return refuse(error.what());
  } catch (const std::bad_alloc&) {
    return refuse("out of memory");
  }
}

std::string helpHint(std::string_view command) {
  return " (see qosoc " + (command.empty() ? "" : std::string(command) + ' ') + "--help)";
}

}  // namespace qosoc
