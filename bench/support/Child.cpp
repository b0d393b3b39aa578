#include "support/Child.h"

#include <sys/wait.h>
#include <unistd.h>

#include "support/Check.h"

namespace Bench {

void inChild(void (*work)(void* result, std::size_t argument), std::size_t argument, void* result,
             std::size_t bytes) {
  int ends[2];
  require(pipe(ends) == 0, "pipe");
  const pid_t child = fork();
  require(child >= 0, "fork");
  if (child == 0) {
    work(result, argument);
    const bool written = write(ends[1], result, bytes) == static_cast<ssize_t>(bytes);
    _exit(written ? 0 : 1);
  }
  close(ends[1]);
  const bool isRead = read(ends[0], result, bytes) == static_cast<ssize_t>(bytes);
  close(ends[0]);
  int status = 0;
  require(waitpid(child, &status, 0) == child && status == 0 && isRead, "the child process failed");
}

}  // namespace Bench
