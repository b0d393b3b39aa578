#include "tests/days/Device.h"

#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>

#include "host/NativeReader.h"
#include "host/Roots.h"
#include "host/Sections.h"
#include "tests/support/WalkOrder.h"

namespace days {

Life::Life(const host::Native& native, const host::Model& model, std::uint32_t orderSeed) {
  const support::WalkOrder order(orderSeed);
  roots = host::buildRoots({}, native, model,
                           [this](const std::string& report) { reports.push_back(report); });
}

host::Native mounted(std::string_view document, std::uint32_t orderSeed) {
  const support::WalkOrder order(orderSeed);
  host::Native native;
  host::readNativeText(document, native);
  return native;
}

Device::Device(std::string_view document, std::uint32_t orderSeed, LeftOut leftOut)
    : orderSeed_(orderSeed), native_(mounted(document, orderSeed)), roots_([&] {
        const support::WalkOrder order(orderSeed);
        return host::KeptRoots({}, native_, model_, leftOut,
                               [this](const std::string& text) { report(text); });
      }()) {}

// "root queue: range: ...", at a line behind "line 3: ".
void Device::report(const std::string& text) {
  reports_.push_back(text);
  const std::size_t root = text.find("root ");
  if (root == text.npos || (root != 0 && !text.starts_with("line "))) return;
  const std::size_t name = root + 5;
  lastRaised_[text.substr(name, text.find(':', name) - name)] = text.substr(root);
}

Reports Device::leftOut() const {
  Reports reports;
  for (const auto& [root, raised] : lastRaised_) {
    if (!roots_.isBuilt(root)) reports.push_back(raised);
  }
  return reports;
}

bool Device::isEndedBy(std::string_view line) {
  const pid_t child = fork();
  if (child == 0) {
    std::freopen("/dev/null", "w", stderr);
    host::Changes changes(native_, roots_, host::Changes::BadComments::named,
                          [](const std::string& /*report*/) {});
    changes.line(line);
    _exit(0);
  }
  int status = 0;
  waitpid(child, &status, 0);
  return WIFSIGNALED(status) && WTERMSIG(status) == SIGABRT;
}

host::Changes::Outcome Device::line(std::string_view text) {
  const support::WalkOrder order(orderSeed_);
  reports_.clear();
  return changes_.line(text);
}

host::Value Device::document() const { return host::nativePlace(native_)->value(); }

}  // namespace days
