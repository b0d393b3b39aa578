#include "support/DocumentCosts.h"

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <memory>
#include <vector>

#include "support/Check.h"

namespace Bench {
namespace {

struct Cost {
  double seconds;
  double bytes;
};

// By a program that prints its cost.
Cost costToldBy(const std::string& command) {
  const std::unique_ptr<std::FILE, int (*)(std::FILE*)> pipe(popen(command.c_str(), "r"), &pclose);
  Cost cost{};
  require(pipe != nullptr && std::fscanf(pipe.get(), "%lf %lf", &cost.seconds, &cost.bytes) == 2,
          command);
  return cost;
}

[[noreturn]] void become(const std::vector<std::string>& words) {
  dup2(open("/dev/null", O_WRONLY), STDOUT_FILENO);
  std::vector<char*> arguments;
  for (const std::string& word : words) arguments.push_back(const_cast<char*>(word.c_str()));
  arguments.push_back(nullptr);
  execv(arguments[0], arguments.data());
  _exit(127);
}

// Of a whole program, which ends with that exit code.
Cost costOf(const std::vector<std::string>& words, int exit = 0) {
  const pid_t child = fork();
  require(child >= 0, "fork");
  if (child == 0) become(words);
  int status = 0;
  rusage usage{};
  require(wait4(child, &status, 0, &usage) == child, "wait4");
  require(WIFEXITED(status) && WEXITSTATUS(status) == exit, words[0] + " failed");
  const auto seconds = [](const timeval& time) {
    return static_cast<double>(time.tv_sec) + 1e-6 * static_cast<double>(time.tv_usec);
  };
  return {seconds(usage.ru_utime) + seconds(usage.ru_stime),
          static_cast<double>(usage.ru_maxrss) * 1024};
}

// What is measured judges: a slip behind all of a document is noticed.
void requireThatASlipIsNoticed(const std::string& qosoc, const std::string& file) {
  const std::string slip = file + ".slip";
  std::filesystem::copy_file(file, slip, std::filesystem::copy_options::overwrite_existing);
  std::ofstream(slip, std::ios::app) << '}';
  costOf({qosoc, "check", "--shape", slip}, 2);
  std::filesystem::remove(slip);
}

}  // namespace

Measured documentCosts(const std::string& documents, const std::string& qosoc,
                       const std::string& file, std::size_t translations) {
  requireThatASlipIsNoticed(qosoc, file);
  Measured measured;
  const auto add = [&](const std::string& name, const Cost& cost) {
    measured[name].seconds.push_back(cost.seconds);
    double& peak = measured[name].counters["peak bytes"];
    peak = std::max(peak, cost.bytes);
  };
  for (std::size_t i = 0; i < repetitions; ++i) {
    for (const char* way : {"dom", "events", "parser", "shape", "read"}) {
      add(way, costToldBy("'" + documents + "' " + way + " '" + file + "'"));
    }
    // It finds something, and then reads the document once more for the lines.
    add("qosoc check", costOf({qosoc, "check", file}, 1));
    add("qosoc check --shape", costOf({qosoc, "check", "--shape", file}));
    if (i >= translations) continue;
    add("qosoc translate", costOf({qosoc, "translate", file}));
    add("qosoc translate --feed", costOf({qosoc, "translate", file, "--feed"}));
  }
  return measured;
}

}  // namespace Bench
